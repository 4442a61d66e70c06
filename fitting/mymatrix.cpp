// Small owning matrix used to build normal equations.
#include <lmspatialreference/fitting.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Lumora {
namespace Kernel {

MyMatrix::MyMatrix() : data(nullptr), rows(0), cols(0) {}

MyMatrix::MyMatrix(int rows, int cols) : data(nullptr), rows(0), cols(0) { reset(rows, cols); }

MyMatrix::MyMatrix(const MyMatrix& other) : data(nullptr), rows(0), cols(0) {
    reset(other.rows, other.cols);
    setdata(other.data, other.rows * other.cols);
}

MyMatrix::~MyMatrix() { delete[] data; }

double MyMatrix::getxy(int r, int c) const { return data[cols * r + c]; }

void MyMatrix::setxy(int r, int c, double v) { data[cols * r + c] = v; }

void MyMatrix::reset(int newRows, int newCols) {
    delete[] data;
    data = nullptr;
    rows = newRows;
    cols = newCols;
    data = new double[static_cast<std::size_t>(newRows) * newCols]();
}

void MyMatrix::setdata(const double* src, int count) { std::copy(src, src + count, data); }

MyMatrix MyMatrix::operator=(const MyMatrix& other) {
    if (this != &other) {
        reset(other.rows, other.cols);
        setdata(other.data, other.rows * other.cols);
    }
    return *this;
}

MyMatrix MyMatrix::transpote() const {
    MyMatrix result(cols, rows);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c) result.setxy(c, r, getxy(r, c));
    return result;
}

void MyMatrix::inverse(MyMatrix& out) const {
    std::vector<double> inverted(static_cast<std::size_t>(rows) * cols, 0.0);
    InverseMatrix(data, rows, inverted.data());
    out.setdata(inverted.data(), rows * cols);
}

MyMatrix MyMatrix::operator*(const MyMatrix& b) {
    MyMatrix product(rows, b.cols);
    if (cols != b.rows) return product;
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < b.cols; ++c) {
            double sum = 0.0;
            for (int k = 0; k < cols; ++k) sum += getxy(r, k) * b.getxy(k, c);
            product.setxy(r, c, sum);
        }
    }
    return product;
}

}  // namespace Kernel
}  // namespace Lumora
