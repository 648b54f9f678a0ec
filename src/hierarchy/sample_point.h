#pragma once
#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo {

/// A point strictly inside the ground that a closed subpath covers under the non-zero rule. Horizontal lines
/// are laid through the subpath; of the stretches with non-zero winding on them the widest gives its middle.
/// For integer points grid points are tried first. The first point of the subpath when it covers no ground;
/// (0, 0) for no points.
template <class T>
TavMath::DPoint FindSamplePoint(const T* points, const NODETYPE* nodes, int count);

}  // namespace Lumo
