// The one parallel batch driver of the library. Every class that runs a batch
// in parallel goes through it, so the division of points among threads and the
// way per-thread results are combined live in this file only.
#ifndef LMSPATIALREFERENCE_INTERNAL_PARALLELBATCH_H
#define LMSPATIALREFERENCE_INTERNAL_PARALLELBATCH_H

#include <omp.h>

#include <cstddef>

namespace Lumora {
namespace Kernel {

// A contiguous range [begin, end) of point indices.
struct LmPointBlock {
    int begin;
    int end;
};

// The block that thread `thread` of a team of `threads` takes out of `count`
// points under the static schedule: the first count % threads threads take one
// point more than the others, and blocks follow each other in thread order.
inline LmPointBlock PointBlockOfThread(int count, int threads, int thread) {
    const int quotient = count / threads;
    const int remainder = count - quotient * threads;
    if (thread < remainder) {
        const int begin = thread * (quotient + 1);
        return {begin, begin + quotient + 1};
    }
    const int begin = thread * quotient + remainder;
    return {begin, begin + quotient};
}

// Runs block(begin, end) once on every thread of the default OpenMP team that
// has a non-empty block of [0, count). Blocks never overlap, so a block may
// write the points it owns freely. An exception escaping a block ends the
// process, as OpenMP regions do.
//
// Where the team could only have one thread (a single point, a team size of
// one, or a call from inside a region that may not nest further) the block
// runs on the calling thread without opening a region: the same work in the
// same order, without the region's cost, which a mapping evaluated point by
// point inside an iterative inverse would otherwise pay at every step.
template <class Block>
void ParallelBlocks(int count, Block&& block) {
    if (count <= 0) return;
    if (count == 1 || omp_get_max_threads() == 1 || omp_get_active_level() >= omp_get_max_active_levels()) {
        block(0, count);
        return;
    }
#pragma omp parallel
    {
        const LmPointBlock range = PointBlockOfThread(count, omp_get_num_threads(), omp_get_thread_num());
        if (range.begin < range.end) block(range.begin, range.end);
    }
}

// ParallelBlocks for blocks that return a count or a sum: each thread computes
// its block's result privately and adds it once, atomically, to the total.
template <class Result, class Block>
Result ParallelSum(int count, Block&& block) {
    Result total = Result();
    ParallelBlocks(count, [&](int begin, int end) {
        const Result partial = block(begin, end);
#pragma omp atomic
        total += partial;
    });
    return total;
}

// ParallelBlocks for work done point by point: each thread calls point(i) for
// the indices of its block in ascending order.
template <class Point>
void ParallelPoints(int count, Point&& point) {
    ParallelBlocks(count, [&](int begin, int end) {
        for (int i = begin; i < end; ++i) point(i);
    });
}

// The array index of point i of a batch with the given step, computed in 64
// bits: a batch whose count times step passes 2^31 is still addressed right.
// Every batch, serial or parallel, indexes its points through this.
inline std::ptrdiff_t PointIndex(int i, int step) { return static_cast<std::ptrdiff_t>(i) * step; }

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_INTERNAL_PARALLELBATCH_H
