#include <lmspatialreference/pointoutcomes.h>

#include "coordinatetransformation/reverseoffsetoutcomes.h"
#include "internal/parallelbatch.h"

#include <algorithm>

namespace Lumora {
namespace Kernel {

namespace {

void _CopyPoint(const double* sourceX, const double* sourceY, const double* sourceZ, double* x, double* y, double* z,
                std::ptrdiff_t at) {
    x[at] = sourceX[at];
    y[at] = sourceY[at];
    if (z) z[at] = sourceZ[at];
}

}  // namespace

bool TransformWithOutcomes(LmCoordinateTransformation& transformation, const double* sourceX, const double* sourceY,
                           const double* sourceZ, double* x, double* y, double* z, int count, int step,
                           unsigned char* transformed) {
    if (!sourceX || !sourceY || !x || !y || !transformed || (sourceZ == nullptr) != (z == nullptr)) return false;
    if (count < 0 || step < 1) return false;

    // In the blocks a parallel batch gives each thread, so that a large copy
    // takes its share of the cores and each thread first touches the memory
    // it then transforms.
    ParallelPoints(count, [=](int i) { _CopyPoint(sourceX, sourceY, sourceZ, x, y, z, PointIndex(i, step)); });
    // The reverse offsets report success for points they could not solve.
    if (const auto* reverse = dynamic_cast<const LmGCJ02ToWGS84CoordinateTransformation*>(&transformation)) {
        return ReverseOffsetWithOutcomes(*reverse, x, y, count, step, transformed) == count;
    }
    if (transformation.Transformation(x, y, z, count, step)) {
        std::fill(transformed, transformed + count, 1);
        return true;
    }
    // The batch does not say which points failed, and a chain may have left
    // all of them half done: start each point again from its source.
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t at = PointIndex(i, step);
        _CopyPoint(sourceX, sourceY, sourceZ, x, y, z, at);
        transformed[i] = transformation.Transformation(x + at, y + at, z ? z + at : nullptr, 1, 1) ? 1 : 0;
    }
    return false;
}

}  // namespace Kernel
}  // namespace Lumora
