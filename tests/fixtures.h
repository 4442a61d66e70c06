// Fixtures shared by the test programs: constants, reference texts, builders
// of references and the OpenMP team-size guard.
#ifndef LMSPATIALREFERENCE_TESTS_FIXTURES_H
#define LMSPATIALREFERENCE_TESTS_FIXTURES_H

#include "tests/teamsize.h"

#include <lmspatialreference/lmspatialreference.h>

#include <cpl_conv.h>
#include <ogr_spatialref.h>

namespace Fixtures {

using namespace Lumora::Kernel;

constexpr double kPi = 3.141592653589793;
constexpr double kWgs84A = 6378137.0;
constexpr double kWgs84InverseF = 298.257223563;

inline double Radians(double degrees) { return degrees * kPi / 180.0; }

// WGS 84 / UTM zone 50N (central meridian 117 E) without authority nodes.
inline const char* const kUtm50 =
    R"(PROJCS["WGS 84 / UTM zone 50N",GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],)"
    R"(PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",117],PARAMETER["scale_factor",0.9996],)"
    R"(PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1]])";

// The WKT GDAL writes for an EPSG code, authority nodes (and, for geographic
// CRSs, the latitude-first axes) included; empty when GDAL lacks the code.
inline LmString EpsgWkt(int code) {
    OGRSpatialReference srs;
    if (srs.importFromEPSG(code) != OGRERR_NONE) return "";
    char* text = nullptr;
    srs.exportToWkt(&text);
    LmString wkt(text);
    CPLFree(text);
    return wkt;
}

inline LmSmarterPtr<LmSpatialReference> Reference(const char* text, LmSpatialReferenceFormat format = eWKT) {
    return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(text, format));
}

inline LmSmarterPtr<LmSpatialReference> Reference(LmWellKnownSpatialReference wellKnown) {
    return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(wellKnown));
}

}  // namespace Fixtures

#endif  // LMSPATIALREFERENCE_TESTS_FIXTURES_H
