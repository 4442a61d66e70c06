/// @file
/// A small owning row-major matrix.
#ifndef LMSPATIALREFERENCE_MYMATRIX_H
#define LMSPATIALREFERENCE_MYMATRIX_H

#include <lmspatialreference/export.h>

namespace Lumora {
namespace Kernel {

/// Small owning row-major matrix used to build normal equations.
class LM_API MyMatrix {
public:
    /// An empty 0 x 0 matrix with null data.
    MyMatrix();
    MyMatrix(int rows, int cols);  ///< A zero-filled rows x cols matrix.
    /// A deep copy of other's shape and elements.
    MyMatrix(const MyMatrix& other);
    ~MyMatrix();

    double getxy(int r, int c) const;    ///< Element (r, c), unchecked.
    void setxy(int r, int c, double v);  ///< Sets element (r, c) to v, unchecked.

    /// Releases the elements and allocates a zero-filled rows x cols matrix.
    void reset(int rows, int cols);
    /// Copies count doubles into the existing storage; never resizes.
    void setdata(const double* src, int count);

    /// Returns a copy of the assigned matrix, not a reference.
    MyMatrix operator=(const MyMatrix& other);

    /// The cols x rows transpose.
    MyMatrix transpote() const;

    /// Square matrices only. `out` must already have this matrix's shape.
    void inverse(MyMatrix& out) const;

    /// rows x b.cols product; the zero matrix of that shape when the inner
    /// sizes differ.
    MyMatrix operator*(const MyMatrix& b);

    /// rows * cols elements, row-major; owned.
    double* data;
    /// The number of rows.
    int rows;
    /// The number of columns.
    int cols;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_MYMATRIX_H
