// Writes the library's data folder (the EPSG table and its index, the EPSG
// alias category and two browsable categories) from the PROJ database and GDAL installed on
// the build machine:
//   makecoordinatesystem <output folder>
// Every text is GDAL's own one-line export, so the files always agree with the
// GDAL the library runs on.
#include <lmspatialreference/spatialreference.h>

#include "internal/linereader.h"
#include "datagen/epsgindexwriter.h"

#include <cpl_error.h>
#include <ogr_spatialref.h>
#include <proj.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

using Lumora::Kernel::kLongestDataLine;
using Lumora::Kernel::LmSpatialReference;
using Lumora::Kernel::LmWellKnownSpatialReference;

namespace {


// GDAL's one-line WKT of a code, in its own form or ESRI's; empty when GDAL
// cannot build or export it, or when the text would not fit a line.
std::string ExportCode(int code, bool esri) {
    OGRSpatialReference srs;
    if (srs.importFromEPSG(code) != OGRERR_NONE) return "";
    char* text = nullptr;
    const char* const esriOptions[] = {"FORMAT=WKT1_ESRI", nullptr};
    const OGRErr error = esri ? srs.exportToWkt(&text, esriOptions) : srs.exportToWkt(&text);
    std::string wkt = error == OGRERR_NONE && text != nullptr ? text : "";
    CPLFree(text);
    if (wkt.size() > kLongestDataLine || wkt.find('\n') != std::string::npos) return "";
    return wkt;
}

std::string NameOf(int code) {
    OGRSpatialReference srs;
    if (srs.importFromEPSG(code) != OGRERR_NONE) return "";
    const char* name = srs.GetName();
    return name ? name : "";
}

// The non-deprecated EPSG codes of one CRS type, as numbers.
std::vector<int> CodesOf(PJ_CONTEXT* context, PJ_TYPE type) {
    std::vector<int> codes;
    PROJ_STRING_LIST list = proj_get_codes_from_database(context, "EPSG", type, 0);
    for (PROJ_STRING_LIST item = list; item != nullptr && *item != nullptr; ++item) {
        const int code = std::atoi(*item);
        if (code > 0) codes.push_back(code);
    }
    proj_string_list_destroy(list);
    return codes;
}

bool Write(const std::string& path, const Records& records) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    std::fprintf(file, "%zu\n", records.size());
    for (const auto& record : records) std::fprintf(file, "%s\n%s\n", record.first.c_str(), record.second.c_str());
    return std::fclose(file) == 0;
}

void AddRange(std::vector<int>& codes, int first, int last) {
    for (int code = first; code <= last; ++code) codes.push_back(code);
}

// Codes of the references most used in China, geographic and projected.
std::vector<int> ChineseGeographic() { return {4490, 4214, 4610, 4555, 4326}; }

std::vector<int> ChineseProjected() {
    std::vector<int> codes;
    AddRange(codes, 4491, 4554);    // CGCS2000 Gauss-Kruger, 6- and 3-degree zones
    AddRange(codes, 21413, 21423);  // Beijing 1954 Gauss-Kruger 6-degree zones
    AddRange(codes, 21453, 21463);  // Beijing 1954 Gauss-Kruger 6-degree CM
    AddRange(codes, 2401, 2442);    // Beijing 1954 3-degree Gauss-Kruger
    AddRange(codes, 2327, 2390);    // Xian 1980 Gauss-Kruger, 6- and 3-degree
    return codes;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
        return 2;
    }
    const std::string folder = argv[1];
    CPLSetErrorHandler(CPLQuietErrorHandler);

    // The table: every non-deprecated geographic 2D and projected CRS, by code.
    PJ_CONTEXT* context = proj_context_create();
    std::vector<int> codes = CodesOf(context, PJ_TYPE_GEOGRAPHIC_2D_CRS);
    const std::vector<int> projected = CodesOf(context, PJ_TYPE_PROJECTED_CRS);
    codes.insert(codes.end(), projected.begin(), projected.end());
    proj_context_destroy(context);
    std::sort(codes.begin(), codes.end());
    codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
    Records table;
    for (int code : codes) {
        std::string wkt = ExportCode(code, false);
        if (!wkt.empty()) table.emplace_back(std::to_string(code), std::move(wkt));
    }
    if (table.empty() || !Write(folder + "/EPSG.txt", table)) return 1;

    // The alias category. A geographic alias answers for any geographic
    // reference on its ellipsoid, so each ellipsoid's usual reference comes
    // first: the built-in WGS 84 and CGCS 2000 (GRS 1980's), then Beijing 1954
    // (Krassowsky's) and Xian 1980 (IAG 1975's).
    Records aliases;
    const std::pair<LmWellKnownSpatialReference, int> builtIns[] = {
        {Lumora::Kernel::eWGS84, 4326}, {Lumora::Kernel::eCGCS2000, 4490}, {Lumora::Kernel::eWebMercator, 3857}};
    for (const auto& builtIn : builtIns) {
        LmSpatialReference reference(builtIn.first);
        aliases.emplace_back("EPSG:" + std::to_string(builtIn.second), reference.ExportToWKT(false));
    }
    std::vector<int> esriCodes = {4326, 4490, 4214, 4610, 3857};
    AddRange(esriCodes, 32601, 32660);  // WGS 84 / UTM north
    AddRange(esriCodes, 32701, 32760);  // WGS 84 / UTM south
    const std::vector<int> chinese = ChineseProjected();
    esriCodes.insert(esriCodes.end(), chinese.begin(), chinese.end());
    for (int code : esriCodes) {
        std::string wkt = ExportCode(code, true);
        if (!wkt.empty()) aliases.emplace_back("EPSG:" + std::to_string(code), std::move(wkt));
    }
    if (!Write(folder + "/EPSG_Alias.txt", aliases)) return 1;
    if (!WriteEPSGIndex(folder + "/EPSG.index", table, aliases)) return 1;

    // Two categories to browse, named after their references.
    for (const auto& category : {std::make_pair(std::string("China_Geographic"), ChineseGeographic()),
                                 std::make_pair(std::string("China_Projected"), chinese)}) {
        Records records;
        for (int code : category.second) {
            std::string wkt = ExportCode(code, false);
            if (!wkt.empty()) records.emplace_back(NameOf(code), std::move(wkt));
        }
        if (!Write(folder + "/" + category.first + ".txt", records)) return 1;
    }
    std::printf("%zu codes, %zu aliases\n", table.size(), aliases.size());
    return 0;
}
