/// @file
/// LU decomposition with an explicit decomposition record. Matrices are dense
/// and row-major; sizes are never checked against buffer lengths.
#ifndef LMSPATIALREFERENCE_LUPMATRIX_H
#define LMSPATIALREFERENCE_LUPMATRIX_H

#include <lmspatialreference/export.h>

namespace Lumora {
namespace Kernel {

/// Result of LUPDecomp: row i of L * U equals row P[i] of the decomposed matrix.
/// The record does not own its arrays; release them with DelLUPMat.
struct LM_API LUPMat {
    double* L;  ///< n * n, unit lower triangular
    double* U;  ///< n * n, upper triangular
    int* P;     ///< n, row permutation
    int n;      ///< the order of the matrices

    /// All pointers null and n = 0.
    LUPMat();
};

/// Array-deletes L, U and P of the record (each when non-null).
LM_API void DelLUPMat(LUPMat m);

/// LU decomposition with partial pivoting into freshly allocated arrays; what
/// `out` held before is not released. A column that is exactly zero from the
/// diagonal down prints "singular matrix!" on standard output and ends the
/// process with exit status 1: callers never see a singular matrix come back.
LM_API void LUPDecomp(const double* A, int n, LUPMat& out);

/// Solves A * x = b from the decomposition of A.
LM_API void SolveLinearEq(LUPMat& lu, const double* b, int n, double* x);

/// inv = A^-1 (n * n). A singular A ends the process through LUPDecomp.
LM_API void InverseMatrix(const double* A, int n, double* inv);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_LUPMATRIX_H
