#include <lmspatialreference/spatialreference.h>

#include "spatialreference/epsgcache.h"
#include "spatialreference/ogrsupport.h"

#include <cstdlib>
#include <cstring>
#include <mutex>

namespace Lumora {
namespace Kernel {

using Utility::LmAutoLocker;
using Utility::LmGlobeConfig;

namespace {

// Points GDAL at the data folder configured for the library when the
// environment names none, before OGR's own EPSG support is used.
void _ProvideGdalData() {
    static std::mutex mutex;
    std::lock_guard<std::mutex> lock(mutex);
    if (std::getenv("GDAL_DATA") != nullptr) return;
    const LmString folder = LmGlobeConfig::Instance()["Kernel/SpatialReference/GDAL_DATA"].StringValue("");
    if (folder.empty()) return;
    // putenv keeps the string itself, so it must live as long as the process.
    const LmString assignment = "GDAL_DATA=" + folder;
    putenv(strdup(assignment.c_str()));
    CPLSetConfigOption("GDAL_DATA", folder.c_str());
}

}  // namespace

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
    _ProvideGdalData();
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
    if (m_pSRS->GetAuthorityCode(key) == nullptr) m_pSRS->AutoIdentifyEPSG();
    const char* code = m_pSRS->GetAuthorityCode(key);
    const long number = code != nullptr ? std::strtol(code, nullptr, 10) : 0;
    if (number > 0 && number <= INT32_MAX) return static_cast<int>(number);
    return g_SearchEPSG(this);
}

}  // namespace Kernel
}  // namespace Lumora
