// Dense linear algebra shared by the parameter estimators.
//
// Two layers live side by side: an LU layer with an explicit decomposition
// record and a small matrix class (namespace Lumora::Kernel), and a C-style kit
// of free functions over plain double arrays (global namespace).
//
// Every matrix is dense and row-major: element (i, j) of an n-column matrix is
// at index i * n + j. Sizes are never checked against buffer lengths; callers
// pass correct sizes. Nothing here throws except allocation failures.
#ifndef LMSPATIALREFERENCE_FITTING_H
#define LMSPATIALREFERENCE_FITTING_H

namespace Lumora {
namespace Kernel {

// Result of LUPDecomp: row i of L * U equals row P[i] of the decomposed matrix.
// The record does not own its arrays; release them with DelLUPMat.
struct LUPMat {
    double* L;  // n * n, unit lower triangular
    double* U;  // n * n, upper triangular
    int* P;     // n, row permutation
    int n;

    LUPMat();
};

// Array-deletes L, U and P of the record (each when non-null).
void DelLUPMat(LUPMat m);

// LU decomposition with partial pivoting into freshly allocated arrays; what
// `out` held before is not released. A column that is exactly zero from the
// diagonal down prints "singular matrix!" on standard output and ends the
// process with exit status 1: callers never see a singular matrix come back.
void LUPDecomp(const double* A, int n, LUPMat& out);

// Solves A * x = b from the decomposition of A.
void SolveLinearEq(LUPMat& lu, const double* b, int n, double* x);

// inv = A^-1 (n * n). A singular A ends the process through LUPDecomp.
void InverseMatrix(const double* A, int n, double* inv);

// Small owning row-major matrix used to build normal equations.
class MyMatrix {
public:
    MyMatrix();
    MyMatrix(int rows, int cols);  // zero-filled
    MyMatrix(const MyMatrix& other);
    ~MyMatrix();

    double getxy(int r, int c) const;    // unchecked
    void setxy(int r, int c, double v);  // unchecked

    // Releases the elements and allocates a zero-filled rows x cols matrix.
    void reset(int rows, int cols);
    // Copies count doubles into the existing storage; never resizes.
    void setdata(const double* src, int count);

    // Returns a copy of the assigned matrix, not a reference.
    MyMatrix operator=(const MyMatrix& other);

    MyMatrix transpote() const;

    // Square matrices only. `out` must already have this matrix's shape.
    void inverse(MyMatrix& out) const;

    // rows x b.cols product; the zero matrix of that shape when the inner
    // sizes differ.
    MyMatrix operator*(const MyMatrix& b);

    double* data;
    int rows;
    int cols;
};

}  // namespace Kernel
}  // namespace Lumora

// C-style kit over n x n row-major matrices and length-n vectors.
// Truth values are 1 for success and 0 for failure.

// y[i] = a * x[i] + b; y may be x.
void vec_oper1(int n, const double* x, double a, double b, double* y);
// z[i] = a * x[i] + b * y[i] + c; z may be x or y.
void vec_oper2(int n, const double* x, double a, const double* y, double b, double c, double* z);
// Dot product, summed in increasing index.
double vec_mul(int n, const double* x, const double* y);
// Scales x to length r; 0 and x unchanged when x is (nearly) the zero vector.
int vec_set_r(double r, int n, double* x);

// Determinant by full-pivot elimination over n row pointers; destroys the rows.
double _mat_del(int n, double** rows);
// Determinant of A (A unchanged). Exactly 0 when every element of a matrix of
// order 3 or more is below about 4.7e-12 in magnitude.
double mat_del(int n, const double* A);

// A[i][j] += y[j] * (x[i] * w); returns n.
int mat_add(int n, double* A, const double* x, const double* y, double w);
// B = A transposed; B may be A.
void mat_turn(int n, const double* A, double* B);
// C = A * B; C must be neither A nor B.
void mat_mul(int n, const double* A, const double* B, double* C);
// y = A * x.
void mat_vec(int n, const double* A, const double* x, double* y);
// Quadratic form x' * A * x.
double mat_vec_mul(int n, const double* A, const double* x);
// A[i][j] += y[j] * x[i].
void mat_vec_vec(int n, const double* x, const double* y, double* A);

// In-place LU factors of A with rows permuted through idx (rows never move);
// 0 on an exactly zero pivot.
int mat_lu(int n, double* A, int* idx);
// Solves from mat_lu's factors; b is overwritten.
void mat_backsubs(int n, const double* LU, double* b, double* x, const int* idx);
// Solves A * x = b, overwriting A with its factors; 0 when singular or x == b.
int mat_solve(int n, double* A, double* b, double* x);
// In-place inverse; on 0 A is left partly factored.
int mat_inv(int n, double* A);

// Eigen-decomposition of the symmetric A (only its strict upper triangle and
// diagonal are read; A is destroyed). d receives the eigenvalues from largest
// to smallest, row i of V the unit eigenvector of d[i]. work holds 2n ints.
void Jacobi(int n, double* A, double* V, double* d, void* work);
// As Jacobi, on a copy of A.
void mat_eigen(int n, const double* A, double* V, double* d);

// Eliminates the symmetric form M with its first unknown fixed; 0 when the
// form is found indefinite.
int _mat_min2(int n, double* M, int* idx);
// Minimum of x' * M * x subject to x[0] = 1, with the minimiser in x (x may be
// null). Unknowns the form does not determine come back as 0. Returns minus
// the largest double when M is indefinite, leaving x untouched.
double mat_min2(int n, const double* M, double* x);

#endif  // LMSPATIALREFERENCE_FITTING_H
