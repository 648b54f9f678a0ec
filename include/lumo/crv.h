#pragma once
// The layer that works in the caller's own arrays of points and node types.

#include "lumo/crv_connect.h"
#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_freehand.h"
#include "lumo/crv_hit.h"
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"
