/// @file
/// Point models whose parameters the factory estimates from control points:
/// the cube four-parameter and Molodensky seven-parameter models in geocentric
/// Cartesian space and the second-order square fitting of plane coordinates,
/// with TransImp, which turns any of them into a transformation.
#ifndef LMSPATIALREFERENCE_FITTINGMODELS_H
#define LMSPATIALREFERENCE_FITTINGMODELS_H

#include <lmspatialreference/transformation.h>
#include <lmspatialreference/export.h>

#include <cstddef>

namespace Lumora {
namespace Kernel {

/// Three shifts and one small rotation theta about a fixed axis u of latitude
/// phi and longitude lambda: r' = r + (p0, p1, p2) + theta * (u x r), in metres.
class LM_API LmCube4Parameter {
public:
    /// The identity (zero shifts and rotation about the polar axis).
    LmCube4Parameter();
    /// Sets the model and returns this object. Axis angles in radians; params
    /// p0, p1, p2 (metres) and theta (seconds of arc). A null params gives
    /// zero shifts and rotation.
    LmCube4Parameter* Create(double phi, double lambda, const double* params);
    /// One geocentric point, in place.
    void trans(double& x, double& y, double& z);

private:
    double m_sinPhi;
    double m_cosPhi;
    double m_sinLambda;
    double m_cosLambda;
    double m_p0;
    double m_p1;
    double m_p2;
    double m_theta;  // radians
};

/// Shifts, three small rotations and a scale about a centre (X0, Y0, Z0):
/// r' = c + d + k * (r - c) + rotation of (r - c), in metres.
class LM_API LmMolodensky7Parameter {
public:
    /// The identity about the origin.
    LmMolodensky7Parameter();
    /// Sets the model and returns this object. params: dX, dY, dZ (metres),
    /// ex, ey, ez (seconds of arc), m (parts per million); centre: X0, Y0, Z0
    /// (metres), or null for the origin. A null params gives the identity.
    LmMolodensky7Parameter* Create(const double* params, const double* centre);
    /// One geocentric point, in place.
    void trans(double& x, double& y, double& z);

private:
    double m_dX;
    double m_dY;
    double m_dZ;
    double m_ex;  // radians
    double m_ey;
    double m_ez;
    double m_k;  // the whole factor 1 + m
    double m_X0;
    double m_Y0;
    double m_Z0;
};

/// Second-order polynomial correction of plane coordinates: in coordinates
/// reduced by the origin (x0, y0), X - x = a1 + a2 x + a3 y + a4 x y + a5 x^2 +
/// a6 y^2, and likewise Y - y with b1 ... b6. The origin is the first source
/// point rounded down, which keeps the squares of large coordinates (projected
/// metres) from swamping the normal equations.
class LM_API LmSquareFittingTransformation {
public:
    /// Origin, coefficients and mean error all zero: the identity.
    LmSquareFittingTransformation();
    /// Returns this object, after fitting both coefficient vectors by least
    /// squares to count pairs of
    /// control points of dim doubles (x and y used). Fewer than six points
    /// leave the undetermined coefficients at 0. A null array, count < 1 or
    /// dim < 2 leaves the identity.
    LmSquareFittingTransformation* Create(int count, int dim, const double* src, const double* dst);
    /// Accumulates the pair (x, y) -> (X, Y) into the 7 x 7 normal matrices of
    /// the x and y corrections, with the origin subtracted from both points.
    void _mm(double* Nx, double* Ny, double x, double y, double X, double Y);
    /// One plane point, in place; z is not used.
    void trans(double& x, double& y, double& z);

    ///@{
    /// The floor-rounded origin (x0, y0) subtracted from every point before
    /// the fit.
    double OriginX() const;
    double OriginY() const;
    ///@}
    ///@{
    /// The coefficients of the x and y corrections, 7 doubles each, owned by
    /// the object: element 0 is the fixed 1 (0 before a fit), then a1 ... a6
    /// or b1 ... b6.
    const double* XCoefficients() const;
    const double* YCoefficients() const;
    ///@}
    /// sqrt((sx + sy) / count / 2) of the two residual minima, in coordinate
    /// units; NaN when a normal matrix was indefinite (then the coefficients
    /// of that axis stay 0).
    double MeanError() const;

private:
    double m_x0;
    double m_y0;
    double m_x[7];
    double m_y[7];
    double m_meanError;
};

/// A transformation that applies T::trans to each point of a batch. When z is
/// null one height, 0 at the start, is handed to every point and keeps what
/// the previous point's trans wrote into it: the models that use heights read
/// the one their predecessor left.
template <class T>
class LM_API TransImp : public T, public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    /// False only for a null x or y with a positive count.
    bool Transformation(double* x, double* y, double* z, int count, int step) override {
        if (count > 0 && (x == nullptr || y == nullptr)) return false;
        double height = 0.0;
        for (int i = 0; i < count; ++i) {
            const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(i) * step;
            T::trans(x[at], y[at], z ? z[at] : height);
        }
        return true;
    }
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_FITTINGMODELS_H
