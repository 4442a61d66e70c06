// LU layer: decomposition record, solver and inverse.
#include <lmspatialreference/fitting.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace Lumora {
namespace Kernel {

LUPMat::LUPMat() : L(nullptr), U(nullptr), P(nullptr), n(0) {}

void DelLUPMat(LUPMat m) {
    delete[] m.L;
    delete[] m.U;
    delete[] m.P;
    m.L = nullptr;
    m.U = nullptr;
    m.P = nullptr;
}

void LUPDecomp(const double* A, int n, LUPMat& out) {
    std::vector<double> W(A, A + static_cast<std::size_t>(n) * n);
    std::vector<int> P(n);
    for (int i = 0; i < n; ++i) P[i] = i;

    for (int k = 0; k < n; ++k) {
        double best = 0.0;
        int pivotRow = k;
        for (int i = k; i < n; ++i) {
            if (std::fabs(W[i * n + k]) > std::fabs(best)) {
                best = W[i * n + k];
                pivotRow = i;
            }
        }
        if (best == 0.0) {
            // There is no error return: a singular normal matrix means the
            // caller's estimation cannot proceed at all.
            std::puts("singular matrix!");
            std::exit(1);
        }
        std::swap(P[k], P[pivotRow]);
        for (int j = 0; j < n; ++j) std::swap(W[k * n + j], W[pivotRow * n + j]);
        for (int i = k + 1; i < n; ++i) {
            W[i * n + k] /= W[k * n + k];
            for (int j = k + 1; j < n; ++j) W[i * n + j] -= W[i * n + k] * W[k * n + j];
        }
    }

    out.L = new double[static_cast<std::size_t>(n) * n];
    out.U = new double[static_cast<std::size_t>(n) * n];
    out.P = new int[n];
    out.n = n;
    for (int i = 0; i < n; ++i) {
        out.P[i] = P[i];
        for (int j = 0; j < n; ++j) {
            const double w = W[i * n + j];
            out.L[i * n + j] = i > j ? w : (i == j ? 1.0 : 0.0);
            out.U[i * n + j] = i > j ? 0.0 : w;
        }
    }
}

void SolveLinearEq(LUPMat& lu, const double* b, int n, double* x) {
    std::vector<double> y(n);
    for (int i = 0; i < n; ++i) {
        double sum = 0.0;
        for (int j = 0; j < i; ++j) sum += lu.L[i * n + j] * y[j];
        y[i] = b[lu.P[i]] - sum;
    }
    for (int i = n - 1; i >= 0; --i) {
        double sum = 0.0;
        for (int j = n - 1; j > i; --j) sum += lu.U[i * n + j] * x[j];
        x[i] = (y[i] - sum) / lu.U[i * n + i];
    }
}

void InverseMatrix(const double* A, int n, double* inv) {
    LUPMat lu;
    LUPDecomp(A, n, lu);
    std::vector<double> unit(n, 0.0);
    std::vector<double> column(n);
    for (int j = 0; j < n; ++j) {
        if (j > 0) unit[j - 1] = 0.0;
        unit[j] = 1.0;
        SolveLinearEq(lu, unit.data(), n, column.data());
        for (int i = 0; i < n; ++i) inv[i * n + j] = column[i];
    }
    DelLUPMat(lu);
}

}  // namespace Kernel
}  // namespace Lumora
