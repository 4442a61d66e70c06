#include <lmspatialreference/geodesics.h>

namespace Lumora {
namespace Kernel {

LmGeodesicPolygon::LmGeodesicPolygon(LmSpatialReference* sr, bool polyline) : LmGeodesic(sr), m_polyline(polyline) {
    Reset();
}

LmGeodesicPolygon::LmGeodesicPolygon(double a, double f, bool polyline) : LmGeodesic(a, f), m_polyline(polyline) {
    Reset();
}

void LmGeodesicPolygon::Reset() { geod_polygon_init(&m_polygon, m_polyline ? 1 : 0); }

void LmGeodesicPolygon::AddPoint(double x, double y) { geod_polygon_addpoint(&m_geodesic, &m_polygon, y, x); }

void LmGeodesicPolygon::AddEdge(double azi, double s) { geod_polygon_addedge(&m_geodesic, &m_polygon, azi, s); }

unsigned LmGeodesicPolygon::Compute(bool reverse, bool sign, double* area, double* perimeter) const {
    return geod_polygon_compute(&m_geodesic, &m_polygon, reverse ? 1 : 0, sign ? 1 : 0, area, perimeter);
}

}  // namespace Kernel
}  // namespace Lumora
