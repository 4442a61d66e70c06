#include "spatialreference/ogrcompare.h"

#include <ogr_spatialref.h>

#include <cmath>

namespace Lumora {
namespace Kernel {

bool IsSameEllipsoid(const OGRSpatialReference* a, const OGRSpatialReference* b) {
    if (std::fabs(a->GetSemiMajor() - b->GetSemiMajor()) > 0.001) return false;
    if (std::fabs(a->GetSemiMinor() - b->GetSemiMinor()) > 0.001) return false;
    if (std::fabs(a->GetInvFlattening() - b->GetInvFlattening()) > 1e-6) return false;
    return std::fabs(a->GetPrimeMeridian() - b->GetPrimeMeridian()) < 0.001;
}

}  // namespace Kernel
}  // namespace Lumora
