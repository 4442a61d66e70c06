/// @file
/// Iterative inverse of a point mapping.
#ifndef LMSPATIALREFERENCE_ITERATIVEINVERSE_H
#define LMSPATIALREFERENCE_ITERATIVEINVERSE_H

#include <lmspatialreference/export.h>

namespace Lumora {
namespace Kernel {

/// A mapping of n doubles to n doubles: reads in[0..n-1], writes out[0..n-1].
/// The context is whatever the caller of xymap_r passed along.
typedef void (*PointMapping)(const double* in, double* out, void* context);

/// Finds x with f(x) within sqrt(eps) of target, starting from *estimate: the
/// fixed-point refinement runs until it stalls, a pattern-search move unblocks
/// it, and so on until the tolerance is met (true) or the search fails (false).
/// Works for 1 <= n <= 4 and refuses other sizes.
LM_API bool xymap_r(int n, const double* target, double* estimate, PointMapping f, double eps, void* context);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_ITERATIVEINVERSE_H
