#include <lmspatialreference/geodesics.h>

namespace Lumora {
namespace Kernel {

LmGeodesicLine::LmGeodesicLine(LmSpatialReference* sr, double x1, double y1, double azi1, GeoDMask caps)
    : LmGeodesic(sr) {
    geod_lineinit(&m_line, &m_geodesic, y1, x1, azi1, caps);
}

LmGeodesicLine::LmGeodesicLine(double a, double f, double x1, double y1, double azi1, GeoDMask caps)
    : LmGeodesic(a, f) {
    geod_lineinit(&m_line, &m_geodesic, y1, x1, azi1, caps);
}

// The azimuth argument is part of the interface but is deliberately never
// written; GeographicLib is asked for position only.
void LmGeodesicLine::Position(double s12, double* x, double* y, double* /*azi*/) const {
    geod_position(&m_line, s12, y, x, nullptr);
}

}  // namespace Kernel
}  // namespace Lumora
