// Parameters of the reverse of a plane four-parameter, seven-parameter or cube
// four-parameter transformation, from the inverse of its rotation-scale matrix.
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/fitting.h>

#include "internal/publishedunits.h"

#include <cmath>

namespace Lumora {
namespace Kernel {

namespace {

// The angle unit of the published parameters goes through the kept pi in
// both directions, so a reverse of a reverse gives the angle back exactly.
const double _secondsPerRadian = _SecondsPerRadian(_keptPi);
const double _radiansPerSecond = _RadiansFromSecondsByHalfTurns(1.0, _keptPi);

// R^-1 of the n x n matrix R, and t' = R^-1 * t.
void _InvertAndApply(int n, const double* R, const double* t, MyMatrix& inverse, double* tPrime) {
    MyMatrix matrix(n, n);
    matrix.setdata(R, n * n);
    inverse.reset(n, n);
    matrix.inverse(inverse);
    for (int r = 0; r < n; ++r) {
        tPrime[r] = 0.0;
        for (int c = 0; c < n; ++c) tPrime[r] += inverse.getxy(r, c) * t[c];
    }
}

// Types 0 and 2: the reverse of X' = R * X + t with a 3 x 3 rotation-scale R.
void _Reverse7(bool scaledRotations, const double* p, double* reverse) {
    const double ex = p[3] * _radiansPerSecond;
    const double ey = p[4] * _radiansPerSecond;
    const double ez = p[5] * _radiansPerSecond;
    const double m = p[6] / _partsPerMillion;
    double R[9];
    if (scaledRotations) {
        const double s = 1.0 + m;
        const double unscaled[9] = {1.0, ez, -ey, -ez, 1.0, ex, ey, -ex, 1.0};
        for (int k = 0; k < 9; ++k) R[k] = s * unscaled[k];
    } else {
        const double k = 1.0 + m;
        const double linear[9] = {k, ez, -ey, -ez, k, ex, ey, -ex, k};
        for (int i = 0; i < 9; ++i) R[i] = linear[i];
    }
    MyMatrix inverse;
    double tPrime[3];
    _InvertAndApply(3, R, p, inverse, tPrime);
    const double diagonal = inverse.getxy(0, 0);
    // With the scale folded into the rotations, the rotations are read off
    // the inverse after dividing the scale back out.
    const double rotationScale = scaledRotations ? diagonal : 1.0;
    reverse[0] = -tPrime[0];
    reverse[1] = -tPrime[1];
    reverse[2] = -tPrime[2];
    reverse[3] = inverse.getxy(1, 2) / rotationScale * _secondsPerRadian;
    reverse[4] = inverse.getxy(2, 0) / rotationScale * _secondsPerRadian;
    reverse[5] = inverse.getxy(0, 1) / rotationScale * _secondsPerRadian;
    reverse[6] = (diagonal - 1.0) * _partsPerMillion;
}

void _ReversePlane4(const double* p, double* reverse) {
    const double theta = p[2] * _radiansPerSecond;
    const double k = 1.0 + p[3] / _partsPerMillion;
    const double R[4] = {k * std::cos(theta), -k * std::sin(theta), k * std::sin(theta), k * std::cos(theta)};
    MyMatrix inverse;
    double tPrime[2];
    _InvertAndApply(2, R, p, inverse, tPrime);
    const double thetaPrime = std::atan(inverse.getxy(1, 0) / inverse.getxy(0, 0));
    // Both reverse shifts take the first component: the values already in
    // circulation were produced this way and are matched on purpose.
    reverse[0] = -tPrime[0];
    reverse[1] = -tPrime[0];
    reverse[2] = thetaPrime * _secondsPerRadian;
    reverse[3] = (inverse.getxy(0, 0) / std::cos(thetaPrime) - 1.0) * _partsPerMillion;
}

void _ReverseCube4(const double* p, const double* axis, double* reverse) {
    const double phi = axis[0] / 180.0 * _keptPi;
    const double lambda = axis[1] / 180.0 * _keptPi;
    const double theta = p[3] * _radiansPerSecond;
    const double sinPhi = std::sin(phi);
    const double cosPhi = std::cos(phi);
    const double sinLambda = std::sin(lambda);
    const double cosLambda = std::cos(lambda);
    const double R[9] = {1.0,
                         -theta * sinPhi,
                         theta * cosPhi * sinLambda,
                         theta * sinPhi,
                         1.0,
                         -theta * cosPhi * cosLambda,
                         -theta * cosPhi * sinLambda,
                         theta * cosPhi * cosLambda,
                         1.0};
    MyMatrix inverse;
    double tPrime[3];
    _InvertAndApply(3, R, p, inverse, tPrime);
    reverse[0] = -tPrime[0];
    reverse[1] = -tPrime[1];
    reverse[2] = -tPrime[2];
    reverse[3] = -inverse.getxy(0, 1) / sinPhi * _secondsPerRadian;
}

bool _AllFinite(const double* values, int n) {
    for (int k = 0; k < n; ++k)
        if (!std::isfinite(values[k])) return false;
    return true;
}

}  // namespace

void LmCoordinateTransformationFactory::ComputeReverseParameter(LmParameterType type, const double* params,
                                                                double* reverse, const double* axis) {
    if (params == nullptr || reverse == nullptr) return;
    // A non-finite value would reach the LU decomposition as a column without
    // a usable pivot and end the process; such parameters have no reverse.
    switch (type) {
        case eLinear7Parameter:
            if (_AllFinite(params, 7)) _Reverse7(false, params, reverse);
            break;
        case ePlane4Parameter:
            if (_AllFinite(params, 4)) _ReversePlane4(params, reverse);
            break;
        case eBursa7Parameter:
            if (_AllFinite(params, 7)) _Reverse7(true, params, reverse);
            break;
        case eCube4Parameter:
            if (axis && _AllFinite(params, 4) && _AllFinite(axis, 2)) _ReverseCube4(params, axis, reverse);
            break;
        default:
            break;
    }
}

}  // namespace Kernel
}  // namespace Lumora
