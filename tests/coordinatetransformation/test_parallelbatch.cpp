// The division of a batch among threads. What the blocks do to points is
// checked through the transformations (test_batches.cpp).
#include "coordinatetransformation/parallelbatch.h"

#include "tests/teamsize.h"

#include <gtest/gtest.h>

#include <atomic>

using namespace Lumora::Kernel;

namespace {

TEST(PointBlockOfThread, BlocksTileTheBatchInThreadOrderWithTheFirstThreadsTakingOneMore) {
    // 10 points over 4 threads: 3, 3, 2, 2.
    const int expected[4][2] = {{0, 3}, {3, 6}, {6, 8}, {8, 10}};
    for (int t = 0; t < 4; ++t) {
        const LmPointBlock block = PointBlockOfThread(10, 4, t);
        EXPECT_EQ(block.begin, expected[t][0]) << t;
        EXPECT_EQ(block.end, expected[t][1]) << t;
    }
    for (int threads = 1; threads <= 9; ++threads) {
        for (int count = 0; count <= 40; ++count) {
            int next = 0;
            for (int t = 0; t < threads; ++t) {
                const LmPointBlock block = PointBlockOfThread(count, threads, t);
                const int size = block.end - block.begin;
                ASSERT_EQ(block.begin, next) << count << " points, thread " << t << " of " << threads;
                ASSERT_EQ(size, count / threads + (t < count % threads)) << count << " points, thread " << t;
                next = block.end;
            }
            ASSERT_EQ(next, count);
        }
    }
}

TEST(ParallelBatch, SumsAddEachNonEmptyBlockOnceAndEmptyBatchesDoNothing) {
    TeamSize team(8);
    std::atomic<int> blocks{0};
    EXPECT_EQ(ParallelSum<long>(3, [&](int begin, int end) { return ++blocks, long(end - begin); }), 3);
    EXPECT_EQ(blocks.load(), 3);  // threads beyond the points stay idle
    EXPECT_EQ(ParallelSum<double>(100000, [](int begin, int end) { return double(end - begin); }), 100000.0);
    bool called = false;
    ParallelPoints(-5, [&](int) { called = true; });
    EXPECT_FALSE(called);
    EXPECT_EQ(ParallelSum<int>(0, [](int, int) { return 1; }), 0);
}

// A batch run from inside a region that may not nest (a mapping evaluated
// point by point in an iterative inverse) takes the whole batch as one block
// on the calling thread, as a nested team of one would.
TEST(ParallelBatch, BatchesInsideARegionRunWholeOnTheirThread) {
    TeamSize team(2);
    const int levels = omp_get_max_active_levels();
    omp_set_max_active_levels(1);
    std::vector<int> callers(2, 0);
#pragma omp parallel num_threads(2)
    {
        const int outer = omp_get_thread_num();
        ParallelBlocks(50, [&](int begin, int end) {
            if (begin == 0 && end == 50 && omp_get_thread_num() == outer) ++callers[outer];
        });
    }
    omp_set_max_active_levels(levels);
    EXPECT_EQ(callers, std::vector<int>({1, 1}));
}

}  // namespace
