// The checked estimators promise never to end the process: they refuse a
// normal matrix on which mat_lu meets an exactly zero pivot, and the classical
// solve then factors the very same matrix with LUPDecomp, which exits on one.
// The promise holds only while both choose the same pivots with the same
// arithmetic, so they are compared here, factor for factor, bit for bit.
#include <lmspatialreference/lupmatrix.h>
#include <lmspatialreference/matrixkit.h>

#include <gtest/gtest.h>

#include <cctype>
#include <ostream>
#include <string>
#include <vector>

using namespace Lumora::Kernel;

namespace {

// N += row rowᵀ for the design rows of the plane similarity, (1, 0, x, -y)
// and (0, 1, y, x), and of Bursa, for the points given.
std::vector<double> Plane4Normal(const std::vector<double>& xy) {
    std::vector<double> N(16, 0.0);
    for (std::size_t i = 0; i < xy.size(); i += 2) {
        const double rows[2][4] = {{1, 0, xy[i], -xy[i + 1]}, {0, 1, xy[i + 1], xy[i]}};
        for (const double* r : rows) mat_vec_vec(4, r, r, N.data());
    }
    return N;
}

std::vector<double> Bursa7Normal(const std::vector<double>& xyz) {
    std::vector<double> N(49, 0.0);
    for (std::size_t i = 0; i < xyz.size(); i += 3) {
        const double X = xyz[i], Y = xyz[i + 1], Z = xyz[i + 2];
        const double rows[3][7] = {{1, 0, 0, 0, -Z, Y, X}, {0, 1, 0, Z, 0, -X, Y}, {0, 0, 1, -Y, X, 0, Z}};
        for (const double* r : rows) mat_vec_vec(7, r, r, N.data());
    }
    return N;
}

struct PivotCase {
    const char* name;
    int n;
    std::vector<double> A;
    bool singular;  // an exactly zero pivot, so that LUPDecomp exits
};

const PivotCase kCases[] = {
    {"rows out of order", 3, {0, 2, 1, 3, 1, 4, 1, 5, 9}, false},
    {"equal magnitudes keep the upper row", 2, {-2, 1, 2, 3}, false},
    {"second pivot cancels exactly", 2, {1, 2, 2, 4}, true},
    {"zero first column", 2, {0, 1, 0, 2}, true},
    {"plane similarity, one point three times", 4, Plane4Normal({7, 3, 7, 3, 7, 3}), true},
    {"plane similarity, real network", 4,
     Plane4Normal({500123.4, 3400567.8, 501987.1, 3401234.5, 499876.0, 3402999.9}), false},
    // Rounding leaves every pivot non-zero, so LUPDecomp goes on; sets like
    // this are left to the checked path's eigenvalue test.
    {"Bursa, points on one line", 7,
     Bursa7Normal({-2e6, 5e6, 2.5e6, -2.001e6, 5.002e6, 2.503e6, -2.002e6, 5.004e6, 2.506e6, -2.003e6, 5.006e6,
                   2.509e6}),
     false},
    {"Bursa, real network", 7,
     Bursa7Normal({-2.1e6, 4.9e6, 3.4e6, -2.2e6, 4.85e6, 3.42e6, -2.15e6, 4.95e6, 3.3e6, -2.05e6, 4.88e6, 3.45e6}),
     false},
};

void PrintTo(const PivotCase& c, std::ostream* out) { *out << c.name; }

class Pivoting : public testing::TestWithParam<PivotCase> {};

TEST_P(Pivoting, MatLuRefusesExactlyWhereLupDecompExitsAndFactorsAlike) {
    const PivotCase& c = GetParam();
    std::vector<double> factors = c.A;
    std::vector<int> order(c.n);
    const bool refused = !mat_lu(c.n, factors.data(), order.data());
    EXPECT_EQ(refused, c.singular);
    if (refused) {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        LUPMat lu;
        EXPECT_EXIT(LUPDecomp(c.A.data(), c.n, lu), testing::ExitedWithCode(1), "");
        return;
    }
    LUPMat lu;
    LUPDecomp(c.A.data(), c.n, lu);
    for (int i = 0; i < c.n; ++i) {
        EXPECT_EQ(lu.P[i], order[i]) << "row " << i;
        for (int j = 0; j < c.n; ++j) {
            const double stored = factors[order[i] * c.n + j];
            EXPECT_EQ(i > j ? lu.L[i * c.n + j] : lu.U[i * c.n + j], stored) << i << ", " << j;
        }
    }
    DelLUPMat(lu);
}

INSTANTIATE_TEST_SUITE_P(Matrices, Pivoting, testing::ValuesIn(kCases), [](const auto& info) {
    std::string name;
    for (const char* p = info.param.name; *p != '\0'; ++p)
        if (std::isalnum(static_cast<unsigned char>(*p))) name += *p;
    return name;
});

}  // namespace
