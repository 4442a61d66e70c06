// GeographicLib takes latitude before longitude; every call below swaps the
// library's (x, y) = (longitude, latitude) into that order.
#include <lmspatialreference/geodesics.h>
#include <lmspatialreference/spatialreference.h>

#include "internal/parallelbatch.h"

#include <cstddef>

namespace Lumora {
namespace Kernel {

namespace {

// Flattenings are small, so a value above 1 can only be an inverse flattening.
double _FlatteningFromEither(double flatteningOrInverse) {
    return flatteningOrInverse > 1.0 ? 1.0 / flatteningOrInverse : flatteningOrInverse;
}

double _SemiMajorAxisOf(const LmSpatialReference* sr) { return sr != nullptr ? sr->EquatorialRadiusA() : 0.0; }

// A sphere reports an inverse flattening of 0, whose reciprocal would be infinite.
double _FlatteningOf(const LmSpatialReference* sr) {
    const double inverse = sr != nullptr ? sr->FlattenInverseF() : 0.0;
    return inverse != 0.0 ? 1.0 / inverse : 0.0;
}

}  // namespace

LmGeodesic::LmGeodesic(double a, double f) { geod_init(&m_geodesic, a, _FlatteningFromEither(f)); }

LmGeodesic::LmGeodesic(LmSpatialReference* sr) { geod_init(&m_geodesic, _SemiMajorAxisOf(sr), _FlatteningOf(sr)); }

double LmGeodesic::Inverse(double x1, double y1, double x2, double y2, double* azi1, double* azi2) const {
    double s12 = 0.0;
    geod_inverse(&m_geodesic, y1, x1, y2, x2, &s12, azi1, azi2);
    return s12;
}

void LmGeodesic::Direct(double x1, double y1, double azi1, double s12, double* x2, double* y2,
                        double* azi2) const {
    geod_direct(&m_geodesic, y1, x1, azi1, s12, y2, x2, azi2);
}

void LmGeodesic::Interpolation(double x1, double y1, double x2, double y2, double ratio, double* x, double* y,
                               double* azi) const {
    double s12 = 0.0;
    double azi1 = 0.0;
    geod_inverse(&m_geodesic, y1, x1, y2, x2, &s12, &azi1, nullptr);
    geod_geodesicline line;
    geod_lineinit(&line, &m_geodesic, y1, x1, azi1, 0U);
    geod_position(&line, s12 * ratio, y, x, azi);
}

double LmGeodesic::ComputeGeodesic(const double* coords, int count, int dim) const {
    if (coords == nullptr || dim < 2 || count < 2) return 0.0;
    // Leg j runs from the point at (j + 1) * dim back to the one before it.
    // Only whole (x, y) pairs count: a trailing longitude without its
    // latitude would be read past the end of the array.
    const int legs = (count - 2) / dim;
    return ParallelSum<double>(legs, [&](int begin, int end) {
        double length = 0.0;
        for (int leg = begin; leg < end; ++leg) {
            const double* point = coords + static_cast<std::ptrdiff_t>(leg + 1) * dim;
            length += Inverse(point[0], point[1], point[-dim], point[1 - dim], nullptr, nullptr);
        }
        return length;
    });
}

}  // namespace Kernel
}  // namespace Lumora
