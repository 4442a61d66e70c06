// Pieces every control-point estimator of the library shares: bringing two
// point sets to geocentric coordinates, the reported accuracy measure, the
// ellipsoid of a reference, and the test that a normal matrix determines its
// unknowns before a caller that must not end the process solves it.
#ifndef LMSPATIALREFERENCE_FITTING_ESTIMATIONSUPPORT_H
#define LMSPATIALREFERENCE_FITTING_ESTIMATIONSUPPORT_H

#include <lmspatialreference/spatialreference.h>

#include "internal/parallelbatch.h"

namespace Lumora {
namespace Kernel {

// Semi-major axis a (metres) and flattening f of a reference's ellipsoid. A
// null pointer or null reference gives a = f = 0, and so does the inverse
// flattening 0 of a sphere for f, so no estimator or transformation ever
// divides by it.
void _EllipsoidOf(LmSpatialReference* reference, double& a, double& f);

// Converts count points of dim doubles in the reference src (srcIn -> srcOut)
// and, independently, in dst (dstIn -> dstOut) to geocentric X, Y, Z metres:
// projected points through their own geographic reference, geographic ones
// directly, and points of any other (or a null) reference are copied as they
// are, being taken as geocentric already. The outputs hold count * dim
// doubles; with dim 2 the conversion writes X and Y only.
void pretrans(LmSpatialReference* src, LmSpatialReference* dst, int count, int dim, const double* srcIn,
              const double* dstIn, double* srcOut, double* dstOut);

// Combined root-mean-square error of computed against target (count points
// of dim doubles): the per-axis sample deviations sqrt(sum d^2 / (count - 1))
// over x, y (and z for dim 3), combined as the root of their squares. Any dim
// other than 2 or 3 gives 0. One point divides by zero (infinity or NaN), as
// the sample deviation does.
void mean_error(const double* computed, const double* target, int count, int dim, double& result);

// The root mean square of a least-squares minimum over count points. Rounding
// turns the minimum 0 of an exact fit slightly negative about half the time,
// so negatives count as 0; the indefinite result (minus the largest double)
// alone gives NaN.
double _RootMeanSquareOfMinimum(double minimum, int count);

// Whether the symmetric n x n normal matrix N (row-major) determines all n
// unknowns well enough to solve: every entry finite, every diagonal positive,
// and the smallest eigenvalue of the matrix scaled to a unit diagonal not lost
// in rounding against the largest, and no exactly zero pivot in its LU
// decomposition. Scaling first makes the test blind to the units of the
// unknowns (metres against radians against ratios).
bool _NormalMatrixDetermines(int n, const double* N);

// Adds one point's design rows to the normal equations, N += Bᵀ B and
// w += Bᵀ l (N row-major), row by row in the order of the full matrix
// product, so the sums are the product's own while memory stays constant.
template <int Rows, int Unknowns>
void _AddToNormalEquations(const double (&rows)[Rows][Unknowns], const double (&l)[Rows], double* N, double* w) {
    for (int r = 0; r < Rows; ++r) {
        for (int p = 0; p < Unknowns; ++p) {
            for (int q = 0; q < Unknowns; ++q) N[p * Unknowns + q] += rows[r][p] * rows[r][q];
            w[p] += rows[r][p] * l[r];
        }
    }
}

// Calls point(i) for every i in [0, count): serially for small batches,
// where a parallel region costs more than it saves, else through the batch
// driver. point must only touch point i.
template <class Point>
void _ForEachPoint(int count, Point&& point) {
    if (count > 2000) {
        ParallelPoints(count, point);
    } else {
        for (int i = 0; i < count; ++i) point(i);
    }
}

// The number of points an estimator reads: count, or 0 when the arrays or
// the layout cannot hold any (null arrays, count below 1, dim below 2). The
// unchecked estimators then see no points and end as they do for too few.
int _UsablePointCount(int count, int dim, const double* source, const double* target);

// The index of the longest of count residual vectors of dim values (the
// first of equals); -1 when count is not positive.
int _LongestResidual(int count, int dim, const double* residuals);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_FITTING_ESTIMATIONSUPPORT_H
