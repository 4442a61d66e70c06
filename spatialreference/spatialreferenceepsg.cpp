#include <lmspatialreference/spatialreference.h>

#include "internal/datapaths.h"
#include "spatialreference/epsgcache.h"
#include "internal/ogrsupport.h"

namespace Lumora {
namespace Kernel {

using Utility::LmAutoLocker;

LmSpatialReference::LmSpatialReference(int epsg) : m_pSRS(nullptr) {
    // Without the table no reference is built from a code, not even by OGR.
    if (!LoadEPSG()) return;
    LmString text;
    bool found = false;
    {
        LmAutoLocker locker(g_EPSGCache, true);
        const auto record = g_EPSGCache.find(epsg);
        if (record != g_EPSGCache.end()) {
            text = record->second;
            found = true;
        }
    }
    LmQuietGdalErrors quiet;
    if (found) {
        _Adopt(OGRSpatialReference::FromHandle(OSRNewSpatialReference(text.c_str())));
        return;
    }
    LmProvideGdalData();
    OGRSpatialReference* srs = new OGRSpatialReference();
    if (srs->importFromEPSG(epsg) != OGRERR_NONE) {
        OGRSpatialReference::DestroySpatialReference(srs);
        return;
    }
    _Adopt(srs);
}

int LmSpatialReference::EPSG() const {
    LmQuietGdalErrors quiet;
    if (m_pSRS == nullptr) return 0;
    const char* key = IsGeographic() ? "GEOGCS" : "PROJCS";
    // Only an EPSG authority names an EPSG code: a text labelled
    // AUTHORITY["ESRI","102100"] is identified as if it carried no label.
    const auto epsgCode = [this, key]() -> const char* {
        const char* authority = m_pSRS->GetAuthorityName(key);
        return authority != nullptr && EQUAL(authority, "EPSG") ? m_pSRS->GetAuthorityCode(key) : nullptr;
    };
    if (epsgCode() == nullptr) m_pSRS->AutoIdentifyEPSG();
    const char* code = epsgCode();
    const long number = code != nullptr ? std::strtol(code, nullptr, 10) : 0;
    if (number > 0 && number <= INT32_MAX) return static_cast<int>(number);
    return g_SearchEPSG(this);
}

}  // namespace Kernel
}  // namespace Lumora
