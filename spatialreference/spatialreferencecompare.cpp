#include <lmspatialreference/spatialreference.h>

#include "spatialreference/ogrcompare.h"
#include "internal/ogrsupport.h"

namespace Lumora {
namespace Kernel {

using Utility::LmCRT;

namespace {

bool _SameText(const char* a, const char* b) { return LmCRT::_stricmp(a, b) == 0; }

bool _SameRootName(const OGRSpatialReference* a, const OGRSpatialReference* b) {
    return _SameText(FirstChildValue(a->GetRoot(), ""), FirstChildValue(b->GetRoot(), ""));
}

}  // namespace

bool LmSpatialReference::IsSame(LmSpatialReference* other) const {
    LmQuietGdalErrors quiet;
    if (other == nullptr) return false;
    if (m_pSRS == nullptr && other->m_pSRS == nullptr) return true;
    if (IsGeographic() != other->IsGeographic()) return false;
    if (m_pSRS == nullptr || other->m_pSRS == nullptr) return false;
    if (m_pSRS->IsSame(other->m_pSRS)) return true;
    return IsGeographic() ? IsSameGeogCS(other) : IsSameProjCS(other);
}

bool LmSpatialReference::IsSameProjCS(LmSpatialReference* other) const {
    LmQuietGdalErrors quiet;
    if (other == nullptr || !IsProjected() || !other->IsProjected()) return false;
    // Names first: the ellipsoid queries cost far more, and EPSG searches
    // make this test against many references.
    if (!_SameRootName(m_pSRS, other->m_pSRS) && !m_pSRS->IsSameVertCS(other->m_pSRS)) return false;
    return IsSameEllipsoid(m_pSRS, other->m_pSRS);
}

bool LmSpatialReference::IsSameGeogCS(LmSpatialReference* other) const {
    LmQuietGdalErrors quiet;
    if (other == nullptr || !IsGeographic() || !other->IsGeographic()) return false;
    if (m_pSRS->IsSameGeogCS(other->m_pSRS)) return true;
    return _SameRootName(m_pSRS, other->m_pSRS) && IsSameEllipsoid(m_pSRS, other->m_pSRS);
}

bool LmSpatialReference::IsSameParameter(LmSpatialReference* other) const {
    LmQuietGdalErrors quiet;
    if (other == nullptr || m_pSRS == nullptr || other->m_pSRS == nullptr) return false;
    if (IsGeographic() != other->IsGeographic()) return false;
    if (!IsSameEllipsoid(m_pSRS, other->m_pSRS)) return false;
    if (IsGeographic()) return true;

    const char* projection = m_pSRS->GetAttrValue("PROJECTION");
    const char* otherProjection = other->m_pSRS->GetAttrValue("PROJECTION");
    if (projection == nullptr || otherProjection == nullptr || !_SameText(projection, otherProjection)) return false;

    // Exact comparison on purpose: codes are identified by their published values.
    const OGR_SRSNode* projcs = m_pSRS->GetAttrNode("PROJCS");
    const int children = projcs ? projcs->GetChildCount() : 0;
    for (int i = 0; i < children; ++i) {
        const OGR_SRSNode* child = projcs->GetChild(i);
        if (!_SameText(child->GetValue(), "PARAMETER") || child->GetChildCount() != 2) continue;
        const char* name = FirstChildValue(child, "");
        if (m_pSRS->GetProjParm(name, 0.0) != other->m_pSRS->GetProjParm(name, 0.0)) return false;
    }
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
