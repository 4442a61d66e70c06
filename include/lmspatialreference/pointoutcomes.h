/// @file
/// Which points of a batch a transformation transformed.
///
/// A batch call tells only whether every point succeeded, and a projection
/// leaves a refused point as GDAL left it, which can look like a result.
/// Callers that must mark each refused point (as NumPy users expect, with an
/// infinity) ask here instead.
#ifndef LMSPATIALREFERENCE_POINTOUTCOMES_H
#define LMSPATIALREFERENCE_POINTOUTCOMES_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/transformation.h>

namespace Lumora {
namespace Kernel {

/// Copies count points from the source arrays into x, y and z, transforms
/// those in place with transformation.Transformation(x, y, z, count, step) and
/// sets transformed[i] to 1 for each point that succeeded and 0 for each that
/// failed. Point i lies at index i * step of every array; sourceZ and z are
/// both null or both not.
///
/// When the batch succeeds this costs the copy and nothing more. When it
/// fails, every point is copied again and transformed on its own, so that a
/// chain that stopped at a failing member still delivers its other points;
/// each point then ends exactly as a one-point call leaves it (for a
/// projection, the same values the batch gives). The reverse China offsets,
/// whose batch leaves a point it cannot solve as it was yet succeeds, report
/// such a point as failed here (it keeps its source values, as in the batch).
/// Returns true when every point succeeded; false, writing nothing, for null
/// arrays, a z without a source z (or the reverse), a negative count or a
/// step below 1.
LM_API bool TransformWithOutcomes(LmCoordinateTransformation& transformation, const double* sourceX,
                                  const double* sourceY, const double* sourceZ, double* x, double* y, double* z,
                                  int count, int step, unsigned char* transformed);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_POINTOUTCOMES_H
