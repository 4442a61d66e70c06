#include "internal/ogrsupport.h"

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

bool _IsGeocentricEpsgLabel(const OGR_SRSNode* label) {
    return label->GetChildCount() >= 2 && EQUAL(label->GetChild(0)->GetValue(), "EPSG") &&
           _GeocentricEpsgCodes().count(label->GetChild(1)->GetValue()) != 0;
}

}  // namespace

OGRSpatialReference* WithoutGeocentricAuthority(OGRSpatialReference* srs) {
    if (srs == nullptr) return srs;
    LmQuietGdalErrors quiet;
    // OGR's tree is WKT 1 unless PROJ cannot write the reference as WKT 1 (a
    // zero unit, say); then it is WKT 2, where the geographic CS is named
    // otherwise and its label is an ID.
    for (const char* name : {"GEOGCS", "GEOGCRS", "BASEGEOGCRS", "BASEGEODCRS"}) {
        OGR_SRSNode* geographic = srs->GetAttrNode(name);
        if (geographic == nullptr) continue;
        for (const char* label : {"AUTHORITY", "ID"}) {
            const int at = geographic->FindChild(label);
            if (at < 0 || !_IsGeocentricEpsgLabel(geographic->GetChild(at))) continue;
            // Editing the node tree makes OGR rebuild its PROJ object from the nodes.
            geographic->DestroyChild(at);
            return srs;
        }
    }
    return srs;
}

}  // namespace Kernel
}  // namespace Lumora
