/// @file
/// Two-dimensional affine transformations.
#ifndef LMSPATIALREFERENCE_AFFINETRANSFORMATION_H
#define LMSPATIALREFERENCE_AFFINETRANSFORMATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/transformation.h>

#include <vector>

namespace Lumora {
namespace Kernel {

/// Two-dimensional affine transformation
///     `x' = m0 * x + m2 * y + m4`,   `y' = m1 * x + m3 * y + m5`,
/// given by its elements or estimated by least squares from pairs of identical
/// points. z is never touched. Large batches run in parallel.
class LM_API LmAffineCoordinateTransformation : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    /// Estimates the elements from n values of each array (n / 2 points, x and
    /// y interleaved) through Parameter. When that estimation fails the
    /// elements are the identity (1, 0, 0, 1, 0, 0).
    LmAffineCoordinateTransformation(const double* source, const double* target, int n);
    /// Copies the six elements m0 ... m5.
    explicit LmAffineCoordinateTransformation(const double* elements);
    /// Translation by (dx, dy).
    LmAffineCoordinateTransformation(double dx, double dy);
    /// Rotation by angle degrees about (cx, cy), counter-clockwise for x east
    /// and y north.
    LmAffineCoordinateTransformation(double cx, double cy, double angle);

    /// Re-estimates the elements from n values of each array (at least three
    /// points). False for fewer points or a degenerate point set; a failed x
    /// row leaves every element as it was, a failed y row keeps the new x row.
    bool Parameter(const double* source, const double* target, int n);

    /// Copies the six elements m0 ... m5 into out; always true.
    bool Elements(double* out);
    /// The six elements, owned by the object.
    const double* Matrix() const;
    /// Values (not points) of the last estimation; 0 when built from elements.
    int IdenticalPointCount() const;
    ///@{
    /// The source and target values of the last estimation (IdenticalPointCount
    /// doubles each, x and y interleaved), owned by the object; null when there
    /// was none.
    const double* SourcePoint() const;
    const double* TargetPoint() const;
    ///@}

    /// Always true.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

private:
    std::vector<double> m_sourcePoints;
    std::vector<double> m_targetPoints;
    double m_elements[6];
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_AFFINETRANSFORMATION_H
