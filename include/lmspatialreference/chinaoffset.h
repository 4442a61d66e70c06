/// @file
/// China offset transformations: WGS 84 to the GCJ-02 and BD-09 systems of web
/// maps in China and back. Longitude and latitude in degrees; z is left alone.
#ifndef LMSPATIALREFERENCE_CHINAOFFSET_H
#define LMSPATIALREFERENCE_CHINAOFFSET_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/iterativeinverse.h>
#include <lmspatialreference/transformation.h>

namespace Lumora {
namespace Kernel {

/// True outside the rough box in which the GCJ-02 offset applies. The eastern
/// bound 137.8347 is compared with the latitude, so it never excludes a valid
/// point: points east of it count as inside. That is kept on purpose, so that
/// results agree with the offsets already in use.
LM_API bool outOfChina(double lon, double lat);
/// WGS 84 to GCJ-02 as a PointMapping, without bounds test; context unused.
LM_API void WGS84ToGCJ02(const double* in, double* out, void* context);
/// WGS 84 to BD-09 as a PointMapping, without bounds test; context unused.
LM_API void WGS84ToBD09(const double* in, double* out, void* context);

/// Offsets points inside China from WGS 84 to GCJ-02; others stay as they are.
class LM_API LmWGS84ToGCJ02CoordinateTransformation : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;
    /// Always true.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;
};

/// Offsets every point from WGS 84 to BD-09; there is no bounds test.
class LM_API LmWGS84ToBD09CoordinateTransformation : public LmWGS84ToGCJ02CoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;
    /// Always true.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;
};

/// Takes points inside China from GCJ-02 back to WGS 84 by iterating the
/// forward offset. The tolerance of a point is half the larger coordinate
/// change of a move of Precision() metres due north from it.
class LM_API LmGCJ02ToWGS84CoordinateTransformation : public LmCoordinateTransformation {
public:
    /// precision in metres, stored as Precision(double) stores it.
    explicit LmGCJ02ToWGS84CoordinateTransformation(double precision);

    using LmCoordinateTransformation::Transformation;
    /// Always true; a point that does not converge is left as it was.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    /// The distance, in metres, whose northward span sets each point's
    /// tolerance.
    virtual double Precision() const;
    /// Stores |value|, or 0.001 when that is not positive.
    virtual void Precision(double value);

protected:
    /// Metres, as Precision() answers it; shared with the BD-09 inverse.
    double m_precision = 0.001;
};

/// Takes every point from BD-09 back to WGS 84 (no bounds test). The squared
/// tolerance of a point is a quarter of the squared length of the northward
/// move of Precision() metres.
class LM_API LmBD09ToWGS84CoordinateTransformation : public LmGCJ02ToWGS84CoordinateTransformation {
public:
    /// precision in metres, stored as Precision(double) stores it.
    explicit LmBD09ToWGS84CoordinateTransformation(double precision);

    using LmCoordinateTransformation::Transformation;
    /// Always true; a point that does not converge is left as it was.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_CHINAOFFSET_H
