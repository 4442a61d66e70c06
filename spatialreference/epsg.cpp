#include "spatialreference/epsgcache.h"

#include "internal/linereader.h"
#include "internal/datapaths.h"
#include "spatialreference/epsgmatcher.h"

#include <atomic>
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
std::shared_ptr<const LmEPSGMatcher> g_tableMatcher;

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
    // Once loaded, the answer needs no lock: every search asks, and an
    // exclusive lock here would wait for each search another thread runs
    // under the shared one.
    static std::atomic<bool> bLoad{false};
    if (bLoad.load(std::memory_order_acquire)) return true;
    LmAutoLocker locker(g_EPSGCache, false);
    if (bLoad.load(std::memory_order_relaxed)) return true;
    const LmString path = MakeEPSGFile();
    if (!LmFileSystem::Exists(path.c_str())) return false;
    std::ifstream stream(path.c_str());
    if (!stream) return false;
    if (!ReadEPSGTable(stream, g_EPSGCache)) return false;
    bLoad.store(true, std::memory_order_release);
    return true;
}

// OGR fills parts of a reference lazily even when it is only compared, so two
// threads must not compare against the same recorded reference at once. The
// lock is the innermost one: nothing else is taken while it is held. Records
// of the searches' own definitions need no lock: each search builds its own.
std::mutex g_recentComparison;

namespace {

// Records a definition of the table or the alias category under a code. A
// definition already recorded under that code is not recorded twice: the
// search would answer the same code at the earlier record, so the cache stays
// as large as the set of definitions ever matched.
void _CacheRecentDefinition(const std::shared_ptr<const LmEPSGMatcher>& list, std::size_t index, int code) {
    LmAutoLocker locker(g_RecentCache, false);
    std::vector<LmRecentEPSG>& records = g_RecentCache[code];
    for (const LmRecentEPSG& record : records)
        if (record.list == list && record.index == index) return;
    records.push_back({list, index, LmSmarterPtr<LmSpatialReference>()});
}

}  // namespace

int g_SearchRecentEPSG(const LmSpatialReference* reference) {
    if (reference == nullptr) return 0;
    LmAutoLocker locker(g_RecentCache, true);
    if (g_RecentCache.empty()) return 0;
    const LmEPSGMatcher::Probe probe(reference);
    for (const auto& recent : g_RecentCache) {
        for (const LmRecentEPSG& record : recent.second) {
            if (record.list) {
                if (record.list->IsSame(probe, record.index)) return recent.first;
                continue;
            }
            std::lock_guard<std::mutex> comparison(g_recentComparison);
            if (reference->IsSame(record.reference)) return recent.first;
        }
    }
    return 0;
}

void g_CacheRecentEPSG(LmSpatialReference* reference, int code) {
    if (reference == nullptr) return;
    LmAutoLocker locker(g_RecentCache, false);
    g_RecentCache[code].push_back({nullptr, 0, LmSmarterPtr<LmSpatialReference>(reference)});
}

void g_CacheRecentEPSG(const char* wkt, int code) { g_CacheRecentEPSG(new LmSpatialReference(wkt, eWKT), code); }

int g_SearchAliasEPSG(const LmSpatialReference* reference) {
    if (reference == nullptr) return 0;
    const std::shared_ptr<LmEPSGMatcher> matcher = _AliasMatcher();
    if (!matcher) return 0;
    const LmEPSGMatcher::Match match = matcher->First(reference);
    if (match.index < 0) return 0;
    // Read as the entry's reference reads its name, so an entry whose name
    // line is empty answers the code its CS name carries.
    LmString name = match.name;
    if (name.empty()) name = LmSpatialReference(match.text.c_str(), eWKT).Name();
    const std::int64_t code = CodeOfLine(name);
    if (code <= 0 || code > INT32_MAX) return 0;
    _CacheRecentDefinition(matcher, static_cast<std::size_t>(match.index), static_cast<int>(code));
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
        auto matcher = std::make_shared<LmEPSGMatcher>();
        // The table's texts stay in place for the life of the process.
        for (const auto& record : g_EPSGCache) matcher->AddLasting(record.first, "", record.second);
        g_tableMatcher = std::move(matcher);
    });
    const LmEPSGMatcher::Match match = g_tableMatcher->First(reference);
    if (match.index < 0) return 0;
    _CacheRecentDefinition(g_tableMatcher, static_cast<std::size_t>(match.index), match.code);
    return match.code;
}

}  // namespace Kernel
}  // namespace Lumora
