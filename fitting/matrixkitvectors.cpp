// Vector operations of the C-style matrix kit.
#include <lmspatialreference/fitting.h>

#include <cmath>

void vec_oper1(int n, const double* x, double a, double b, double* y) {
    for (int i = 0; i < n; ++i) y[i] = a * x[i] + b;
}

void vec_oper2(int n, const double* x, double a, const double* y, double b, double c, double* z) {
    for (int i = 0; i < n; ++i) z[i] = a * x[i] + b * y[i] + c;
}

double vec_mul(int n, const double* x, const double* y) {
    double sum = 0.0;
    for (int i = 0; i < n; ++i) sum += x[i] * y[i];
    return sum;
}

int vec_set_r(double r, int n, double* x) {
    const double squaredLength = vec_mul(n, x, x);
    if (squaredLength < 2.220446049250313e-23) return 0;
    vec_oper1(n, x, r / std::sqrt(squaredLength), 0.0, x);
    return 1;
}
