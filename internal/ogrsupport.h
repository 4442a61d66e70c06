// Small pieces every family needs when it talks to GDAL/OGR directly.
#ifndef LMSPATIALREFERENCE_INTERNAL_OGRSUPPORT_H
#define LMSPATIALREFERENCE_INTERNAL_OGRSUPPORT_H

#include <lmspatialreference/utility.h>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_vsi.h>
#include <ogr_spatialref.h>

#include <cmath>

#include <memory>
#include <string>

namespace Lumora {
namespace Kernel {

// Silences GDAL's error reports on the current thread for the guard's
// lifetime. Failures are return values in this library, so messages that GDAL
// would print for a refused definition or a point outside a projection's
// domain must not reach the caller's stderr. The handler stack is per thread,
// so the global handler an application installed is never touched.
class LmQuietGdalErrors {
public:
    LmQuietGdalErrors() { CPLPushErrorHandler(CPLQuietErrorHandler); }
    ~LmQuietGdalErrors() { CPLPopErrorHandler(); }
    LmQuietGdalErrors(const LmQuietGdalErrors&) = delete;
    LmQuietGdalErrors& operator=(const LmQuietGdalErrors&) = delete;
};

// Sets a GDAL configuration option for the current thread only, restoring the
// previous thread-local value when the guard ends.
class LmThreadLocalGdalOption {
public:
    LmThreadLocalGdalOption(const char* key, const char* value) : m_key(key) {
        const char* previous = CPLGetThreadLocalConfigOption(key, nullptr);
        m_hadPrevious = previous != nullptr;
        if (m_hadPrevious) m_previous = previous;
        CPLSetThreadLocalConfigOption(key, value);
    }
    ~LmThreadLocalGdalOption() {
        CPLSetThreadLocalConfigOption(m_key.c_str(), m_hadPrevious ? m_previous.c_str() : nullptr);
    }
    LmThreadLocalGdalOption(const LmThreadLocalGdalOption&) = delete;
    LmThreadLocalGdalOption& operator=(const LmThreadLocalGdalOption&) = delete;

private:
    std::string m_key;
    bool m_hadPrevious = false;
    std::string m_previous;
};

// Gives an OGR reference the traditional GIS axis order (x = longitude or
// easting), which GDAL 3 otherwise reverses for authorities that define
// latitude first. Returns its argument; null stays null.
inline OGRSpatialReference* WithGisAxisOrder(OGRSpatialReference* srs) {
    if (srs != nullptr) srs->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    return srs;
}

// PROJ 9.1 dereferences a null pointer when a geographic CS, the reference's
// own or the one inside its PROJCS, carries the EPSG code of a geocentric CRS
// (GEOGCS[...,AUTHORITY["EPSG","4978"]], or the ID of a BASEGEOGCRS when OGR
// holds the reference as WKT 2): exporting the reference to PROJ.4 or
// building a transformation from it ends the process. Such a code cannot
// describe a geographic CS, so it is dropped. Returns its argument; null
// stays null.
OGRSpatialReference* WithoutGeocentricAuthority(OGRSpatialReference* srs);

struct LmDestroySpatialReference {
    void operator()(OGRSpatialReference* srs) const { OGRSpatialReference::DestroySpatialReference(srs); }
};
struct LmDestroyCoordinateTransformation {
    void operator()(OGRCoordinateTransformation* handle) const { OGRCoordinateTransformation::DestroyCT(handle); }
};

// OGR objects owned for a scope, destroyed the way GDAL requires.
using LmOwnedSpatialReference = std::unique_ptr<OGRSpatialReference, LmDestroySpatialReference>;
using LmOwnedCoordinateTransformation = std::unique_ptr<OGRCoordinateTransformation, LmDestroyCoordinateTransformation>;

// Copies a text that OGR allocated and releases OGR's copy.
inline Utility::LmString TakeOgrText(char* text) {
    Utility::LmString copy(text);
    VSIFree(text);
    return copy;
}

// The value of a node's first child (a CS name, an ellipsoid name, ...), or
// the default when the node is missing or has no children.
inline const char* FirstChildValue(const OGR_SRSNode* node, const char* defaultValue) {
    if (node == nullptr || node->GetChildCount() < 1) return defaultValue;
    return node->GetChild(0)->GetValue();
}

// PROJ 9.1 wraps longitudes by repeated subtraction of 2 pi, so an inverse
// projection of x = 1e17 m takes seconds and of 1e300 m never returns. No
// coordinate of any reference on Earth comes near 1e12 (metres, feet or
// degrees), so points beyond it are refused before they reach GDAL; NaN and
// infinities pass, since PROJ answers those at once.
inline bool WithinProjReach(double x, double y) {
    constexpr double kFarthest = 1e12;
    return !(std::fabs(x) > kFarthest || std::fabs(y) > kFarthest);
}

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_INTERNAL_OGRSUPPORT_H
