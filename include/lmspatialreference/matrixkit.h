/// @file
/// A C-style kit of free functions over plain double arrays (global namespace).
/// Matrices are dense and row-major: element (i, j) of an n-column matrix is at
/// index i * n + j. Sizes are never checked against buffer lengths.
/// Unless a function says otherwise, matrices are n x n and vectors of length
/// n, and truth values are 1 for success and 0 for failure.
#ifndef LMSPATIALREFERENCE_MATRIXKIT_H
#define LMSPATIALREFERENCE_MATRIXKIT_H

#include <lmspatialreference/export.h>

/// y[i] = a * x[i] + b; y may be x.
LM_API void vec_oper1(int n, const double* x, double a, double b, double* y);
/// z[i] = a * x[i] + b * y[i] + c; z may be x or y.
LM_API void vec_oper2(int n, const double* x, double a, const double* y, double b, double c, double* z);
/// Dot product, summed in increasing index.
LM_API double vec_mul(int n, const double* x, const double* y);
/// Scales x to length r; 0 and x unchanged when x is (nearly) the zero vector.
LM_API int vec_set_r(double r, int n, double* x);

/// Determinant of A (A unchanged). Exactly 0 when every element of a matrix of
/// order 3 or more is below about 4.7e-12 in magnitude.
LM_API double mat_del(int n, const double* A);

/// A[i][j] += y[j] * (x[i] * w); returns n.
LM_API int mat_add(int n, double* A, const double* x, const double* y, double w);
/// B = A transposed; B may be A.
LM_API void mat_turn(int n, const double* A, double* B);
/// C = A * B; C must be neither A nor B.
LM_API void mat_mul(int n, const double* A, const double* B, double* C);
/// y = A * x.
LM_API void mat_vec(int n, const double* A, const double* x, double* y);
/// Quadratic form x' * A * x.
LM_API double mat_vec_mul(int n, const double* A, const double* x);
/// A[i][j] += y[j] * x[i].
LM_API void mat_vec_vec(int n, const double* x, const double* y, double* A);

/// In-place LU factors of A with rows permuted through idx (rows never move);
/// 0 on an exactly zero pivot.
LM_API int mat_lu(int n, double* A, int* idx);
/// Solves from mat_lu's factors; b is overwritten.
LM_API void mat_backsubs(int n, const double* LU, double* b, double* x, const int* idx);
/// Solves A * x = b, overwriting A with its factors; 0 when singular or x == b.
LM_API int mat_solve(int n, double* A, double* b, double* x);
/// In-place inverse; on 0 A is left partly factored.
LM_API int mat_inv(int n, double* A);

/// Eigen-decomposition of the symmetric A (only its strict upper triangle and
/// diagonal are read; A is destroyed). d receives the eigenvalues from largest
/// to smallest, row i of V the unit eigenvector of d[i]. work holds 2n ints.
LM_API void Jacobi(int n, double* A, double* V, double* d, void* work);
/// As Jacobi, on a copy of A.
LM_API void mat_eigen(int n, const double* A, double* V, double* d);

/// Minimum of x' * M * x subject to x[0] = 1, with the minimiser in x (x may be
/// null). Unknowns the form does not determine come back as 0. Returns minus
/// the largest double when M is indefinite, leaving x untouched.
LM_API double mat_min2(int n, const double* M, double* x);

#endif  // LMSPATIALREFERENCE_MATRIXKIT_H
