// Copies of one path on several threads: run under the thread sanitizer.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "lumo/polycurve.h"

namespace {

using Lumo::PolycurveT;

TEST(Sharing, CopiesAreMadeReadEditedAndDestroyedOnDifferentThreads) {
  for (int round = 0; round < 20; ++round) {
    PolycurveT<tagPOINT> shared = PolycurveT<tagPOINT>::CreateCircle({0, 0}, 1000);
    const double area = shared.GetArea();
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int k = 0; k < 4; ++k) {
      threads.emplace_back([&wrong, area, mine = PolycurveT<tagPOINT>(shared), k]() mutable {
        for (int step = 0; step < 200; ++step) {
          PolycurveT<tagPOINT> copy = mine;
          wrong += copy.GetArea() != area;
          copy.SetPoint(0, {k, step});
          wrong += copy.GetPoint(0) != tagPOINT{k, step};
          PolycurveT<tagPOINT> other = copy;
          other += mine;
          wrong += copy.GetPointCount() != 13;
        }
        mine.TranslatePoints({k, k});
      });
    }
    // Its owner gives it up meanwhile: the last one to let go of the nodes may be any thread.
    shared.Clear();
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0);
  }
}

/// A holder that lets go just before another one writes in place: its reads must come before that write.
TEST(Sharing, TheLastOtherHoldersReadsComeBeforeTheWrite) {
  for (int round = 0; round < 300; ++round) {
    PolycurveT<tagPOINT> path = PolycurveT<tagPOINT>::CreateLine({0, 0}, {10, 10});
    std::thread reader([copy = PolycurveT<tagPOINT>(path)]() mutable {
      EXPECT_EQ(copy.GetPoint(1).x, 10);
      copy = {};
    });
    path.SetPoint(1, {20, 20});
    path.SetPoint(0, {20, 20});
    reader.join();
  }
}

TEST(Sharing, AMillionNodesAreCopiedWithoutCopyingThem) {
  PolycurveT<tagPOINT> path;
  ASSERT_NE(path.GetBufferSetCount(1000000).count, 0u);
  std::vector<PolycurveT<tagPOINT>> copies(1000, path);
  for (const auto& copy : copies) EXPECT_EQ(copy.GetPoints(), path.GetPoints());
}

}  // namespace
