#pragma once
// Suites of tests that run for integer and for double points.

#include <gtest/gtest.h>

#include "lumo/point_types.h"

namespace test {
using PointTypes = testing::Types<tagPOINT, TavMath::DPoint>;
}

/// A suite for TYPED_TEST; TypeParam is the type of the points.
#define LUMO_TYPED_SUITE(Suite)          \
  template <class T>                     \
  class Suite : public testing::Test {}; \
  TYPED_TEST_SUITE(Suite, test::PointTypes)
