// Which points of a batch the reverse China offsets solved.
//
// Their batch call leaves a point whose iteration does not converge as it
// was and still returns true, so a caller cannot tell it from a solved one.
// TransformWithOutcomes asks here instead, so that such a point is reported
// as failed.
#ifndef LMSPATIALREFERENCE_REVERSEOFFSETOUTCOMES_H
#define LMSPATIALREFERENCE_REVERSEOFFSETOUTCOMES_H

#include <lmspatialreference/chinaoffset.h>

namespace Lumora {
namespace Kernel {

// Does what transformation.Transformation(x, y, nullptr, count, step) does,
// point for point, and sets transformed[i] to 1 for each point solved (or,
// from GCJ-02, outside China, where the offset does not apply) and to 0 for
// each left as it was because it could not be solved. Returns the number of
// points solved.
int ReverseOffsetWithOutcomes(const LmGCJ02ToWGS84CoordinateTransformation& transformation, double* x, double* y,
                              int count, int step, unsigned char* transformed);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_REVERSEOFFSETOUTCOMES_H
