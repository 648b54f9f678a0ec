#pragma once
// Suites of tests that run for integer and for double points.

#include <gtest/gtest.h>

#include "lumo/point_types.h"

namespace test {
using PointTypes = testing::Types<tagPOINT, TavMath::DPoint>;
}

/// A suite for LUMO_TYPED_TEST.
#define LUMO_TYPED_SUITE(Suite)          \
  template <class T>                     \
  class Suite : public testing::Test {}; \
  TYPED_TEST_SUITE(Suite, test::PointTypes)

/// A test whose body has the type of the points as T.
#define LUMO_TYPED_TEST(Suite, Name)                    \
  template <class T>                                    \
  void Suite##Name();                                   \
  TYPED_TEST(Suite, Name) { Suite##Name<TypeParam>(); } \
  template <class T>                                    \
  void Suite##Name()
