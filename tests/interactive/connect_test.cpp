#include "lumo/crv_connect.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/generators.h"
#include "support/guarded_array.h"

namespace {

struct Free {
  void operator()(CRV_CONNECTINFO* record) const { CRV_ConnectInfoDestruct(record); }
};
using Record = std::unique_ptr<CRV_CONNECTINFO, Free>;

Record Make(const test::IntPath& path) { return Record(CRV_ConnectInfoConstruct(LUMO_ARRAYS(path))); }

TEST(ConnectInfo, ListsTheEndsOfOpenSubpaths) {
  const auto path = test::ParsePath<tagPOINT>("M0,0 L1,0 L2,0 M5,5 L6,6 L5,6 Z M8,8 M9,9 C9,1 9,2 9,3");
  const Record r = Make(path);
  EXPECT_EQ(std::vector<int>(r->nodes, r->nodes + r->candidateCount), (std::vector<int>{0, 2, 7, 7, 8, 11}))
      << "a lone node is both of its ends";
  EXPECT_EQ(r->points[1], (tagPOINT{2, 0}));
  EXPECT_EQ(CRV_ConnectInfoEmpty(r.get()), 0);
}

TEST(ConnectInfo, PicksTheFirstFreeCandidateInTheRectangle) {
  const Record r = Make(test::ParsePath<tagPOINT>("M0,0 L9,9 M1,1 L8,8"));
  const tagRECT corner{0, 1, 1, 0}, nowhere{20, 30, 30, 20};
  EXPECT_EQ(CRV_ConnectInfoHasNode(r.get(), 1), 0);
  EXPECT_EQ(CRV_ConnectInfoGetNumber(r.get(), 1), -1);
  EXPECT_EQ(CRV_ConnectInfoHitNode(r.get(), {99, 99}, &corner, 1), 1) << "the point is not used";
  EXPECT_EQ(CRV_ConnectInfoGetNumber(r.get(), 1), 0);
  EXPECT_EQ(CRV_ConnectInfoHitNode(r.get(), {0, 0}, &corner, 7), 1) << "reported, not stored";
  EXPECT_EQ(CRV_ConnectInfoHasNode(r.get(), 2), 0);
  EXPECT_EQ(CRV_ConnectInfoHitNode(r.get(), {0, 0}, &corner, 2), 1);
  EXPECT_EQ(CRV_ConnectInfoGetNumber(r.get(), 2), 2) << "the first choice is skipped";
  tagPOINT out{};
  EXPECT_EQ(CRV_ConnectInfoGetPoint(r.get(), 2, &out), 1);
  EXPECT_EQ(out, (tagPOINT{1, 1}));
  EXPECT_EQ(CRV_ConnectInfoGetPoint(r.get(), 2, nullptr), 1);
  EXPECT_EQ(CRV_ConnectInfoHitNode(r.get(), {0, 0}, &corner, 1), 0) << "both are taken";
  EXPECT_EQ(CRV_ConnectInfoHitNode(r.get(), {0, 0}, &nowhere, 1), 0);
  for (const int which : {0, 3}) {
    EXPECT_EQ(CRV_ConnectInfoHasNode(r.get(), which), 0);
    EXPECT_EQ(CRV_ConnectInfoGetNumber(r.get(), which), -1);
  }
}

TEST(ConnectInfo, OfNothing) {
  const Record empty(CRV_ConnectInfoConstruct(nullptr, nullptr, 9));
  const tagRECT rect{-9, 9, 9, -9};
  for (CRV_CONNECTINFO* r : {empty.get(), static_cast<CRV_CONNECTINFO*>(nullptr)}) {
    EXPECT_EQ(CRV_ConnectInfoEmpty(r), 1);
    EXPECT_EQ(CRV_ConnectInfoHitNode(r, {0, 0}, &rect, 1), 0);
    EXPECT_EQ(CRV_ConnectInfoHasNode(r, 1), 0);
    EXPECT_EQ(CRV_ConnectInfoGetPoint(r, 1, nullptr), 0);
  }
  EXPECT_EQ(CRV_ConnectInfoHitNode(empty.get(), {0, 0}, nullptr, 1), 0);
  CRV_ConnectInfoDestruct(nullptr);
}

TEST(ConnectInfo, OfMalformedArraysStaysInBounds) {
  test::Bits bits(111);
  const tagRECT plane{-1000, 1000, 1000, -1000};
  for (int round = 0; round < 1000; ++round) {
    const auto path = test::RandomMalformedPath<tagPOINT>(bits, 12);
    const test::GuardedPath<tagPOINT> guarded(path);
    const Record r(CRV_ConnectInfoConstruct(guarded.points.data(), guarded.types.data(), guarded.count));
    ASSERT_NE(r, nullptr);
    for (int k = 0; k < r->candidateCount; ++k) EXPECT_LT(r->nodes[k], path.count());
    CRV_ConnectInfoHitNode(r.get(), {0, 0}, &plane, 1);
  }
}

}  // namespace
