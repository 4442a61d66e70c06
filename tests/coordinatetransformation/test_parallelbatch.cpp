#include "coordinatetransformation/parallelbatch.h"

#include "tests/teamsize.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

using namespace Lumora::Kernel;

namespace {

TEST(PointBlockOfThread, FirstThreadsTakeOneMorePoint) {
    // 10 points over 4 threads: 3, 3, 2, 2.
    const int expected[4][2] = {{0, 3}, {3, 6}, {6, 8}, {8, 10}};
    for (int t = 0; t < 4; ++t) {
        const LmPointBlock block = PointBlockOfThread(10, 4, t);
        EXPECT_EQ(block.begin, expected[t][0]) << t;
        EXPECT_EQ(block.end, expected[t][1]) << t;
    }
}

TEST(PointBlockOfThread, BlocksTileTheBatchExactlyInThreadOrder) {
    for (int threads = 1; threads <= 9; ++threads) {
        for (int count = 0; count <= 40; ++count) {
            int next = 0;
            for (int t = 0; t < threads; ++t) {
                const LmPointBlock block = PointBlockOfThread(count, threads, t);
                ASSERT_EQ(block.begin, next) << count << " points, thread " << t << " of " << threads;
                ASSERT_GE(block.end, block.begin);
                ASSERT_LE(block.end - block.begin, count / threads + 1);
                next = block.end;
            }
            ASSERT_EQ(next, count);
        }
    }
}

TEST(ParallelBatch, EveryPointIsVisitedOnceInAscendingOrderWithinItsBlock) {
    TeamSize team(3);
    const int count = 1001;
    std::vector<int> visits(count, 0);
    std::vector<int> order(count, -1);
    std::atomic<int> blocks{0};
    ParallelBlocks(count, [&](int begin, int end) {
        ++blocks;
        int previous = begin - 1;
        for (int i = begin; i < end; ++i) {
            ++visits[i];
            order[i] = previous + 1 == i ? 1 : 0;
            previous = i;
        }
    });
    EXPECT_EQ(blocks.load(), 3);
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(visits[i], 1) << i;
        ASSERT_EQ(order[i], 1) << i;
    }
    // Single points are handed out one by one.
    ParallelPoints(count, [&](int i) { visits[i] += i; });
    for (int i = 0; i < count; ++i) ASSERT_EQ(visits[i], 1 + i) << i;
}

TEST(ParallelBatch, MoreThreadsThanPointsLeavesTheExtraThreadsIdle) {
    TeamSize team(8);
    std::atomic<int> blocks{0};
    const int successes = ParallelSum<int>(3, [&](int begin, int end) {
        ++blocks;
        EXPECT_EQ(end - begin, 1);
        return end - begin;
    });
    EXPECT_EQ(successes, 3);
    EXPECT_EQ(blocks.load(), 3);
}

TEST(ParallelBatch, SumsAddEachThreadsResultOnce) {
    TeamSize team(4);
    const int count = 100000;
    std::atomic<int> blocks{0};
    const long successes = ParallelSum<long>(count, [&](int begin, int end) {
        ++blocks;
        long odd = 0;
        for (int i = begin; i < end; ++i) odd += i % 2;
        return odd;
    });
    EXPECT_EQ(successes, count / 2);
    EXPECT_EQ(blocks.load(), 4);

    const double total = ParallelSum<double>(count, [](int begin, int end) { return double(end - begin); });
    EXPECT_EQ(total, count);
}

TEST(ParallelBatch, EmptyAndNegativeBatchesDoNothing) {
    bool called = false;
    ParallelBlocks(0, [&](int, int) { called = true; });
    ParallelPoints(-5, [&](int) { called = true; });
    EXPECT_FALSE(called);
    EXPECT_EQ(ParallelSum<int>(-1, [](int, int) { return 1; }), 0);
}

}  // namespace
