#include <lmspatialreference/fittingmodels.h>
#include <lmspatialreference/fitting.h>

#include "internal/estimationsupport.h"
#include "internal/publishedunits.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace Lumora {
namespace Kernel {

// ---------------------------------------------------------------------------
// Cube four-parameter

LmCube4Parameter::LmCube4Parameter()
    : m_sinPhi(1.0), m_cosPhi(0.0), m_sinLambda(0.0), m_cosLambda(1.0), m_p0(0.0), m_p1(0.0), m_p2(0.0),
      m_theta(0.0) {}

LmCube4Parameter* LmCube4Parameter::Create(double phi, double lambda, const double* params) {
    m_sinPhi = std::sin(phi);
    m_cosPhi = std::cos(phi);
    m_sinLambda = std::sin(lambda);
    m_cosLambda = std::cos(lambda);
    const double none[4] = {0.0, 0.0, 0.0, 0.0};
    const double* p = params ? params : none;
    m_p0 = p[0];
    m_p1 = p[1];
    m_p2 = p[2];
    // The estimator publishes theta through the kept pi; converting back
    // through the same one keeps the round trip exact.
    m_theta = _RadiansFromSecondsByHalfTurns(p[3], _keptPi);
    return this;
}

void LmCube4Parameter::trans(double& x, double& y, double& z) {
    const double X = x;
    const double Y = y;
    const double Z = z;
    x = X + m_p0 + m_theta * (Z * m_cosPhi * m_sinLambda - Y * m_sinPhi);
    y = Y + m_p1 + m_theta * (X * m_sinPhi - Z * m_cosPhi * m_cosLambda);
    z = Z + m_p2 + m_theta * (Y * m_cosPhi * m_cosLambda - X * m_cosPhi * m_sinLambda);
}

// ---------------------------------------------------------------------------
// Molodensky seven-parameter

LmMolodensky7Parameter::LmMolodensky7Parameter()
    : m_dX(0.0), m_dY(0.0), m_dZ(0.0), m_ex(0.0), m_ey(0.0), m_ez(0.0), m_k(1.0), m_X0(0.0), m_Y0(0.0),
      m_Z0(0.0) {}

LmMolodensky7Parameter* LmMolodensky7Parameter::Create(const double* params, const double* centre) {
    const double none[7] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
    const double* p = params ? params : none;
    const double radiansPerSecond = _RadiansFromSeconds(1.0, _truePi);
    m_dX = p[0];
    m_dY = p[1];
    m_dZ = p[2];
    m_ex = p[3] * radiansPerSecond;
    m_ey = p[4] * radiansPerSecond;
    m_ez = p[5] * radiansPerSecond;
    m_k = p[6] / _partsPerMillion + 1.0;
    m_X0 = centre ? centre[0] : 0.0;
    m_Y0 = centre ? centre[1] : 0.0;
    m_Z0 = centre ? centre[2] : 0.0;
    return this;
}

void LmMolodensky7Parameter::trans(double& x, double& y, double& z) {
    const double dx = x - m_X0;
    const double dy = y - m_Y0;
    const double dz = z - m_Z0;
    x = m_X0 + m_dX - dz * m_ey + dy * m_ez + dx * m_k;
    y = m_Y0 + m_dY + dz * m_ex - dx * m_ez + dy * m_k;
    z = m_Z0 + m_dZ - dy * m_ex + dx * m_ey + dz * m_k;
}

// ---------------------------------------------------------------------------
// Square fitting

LmSquareFittingTransformation::LmSquareFittingTransformation() : m_x0(0.0), m_y0(0.0), m_meanError(0.0) {
    std::fill(m_x, m_x + 7, 0.0);
    std::fill(m_y, m_y + 7, 0.0);
}

LmSquareFittingTransformation* LmSquareFittingTransformation::Create(int count, int dim, const double* src,
                                                                     const double* dst) {
    double Nx[49] = {};
    double Ny[49] = {};
    std::fill(m_x, m_x + 7, 0.0);
    std::fill(m_y, m_y + 7, 0.0);
    m_x0 = 0.0;
    m_y0 = 0.0;
    m_meanError = 0.0;
    if (src == nullptr || dst == nullptr || count < 1 || dim < 2) return this;
    m_x0 = std::floor(src[0]);
    m_y0 = std::floor(src[1]);
    for (int i = 0; i < count; ++i) {
        const double* s = src + static_cast<std::ptrdiff_t>(i) * dim;
        const double* d = dst + static_cast<std::ptrdiff_t>(i) * dim;
        _mm(Nx, Ny, s[0], s[1], d[0], d[1]);
    }
    const double sx = mat_min2(7, Nx, m_x);
    const double sy = mat_min2(7, Ny, m_y);
    // sqrt((sx + sy) / count / 2), with an indefinite form on either axis
    // making it NaN.
    m_meanError = _RootMeanSquareOfMinimum(sx == -DBL_MAX || sy == -DBL_MAX ? -DBL_MAX : sx + sy, 2 * count);
    return this;
}

void LmSquareFittingTransformation::_mm(double* Nx, double* Ny, double x, double y, double X, double Y) {
    x -= m_x0;
    y -= m_y0;
    X -= m_x0;
    Y -= m_y0;
    double v[7] = {x - X, 1.0, x, y, x * y, x * x, y * y};
    mat_vec_vec(7, v, v, Nx);
    v[0] = y - Y;
    mat_vec_vec(7, v, v, Ny);
}

void LmSquareFittingTransformation::trans(double& x, double& y, double&) {
    const double xr = x - m_x0;
    const double yr = y - m_y0;
    const double w[6] = {1.0, xr, yr, xr * yr, xr * xr, yr * yr};
    x = xr + vec_mul(6, w, m_x + 1) + m_x0;
    y = yr + vec_mul(6, w, m_y + 1) + m_y0;
}

double LmSquareFittingTransformation::OriginX() const { return m_x0; }

double LmSquareFittingTransformation::OriginY() const { return m_y0; }

const double* LmSquareFittingTransformation::XCoefficients() const { return m_x; }

const double* LmSquareFittingTransformation::YCoefficients() const { return m_y; }

double LmSquareFittingTransformation::MeanError() const { return m_meanError; }

}  // namespace Kernel
}  // namespace Lumora
