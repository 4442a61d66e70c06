#include <lmspatialreference/fitting.h>

#include <gtest/gtest.h>

using Lumora::Kernel::MyMatrix;

namespace {

MyMatrix _matrix(int rows, int cols, std::initializer_list<double> values) {
    MyMatrix m(rows, cols);
    m.setdata(values.begin(), static_cast<int>(values.size()));
    return m;
}

}  // namespace

TEST(MyMatrix, ProductSumsRowsByColumns) {
    MyMatrix a = _matrix(2, 3, {1, 2, 3, 4, 5, 6});
    MyMatrix b = _matrix(3, 2, {7, 8, 9, 10, 11, 12});
    MyMatrix c = a * b;
    ASSERT_EQ(c.rows, 2);
    ASSERT_EQ(c.cols, 2);
    const double expected[4] = {58, 64, 139, 154};
    for (int k = 0; k < 4; ++k) EXPECT_EQ(c.getxy(k / 2, k % 2), expected[k]) << k;

    MyMatrix mismatched = a * a;  // a zero matrix shaped like the left factor
    ASSERT_EQ(mismatched.rows, 2);
    ASSERT_EQ(mismatched.cols, 3);
    for (int k = 0; k < 6; ++k) EXPECT_EQ(mismatched.data[k], 0.0);
}

TEST(MyMatrix, NormalEquationsOfALineFit) {
    // Fit y = a + b x to (0, 1), (1, 3), (2, 5), (3, 7): exactly a = 1, b = 2.
    MyMatrix design = _matrix(4, 2, {1, 0, 1, 1, 1, 2, 1, 3});
    MyMatrix observed = _matrix(4, 1, {1, 3, 5, 7});
    MyMatrix transposed = design.transpote();
    ASSERT_EQ(transposed.rows, 2);
    ASSERT_EQ(transposed.cols, 4);
    for (int k = 0; k < 8; ++k) EXPECT_EQ(transposed.getxy(k % 2, k / 2), design.getxy(k / 2, k % 2));
    MyMatrix normal = transposed * design;
    MyMatrix inverse(2, 2);
    normal.inverse(inverse);
    MyMatrix solution = inverse * transposed * observed;
    EXPECT_NEAR(solution.getxy(0, 0), 1.0, 1e-12);
    EXPECT_NEAR(solution.getxy(1, 0), 2.0, 1e-12);
}

TEST(MyMatrix, CopiesAreDeep) {
    MyMatrix a = _matrix(2, 2, {1, 2, 3, 4});
    MyMatrix copy(a);
    MyMatrix assigned;
    MyMatrix returned = (assigned = a);
    a.setxy(0, 0, 99.0);
    for (const MyMatrix* m : {&copy, &assigned, &returned}) {
        ASSERT_EQ(m->rows, 2);
        ASSERT_EQ(m->cols, 2);
        EXPECT_EQ(m->getxy(0, 0), 1.0);
        EXPECT_EQ(m->getxy(1, 1), 4.0);
    }
    EXPECT_NE(returned.data, assigned.data);

    assigned = assigned;
    EXPECT_EQ(assigned.getxy(1, 0), 3.0);
}
