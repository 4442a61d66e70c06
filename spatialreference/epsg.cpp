#include "spatialreference/epsgcache.h"

#include "internal/linereader.h"
#include "internal/datapaths.h"
#include "spatialreference/epsgmatcher.h"

#include <fstream>
#include <memory>
#include <mutex>

#include <sys/stat.h>

namespace Lumora {
namespace Kernel {

using Utility::LmAutoLocker;
using Utility::LmFileSystem;

LmEPSGTable g_EPSGCache;
LmRecentEPSGTable g_RecentCache;

namespace {

// The table, prepared for searching once it is loaded; it never changes after.
std::once_flag g_tableMatcherOnce;
std::unique_ptr<LmEPSGMatcher> g_tableMatcher;

// The alias category, prepared once per version of its file. The catalogue
// builds every entry anew on each call; answers stay those of the category
// file as it is now, which is all that the search depends on.
struct AliasMatcher {
    std::mutex mutex;
    LmString path;
    std::int64_t size = -1;
    std::int64_t modified = 0;
    std::shared_ptr<LmEPSGMatcher> matcher;
};
AliasMatcher g_aliasMatcher;

std::shared_ptr<LmEPSGMatcher> _AliasMatcher() {
    const LmString path = LmAliasCategoryPath();
    if (path.empty()) return nullptr;
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return nullptr;
    const std::int64_t modified = static_cast<std::int64_t>(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;

    std::lock_guard<std::mutex> lock(g_aliasMatcher.mutex);
    if (g_aliasMatcher.matcher && g_aliasMatcher.path == path && g_aliasMatcher.size == status.st_size &&
        g_aliasMatcher.modified == modified)
        return g_aliasMatcher.matcher;
    auto matcher = std::make_shared<LmEPSGMatcher>();
    // Read as the category reads it, but nothing is built until a search needs it.
    for (const auto& entry : ReadCategoryFile(path.c_str())) {
        matcher->Add(static_cast<int>(CodeOfLine(entry.first)), entry.first.c_str(), entry.second.c_str());
    }
    g_aliasMatcher.path = path;
    g_aliasMatcher.size = status.st_size;
    g_aliasMatcher.modified = modified;
    g_aliasMatcher.matcher = matcher;
    return matcher;
}

}  // namespace

bool LoadEPSG() {
    static bool bLoad = false;
    LmAutoLocker locker(g_EPSGCache, false);
    if (bLoad) return true;
    const LmString path = MakeEPSGFile();
    if (!LmFileSystem::Exists(path.c_str())) return false;
    std::ifstream stream(path.c_str());
    if (!stream) return false;
    if (!ReadEPSGTable(stream, g_EPSGCache)) return false;
    bLoad = true;
    return true;
}

// OGR fills parts of a reference lazily even when it is only compared, so two
// threads must not compare against the same cached reference at once. The
// lock is the innermost one: nothing else is taken while it is held.
std::mutex g_recentComparison;

int g_SearchRecentEPSG(const LmSpatialReference* reference) {
    if (reference == nullptr) return 0;
    LmAutoLocker locker(g_RecentCache, true);
    std::lock_guard<std::mutex> comparison(g_recentComparison);
    for (const auto& recent : g_RecentCache)
        for (const LmSmarterPtr<LmSpatialReference>& cached : recent.second)
            if (reference->IsSame(cached)) return recent.first;
    return 0;
}

void g_CacheRecentEPSG(LmSpatialReference* reference, int code) {
    if (reference == nullptr) return;
    LmAutoLocker locker(g_RecentCache, false);
    g_RecentCache[code].emplace_back(reference);
}

void g_CacheRecentEPSG(const char* wkt, int code) { g_CacheRecentEPSG(new LmSpatialReference(wkt, eWKT), code); }

int g_SearchAliasEPSG(const LmSpatialReference* reference) {
    if (reference == nullptr) return 0;
    const std::shared_ptr<LmEPSGMatcher> matcher = _AliasMatcher();
    if (!matcher) return 0;
    const LmEPSGMatcher::Match match = matcher->First(reference);
    if (match.index < 0) return 0;
    // The recent cache gets its own object: the prepared ones are shared.
    LmSmarterPtr<LmSpatialReference> alias(new LmSpatialReference(match.text.c_str(), eWKT));
    alias->Name(match.name.c_str());
    // Read from the reference's name, so an entry whose name line is empty
    // answers the code its CS name carries.
    const std::int64_t code = CodeOfLine(alias->Name());
    if (code <= 0 || code > INT32_MAX) return 0;
    g_CacheRecentEPSG(alias, static_cast<int>(code));
    return static_cast<int>(code);
}

int g_SearchEPSG(const LmSpatialReference* reference) {
    if (reference == nullptr || !LoadEPSG()) return 0;
    const int recent = g_SearchRecentEPSG(reference);
    if (recent > 0) return recent;
    const int alias = g_SearchAliasEPSG(reference);
    if (alias >= 1) return alias;

    LmAutoLocker locker(g_EPSGCache, true);
    std::call_once(g_tableMatcherOnce, [] {
        g_tableMatcher = std::make_unique<LmEPSGMatcher>();
        for (const auto& record : g_EPSGCache) g_tableMatcher->Add(record.first, "", record.second.c_str());
    });
    const LmEPSGMatcher::Match match = g_tableMatcher->First(reference);
    if (match.index < 0) return 0;
    g_CacheRecentEPSG(match.text.c_str(), match.code);
    return match.code;
}

}  // namespace Kernel
}  // namespace Lumora
