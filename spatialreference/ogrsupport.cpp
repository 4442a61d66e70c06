#include "spatialreference/ogrsupport.h"

#include <proj.h>

#include <cstdlib>
#include <mutex>
#include <set>
#include <string>

namespace Lumora {
namespace Kernel {

namespace {

// The EPSG codes of geocentric CRSs in PROJ's database, read once.
const std::set<std::string>& _GeocentricEpsgCodes() {
    static std::set<std::string> codes;
    static std::once_flag once;
    std::call_once(once, [] {
        PJ_CONTEXT* context = proj_context_create();
        if (PROJ_STRING_LIST list = proj_get_codes_from_database(context, "EPSG", PJ_TYPE_GEOCENTRIC_CRS, true)) {
            for (PROJ_STRING_LIST code = list; *code != nullptr; ++code) codes.insert(*code);
            proj_string_list_destroy(list);
        }
        proj_context_destroy(context);
    });
    return codes;
}

}  // namespace

OGRSpatialReference* WithoutGeocentricAuthority(OGRSpatialReference* srs) {
    if (srs == nullptr) return srs;
    LmQuietGdalErrors quiet;
    OGR_SRSNode* geogcs = srs->GetAttrNode("GEOGCS");
    const int at = geogcs != nullptr ? geogcs->FindChild("AUTHORITY") : -1;
    if (at < 0) return srs;
    const OGR_SRSNode* authority = geogcs->GetChild(at);
    if (authority->GetChildCount() < 2 || !EQUAL(authority->GetChild(0)->GetValue(), "EPSG")) return srs;
    if (_GeocentricEpsgCodes().count(authority->GetChild(1)->GetValue()) == 0) return srs;
    // Editing the node tree makes OGR rebuild its PROJ object from the nodes.
    geogcs->DestroyChild(at);
    return srs;
}

}  // namespace Kernel
}  // namespace Lumora
