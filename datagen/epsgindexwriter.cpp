#include "datagen/epsgindexwriter.h"

#include <lmspatialreference/spatialreference.h>

#include "internal/epsgfingerprint.h"

#include <cpl_conv.h>
#include <ogr_spatialref.h>
#include <proj.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>

using namespace Lumora::Kernel;

namespace {

// The names the PROJ database gives EPSG objects: each geodetic and projected
// CRS's own name and aliases, its datum's, and which CRS codes are deprecated.
struct DatabaseNames {
    std::map<int, std::vector<std::string>> crsNames;
    std::map<int, std::vector<std::string>> datumNames;  // by CRS code
    std::set<int> deprecated;
};

void _Collect(sqlite3* db, const char* sql, std::map<int, std::vector<std::string>>& into) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) != SQLITE_OK) return;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        const int code = sqlite3_column_int(statement, 0);
        const unsigned char* name = sqlite3_column_text(statement, 1);
        if (name != nullptr) into[code].emplace_back(reinterpret_cast<const char*>(name));
    }
    sqlite3_finalize(statement);
}

DatabaseNames _ReadDatabase(const char* path) {
    DatabaseNames names;
    sqlite3* db = nullptr;
    if (path == nullptr || sqlite3_open_v2(path, &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return names;
    }
    // Codes are integers for EPSG; the CRS of a projected CRS's datum is its base.
    const char* const crsTables = "(SELECT code, name, deprecated, datum_code FROM geodetic_crs WHERE auth_name = 'EPSG' "
                                  "AND type = 'geographic 2D' "
                                  "UNION ALL SELECT p.code, p.name, p.deprecated, g.datum_code FROM projected_crs p "
                                  "JOIN geodetic_crs g ON g.auth_name = p.geodetic_crs_auth_name AND g.code = "
                                  "p.geodetic_crs_code WHERE p.auth_name = 'EPSG')";
    const std::string own = std::string("SELECT code, name FROM ") + crsTables;
    _Collect(db, own.c_str(), names.crsNames);
    _Collect(db,
             "SELECT code, alt_name FROM alias_name WHERE auth_name = 'EPSG' AND table_name IN ('geodetic_crs', "
             "'projected_crs')",
             names.crsNames);
    const std::string datums = std::string("SELECT c.code, d.name FROM ") + crsTables +
                               " c JOIN geodetic_datum d ON d.auth_name = 'EPSG' AND d.code = c.datum_code";
    _Collect(db, datums.c_str(), names.datumNames);
    const std::string datumAliases = std::string("SELECT c.code, a.alt_name FROM ") + crsTables +
                                     " c JOIN alias_name a ON a.table_name = 'geodetic_datum' AND a.auth_name = "
                                     "'EPSG' AND a.code = c.datum_code";
    _Collect(db, datumAliases.c_str(), names.datumNames);
    std::map<int, std::vector<std::string>> flags;
    const std::string deprecated = std::string("SELECT code, 'd' FROM ") + crsTables + " WHERE deprecated = 1";
    _Collect(db, deprecated.c_str(), flags);
    for (const auto& flag : flags) names.deprecated.insert(flag.first);
    sqlite3_close(db);
    return names;
}

void _AddKeys(std::vector<std::string>& keys, const std::vector<std::string>& names) {
    for (const std::string& name : names) {
        std::string key = LmNameKey(name.c_str());
        if (!key.empty() && std::find(keys.begin(), keys.end(), key) == keys.end()) keys.push_back(std::move(key));
    }
}

// GDAL's one-line WKT of a deprecated code, which EPSG.txt leaves out.
std::string _ExportDeprecated(int code) {
    OGRSpatialReference srs;
    if (srs.importFromEPSG(code) != OGRERR_NONE) return "";
    char* text = nullptr;
    const OGRErr error = srs.exportToWkt(&text);
    std::string wkt = error == OGRERR_NONE && text != nullptr ? text : "";
    CPLFree(text);
    return wkt;
}

}  // namespace

bool WriteEPSGIndex(const std::string& path, const Records& table, const Records& aliases) {
    PJ_CONTEXT* context = proj_context_create();
    const DatabaseNames names = _ReadDatabase(proj_context_get_database_path(context));
    proj_context_destroy(context);
    if (names.crsNames.empty()) return false;

    // Each text is read exactly as the library reads it, so the numbers are
    // those a search would find on building the entry.
    std::vector<std::pair<int, std::string>> sources;
    for (const auto& record : table) sources.emplace_back(std::atoi(record.first.c_str()), record.second);
    const std::size_t tableSize = sources.size();
    for (int code : names.deprecated)
        if (names.crsNames.count(code) != 0) sources.emplace_back(code, _ExportDeprecated(code));
    const std::size_t ownSize = sources.size();
    for (const auto& alias : aliases) sources.emplace_back(std::atoi(alias.first.c_str() + 5), alias.second);

    std::vector<std::string> lines;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const auto& source = sources[i];
        if (source.second.empty()) continue;
        LmSpatialReference reference(source.second.c_str(), eWKT);
        if (reference.IsNull()) continue;
        LmEPSGFingerprint print = ReadFingerprint(*reference.Handle());
        if (print.kind == 'O') continue;
        print.code = source.first;
        print.deprecated = names.deprecated.count(source.first) != 0;
        print.alias = i >= ownSize;
        print.textHash = i < tableSize || print.alias ? LmTextHash(source.second.c_str()) : 0;
        const auto crs = names.crsNames.find(source.first);
        if (crs != names.crsNames.end()) _AddKeys(print.nameKeys, crs->second);
        const auto datum = names.datumNames.find(source.first);
        if (datum != names.datumNames.end()) _AddKeys(print.datumKeys, datum->second);
        std::string line = FormatFingerprint(print);
        if (!line.empty()) lines.push_back(std::move(line));
    }
    FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    std::fprintf(file, "%zu\n", lines.size());
    for (const std::string& line : lines) std::fprintf(file, "%s\n", line.c_str());
    return std::fclose(file) == 0;
}
