// The two moves the iterative inverse alternates between, and its distance.
// Private to the library: only xymap_r is offered to callers.
#ifndef LMSPATIALREFERENCE_XYMAPSTEPS_H
#define LMSPATIALREFERENCE_XYMAPSTEPS_H

#include <lmspatialreference/coordinatetransformation.h>

namespace Lumora {
namespace Kernel {

// The squared distance between two vectors of n doubles.
double _dis2(int n, const double* a, const double* b);
// Fixed-point refinement x <- x + target - f(x), kept while the residual
// strictly decreases. True when the residual reaches eps (a squared distance);
// false when a step stops improving, with the last accepted estimate kept.
bool _xymap_r_1(int n, const double* target, double* estimate, PointMapping f, double eps, void* context);
// One move of a coordinate pattern search whose step starts at the residual
// distance and is halved up to ten times. False when no probe improves, with
// the estimate unchanged.
bool _xymap_r_2(int n, const double* target, double* estimate, PointMapping f, void* context);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_XYMAPSTEPS_H
