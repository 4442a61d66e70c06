#include "spatialreference/ogrcompare.h"

#include <ogr_spatialref.h>

#include <cmath>

namespace Lumora {
namespace Kernel {

bool IsSameEllipsoid(const LmEllipsoidValues& a, const LmEllipsoidValues& b) {
    if (std::fabs(a.semiMajor - b.semiMajor) > 0.001) return false;
    if (std::fabs(a.semiMinor - b.semiMinor) > 0.001) return false;
    if (std::fabs(a.inverseFlattening - b.inverseFlattening) > 1e-6) return false;
    return std::fabs(a.primeMeridian - b.primeMeridian) < 0.001;
}

bool IsSameEllipsoid(const OGRSpatialReference* a, const OGRSpatialReference* b) {
    const auto values = [](const OGRSpatialReference* srs) {
        return LmEllipsoidValues{srs->GetSemiMajor(), srs->GetSemiMinor(), srs->GetInvFlattening(),
                                 srs->GetPrimeMeridian()};
    };
    return IsSameEllipsoid(values(a), values(b));
}

}  // namespace Kernel
}  // namespace Lumora
