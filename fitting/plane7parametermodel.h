// The differential plane seven-parameter model at one point: its coefficient
// builders, the normal-matrix accumulators of its estimators and the
// evaluator of one corrected coordinate.
//
// Longitude L = x and latitude B = y go to sine and cosine as they are.
// rho is the number of seconds of arc in a radian.
#ifndef LMSPATIALREFERENCE_FITTING_PLANE7PARAMETERMODEL_H
#define LMSPATIALREFERENCE_FITTING_PLANE7PARAMETERMODEL_H

namespace Lumora {
namespace Kernel {

const double _rho = 206264.806247097;

// 16 coefficients of the 2D model at (x, y) on the ellipsoid (a, f), with
// the ellipsoid change (da, df):
//   [0..2]  dLon/d(dX, dY, dZ)   [3..5]  dLat/d(dX, dY, dZ)
//   [6..8]  dLon/d(ex, ey, ez)   [9..11] dLat/d(ex, ey, ez)
//   [12]    dLon/dm              [13]    dLat/dm
//   [14]    ellipsoid term of dLon  [15] ellipsoid term of dLat
void _Plane7Parameter2D(double* c, double a, double f, double x, double y, double da, double df);

// 24 coefficients of the 3D model at (x, y, height z):
//   [0..8]   shift derivatives, rows dLon, dLat, dHeight
//   [9..17]  rotation derivatives, same rows
//   [18..20] scale derivatives     [21..23] ellipsoid terms
// Its latitude shift terms carry the opposite sign of the 2D builder's, its
// height row reads sin B sin L for dY and its df term of the height divides by
// 1 - a: the published model is reproduced as it is.
void _Plane7Parameter3D(double* c, double a, double f, double x, double y, double z, double da, double df);

// Adds the two observation rows of a 2D point (observed differences dx, dy)
// to the 8 x 8 normal matrix N for mat_min2: element 0 of each row is the
// ellipsoid term minus the observation, elements 1..7 the coefficients of
// (dX, dY, dZ, ex, ey, ez, m).
void _Plane7Parameter2D_MM(double* N, const double* c, double dx, double dy);

// As the 2D form with a third, height row, scaled by 1e-5 (weight 1e-10).
void _Plane7Parameter3D_MM(double* N, const double* c, double dx, double dy, double dz);

// One correction of the 3D model: p the 7 working parameters, c the row's 3
// shift coefficients (its rotation ones 9 further on), s the row's scale
// coefficient (its ellipsoid term 3 further on).
double _d_3d(const double* p, const double* c, const double* s);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_FITTING_PLANE7PARAMETERMODEL_H
