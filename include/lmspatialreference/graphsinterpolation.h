/// @file
/// Four-corner ("graph") interpolation of plane coordinate corrections, and the
/// parameter layouts that the reverse-parameter computation understands.
#ifndef LMSPATIALREFERENCE_GRAPHSINTERPOLATION_H
#define LMSPATIALREFERENCE_GRAPHSINTERPOLATION_H

#include <lmspatialreference/transformation.h>
#include <lmspatialreference/export.h>

#include <cstdint>

namespace Lumora {
namespace Kernel {

/// Corrects plane coordinates by offsets interpolated between the four corners
/// of a map sheet. Corners C[0..3] and offsets O[0..3] are (first, second)
/// pairs. The first offset is interpolated along x between corners 0-1 and
/// 2-3, then along y; the second along y between corners 0-2 and 1-3, then
/// along x. Each weight is measured from the far corner of its pair, so a point
/// at the coordinate of one corner receives the offset of the other corner of
/// that pair: callers pass the corners and offsets in the matching order (the
/// order ComputeGridCoordinatesOffset keeps). The units of the offsets are the
/// units of the coordinates. There is no reverse.
class LM_API LmGraphsInterpolationCoordinateTransformation : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    /// Copies 8 doubles of each array; a null array counts as 8 zeros.
    LmGraphsInterpolationCoordinateTransformation(const double* corners, const double* offsets);

    /// x and y corrected in place, z never read. Corners sharing a coordinate
    /// make the weights infinite or NaN, and so the results. False only for
    /// a null x or y with a positive count.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    ///@{
    /// The 8 stored corner values and offsets, owned by the object.
    const double* Corners() const;
    const double* Offsets() const;
    ///@}

private:
    double m_corners[8];
    double m_offsets[8];
};

/// Parameter layouts of ComputeReverseParameter. Shifts are in metres,
/// rotations in seconds of arc, scale changes in parts per million.
enum LmParameterType : std::int32_t {
    /// dX, dY, dZ, ex, ey, ez, m with the linear rotation-scale matrix.
    eLinear7Parameter = 0,
    /// dX, dY, theta, m of the plane four-parameter transformation.
    ePlane4Parameter = 1,
    /// dX, dY, dZ, ex, ey, ez, m with the scale applied to the rotations, as
    /// the Bursa seven-parameter transformation reverses them.
    eBursa7Parameter = 2,
    /// p0, p1, p2, theta of the cube four-parameter transformation, with the
    /// axis latitude and longitude in degrees given separately.
    eCube4Parameter = 3,
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_GRAPHSINTERPOLATION_H
