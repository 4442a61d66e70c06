// Pieces every control-point estimator of the library shares: bringing two
// point sets to geocentric or geographic coordinates, the reported accuracy
// measures, the ellipsoid of a reference, the test that a normal matrix
// determines its unknowns before a caller that must not end the process
// solves it, the two ways of solving, and the checked result.
#ifndef LMSPATIALREFERENCE_INTERNAL_ESTIMATIONSUPPORT_H
#define LMSPATIALREFERENCE_INTERNAL_ESTIMATIONSUPPORT_H

#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/spatialreference.h>

#include "internal/parallelbatch.h"

#include <vector>

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

// count points of dim doubles of reference in that reference's own
// geographic coordinates (in -> out, count * dim doubles): projected points
// are unprojected, all others copied as they are. A point the unprojection
// cannot take keeps its input values.
void _ToOwnGeographic(LmSpatialReference* reference, int count, int dim, const double* in, double* out);

// Two control-point sets of count points at stride dim, as an estimator
// reads them: as given, or both converted into storage of count * max(dim, 3)
// doubles each, so that reads of three values at stride dim stay inside and
// what the conversion does not write stays 0.
class _PointPairs {
public:
    enum Space { eAsGiven, eGeocentric, eGeographic };

    _PointPairs(Space space, LmSpatialReference* sourceReference, LmSpatialReference* targetReference, int count,
                int dim, const double* source, const double* target);
    _PointPairs(const _PointPairs&) = delete;
    _PointPairs& operator=(const _PointPairs&) = delete;

    int Dim() const { return m_dim; }
    const double* Source(int i) const { return m_source + std::ptrdiff_t(i) * m_dim; }
    const double* Target(int i) const { return m_target + std::ptrdiff_t(i) * m_dim; }

private:
    int m_dim;
    std::vector<double> m_sourceStorage, m_targetStorage;
    const double* m_source;
    const double* m_target;
};

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

// The one test of a degenerate control-point set: whether the augmented n x n
// normal matrix (observation first, then the n - 1 unknowns, as mat_min2
// takes it) determines its unknowns well enough to solve, and its
// observation column is finite. The unknowns' block must have every entry
// finite, every diagonal positive, no exactly zero pivot in its LU
// decomposition, and the smallest eigenvalue of the block scaled to a unit
// diagonal not lost in rounding against the largest. Scaling first makes the
// test blind to the units of the unknowns (metres against radians against
// ratios).
bool _AugmentedMatrixDetermines(int n, const double* N);

// The classical solve: u[1..n-1] = N⁻¹ w from the augmented n x n matrix,
// N its unknowns' block and w its observation column, inverted through
// LUPDecomp (a singular N ends the process). u[0] is not written.
void _SolveNormalEquations(int n, const double* augmented, double* u);

// The solve through the constrained minimum of the augmented n x n matrix:
// u[1..n-1] as mat_min2 leaves them and meanError the root mean square of the
// minimum over count points. False when that is not finite (an indefinite
// matrix, or an observation too large to square).
bool _SolveByMinimum(int n, const double* augmented, int count, double* u, double& meanError);

// Fills a checked result: parameters, mean error, and count residual vectors
// of dim axes with the longest of them.
void _FillResult(LmEstimationResult& result, const double* parameters, int parameterCount, double meanError,
                 int dim, std::vector<double>& residuals, int count);

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

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_INTERNAL_ESTIMATIONSUPPORT_H
