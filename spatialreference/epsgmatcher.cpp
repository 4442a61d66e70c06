#include "spatialreference/epsgmatcher.h"

#include "internal/epsgindex.h"
#include "internal/ogrsupport.h"
#include "spatialreference/ogrcompare.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace Lumora {
namespace Kernel {

namespace {

// Entries on another ellipsoid are skipped before anything is built. A
// geographic reference may match through OGR's geographic comparison, which
// tolerates 0.01 m and 1e-4; anything else needs IsSameEllipsoid (0.001 m and
// 1e-6) or PROJ's equivalence (far closer). The margins stay above each, yet
// the projected one still tells WGS 84 from GRS 1980 (1.46e-6 apart).
constexpr double kGeographicSemiMajorMargin = 0.5;
constexpr double kGeographicFlatteningMargin = 0.01;
constexpr double kProjectedSemiMajorMargin = 0.0015;
constexpr double kProjectedFlatteningMargin = 1.2e-6;

bool _StartsWith(const char* text, const char* keyword) {
    while (*text == ' ' || *text == '\t') ++text;
    return std::strncmp(text, keyword, std::strlen(keyword)) == 0;
}

// The semi-major axis and inverse flattening of the first SPHEROID of a WKT 1
// text, read without building it.
bool _ReadSpheroid(const char* text, double& semiMajor, double& inverseFlattening) {
    const char* node = std::strstr(text, "SPHEROID[\"");
    if (node == nullptr) return false;
    const char* p = node + std::strlen("SPHEROID[\"");
    // Skip the quoted name, where a doubled quote stands for one quote.
    for (;;) {
        if (*p == '\0') return false;
        if (*p == '"') {
            if (p[1] == '"') {
                p += 2;
                continue;
            }
            break;
        }
        ++p;
    }
    if (p[1] != ',') return false;
    char* end = nullptr;
    semiMajor = std::strtod(p + 2, &end);
    if (end == p + 2 || *end != ',') return false;
    const char* next = end + 1;
    inverseFlattening = std::strtod(next, &end);
    return end != next && std::isfinite(semiMajor) && std::isfinite(inverseFlattening);
}

// A sphere, or as good as one, has no inverse flattening to compare.
bool _Flattened(double inverseFlattening) { return inverseFlattening > 0.0 && inverseFlattening < 1e8; }

bool _Close(double a, double b, double relative = 1e-6) {
    return std::fabs(a - b) <= relative * std::max(1.0, std::max(std::fabs(a), std::fabs(b)));
}

// Methods that PROJ may find equivalent to another method (Mercator variants
// A and B, Lambert conic 1SP and 2SP, the polar stereographic and oblique
// Mercator variants, and so on): their parameters are not compared one for
// one before OGR's own comparison. Transverse Mercator is none of them.
bool _ConvertibleMethod(const std::string& projection) {
    if (projection.rfind("mercator", 0) == 0) return true;
    for (const char* family : {"lambert", "stereographic", "oblique", "equirectangular", "equal_area", "krovak"})
        if (projection.find(family) != std::string::npos) return true;
    return false;
}

// Whether OGR's equivalence can hold between two projections: PROJ compares
// the parameters of one method within 1e-10 of each other, so a parameter
// that differs by more rules it out. Between convertible methods only the
// longitude of the origin is compared: every conversion PROJ makes between
// them (conic 1SP and 2SP, Mercator A and B) keeps it, while the latitudes
// and scales change.
bool _MayBeEquivalent(const std::string& projection, const LmNamedValues& parameters, const LmEPSGFingerprint& entry) {
    const bool convertible = _ConvertibleMethod(projection);
    if (convertible != _ConvertibleMethod(entry.projection)) return false;
    if (!convertible && projection != entry.projection) return false;
    for (const auto& parameter : parameters) {
        if (convertible && parameter.first != "central_meridian" && parameter.first != "longitude_of_center" &&
            parameter.first != "longitude_of_origin")
            continue;
        for (const auto& own : entry.normalizedParameters)
            if (own.first == parameter.first && !_Close(own.second, parameter.second, 1e-8)) return false;
    }
    return true;
}

// IsSameEllipsoid on the values the fingerprints hold: exactly OGR's values
// for both sides, so the answer is that of the built objects.
bool _SameEllipsoid(const LmEPSGFingerprint& a, const LmEPSGFingerprint& b) {
    return IsSameEllipsoid(LmEllipsoidValues{a.semiMajor, a.semiMinor, a.inverseFlattening, a.primeMeridian},
                           LmEllipsoidValues{b.semiMajor, b.semiMinor, b.inverseFlattening, b.primeMeridian});
}

const double* _Find(const LmNamedValues& values, const char* name) {
    for (const auto& value : values)
        if (value.first == name) return &value.second;
    return nullptr;
}

// GetProjParm(name, 0.0) of an entry, found as OGR finds a parameter: by name,
// else, for two names, under the older names of the same value. Null when the
// entry has none, where OGR's answer would depend on more than the fingerprint
// holds.
const double* _EntryParameter(const LmEPSGFingerprint& entry, const std::string& name) {
    if (const double* value = _Find(entry.parameters, name.c_str())) return value;
    if (name == "latitude_of_origin") return _Find(entry.parameters, "latitude_of_center");
    if (name == "central_meridian") {
        if (const double* value = _Find(entry.parameters, "longitude_of_center")) return value;
        return _Find(entry.parameters, "longitude_of_origin");
    }
    return nullptr;
}

enum class LmVerdict { eNo, eYes, eOpen };

// IsSameParameter of a projected reference and an entry of the same kind and
// ellipsoid, from the fingerprints: the same projection, and every parameter
// of the reference exactly equal in the entry.
LmVerdict _SameParameters(const std::string& projection, const LmNamedValues& parameters,
                          const LmEPSGFingerprint& entry) {
    if (projection.empty()) return LmVerdict::eOpen;
    if (projection != entry.projection) return LmVerdict::eNo;
    for (const auto& parameter : parameters) {
        const double* own = _EntryParameter(entry, parameter.first);
        if (own == nullptr) return LmVerdict::eOpen;
        if (*own != parameter.second) return LmVerdict::eNo;
    }
    return LmVerdict::eYes;
}

// Entries this thread built lately, by matcher and place. Building an entry
// means parsing its text, where PROJ looks every name up in its database (a
// millisecond or more), and the searches that follow one another meet the
// same few entries again: the neighbours of the codes a user's files carry.
// Per thread, since an OGR object must not be compared from two threads at
// once; a few dozen, so that memory stays flat.
constexpr std::size_t kBuiltPerThread = 24;

struct BuiltEntry {
    std::uint64_t matcher;
    std::size_t index;
    LmSmarterPtr<LmSpatialReference> reference;
};

LmSpatialReference* _Built(std::uint64_t matcher, std::size_t index, const char* text) {
    thread_local std::deque<BuiltEntry> built;
    for (auto entry = built.begin(); entry != built.end(); ++entry) {
        if (entry->matcher != matcher || entry->index != index) continue;
        if (entry != built.begin()) {
            BuiltEntry found = std::move(*entry);
            built.erase(entry);
            built.push_front(std::move(found));
        }
        return built.front().reference;
    }
    if (built.size() == kBuiltPerThread) built.pop_back();
    built.push_front({matcher, index, LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(text, eWKT))});
    return built.front().reference;
}

std::atomic<std::uint64_t> g_matcherSerial{0};

}  // namespace

LmEPSGMatcher::LmEPSGMatcher() : m_serial(++g_matcherSerial) {}

LmEPSGMatcher::Probe::Probe(const LmSpatialReference* searched) : reference(searched) {
    if (reference == nullptr || reference->IsNull()) return;
    null = false;
    geographic = reference->IsGeographic();
    // Handle() is the only access to the OGR object; reading it changes nothing.
    OGRSpatialReference* srs = const_cast<LmSpatialReference*>(reference)->Handle();
    print = ReadFingerprint(*srs);
    LmQuietGdalErrors quiet;
    const OGR_SRSNode* projcs = srs->GetAttrNode("PROJCS");
    for (int i = 0, n = projcs ? projcs->GetChildCount() : 0; i < n; ++i) {
        const OGR_SRSNode* child = projcs->GetChild(i);
        if (!EQUAL(child->GetValue(), "PARAMETER") || child->GetChildCount() != 2) continue;
        const char* name = FirstChildValue(child, "");
        parameters.emplace_back(LmLowerCase(name), srs->GetProjParm(name, 0.0));
    }
}

void LmEPSGMatcher::Add(int code, const char* name, const char* text) {
    m_texts.emplace_back(text);
    _Add(code, name, m_texts.back().c_str());
}

void LmEPSGMatcher::AddLasting(int code, const char* name, const LmString& text) { _Add(code, name, text.c_str()); }

void LmEPSGMatcher::_Add(int code, const char* name, const char* text) {
    Entry& entry = m_entries.emplace_back();
    entry.index = m_entries.size() - 1;
    entry.code = code;
    entry.name = name;
    entry.text = text;
    if (_StartsWith(text, "GEOGCS[")) entry.kind = 'G';
    else if (_StartsWith(text, "PROJCS[")) entry.kind = 'P';
    entry.hasEllipsoid = _ReadSpheroid(text, entry.semiMajor, entry.inverseFlattening);
    // Set before any search can see the entry, so no search needs the once flag.
    entry.print = LmEPSGIndex::Instance().Find(code, LmTextHash(text));
    entry.indexed = entry.buildable = entry.print != nullptr;
}

const LmEPSGMatcher::Entry& LmEPSGMatcher::_Described(const Entry& entry) const {
    if (entry.indexed) return entry;
    std::call_once(entry.describeOnce, [&entry] {
        LmSpatialReference built(entry.text, eWKT);
        entry.buildable = !built.IsNull();
        if (entry.buildable) {
            entry.ownPrint = std::make_unique<LmEPSGFingerprint>(ReadFingerprint(*built.Handle()));
            entry.print = entry.ownPrint.get();
        }
    });
    return entry;
}

// Whether the reference is the same as the entry (IsSame): its tests
// reordered cheapest first, the entry built only for an OGR comparison that
// its fingerprint shows can pass.
bool LmEPSGMatcher::_IsSame(const Probe& probe, const Entry& entry) const {
    const auto candidate = [this, &entry]() { return _Built(m_serial, entry.index, entry.text); };
    // Two null references are the same; a null one is like no other.
    if (probe.null) return !_Described(entry).buildable;
    const char wanted = probe.geographic ? 'G' : 'P';
    if (entry.kind != 0 && entry.kind != wanted) return false;
    if (entry.hasEllipsoid) {
        const double semiMajorMargin = probe.geographic ? kGeographicSemiMajorMargin : kProjectedSemiMajorMargin;
        const double flatteningMargin = probe.geographic ? kGeographicFlatteningMargin : kProjectedFlatteningMargin;
        if (std::fabs(entry.semiMajor - probe.print.semiMajor) > semiMajorMargin) return false;
        if (_Flattened(entry.inverseFlattening) && _Flattened(probe.print.inverseFlattening) &&
            std::fabs(entry.inverseFlattening - probe.print.inverseFlattening) > flatteningMargin)
            return false;
    }
    if (!_Described(entry).buildable) return false;
    const LmEPSGFingerprint& print = *entry.print;
    if ((print.kind == 'G') != probe.geographic) return false;

    // IsSameGeogCS and IsSameProjCS hold for the same CS name on the same
    // ellipsoid, whatever OGR's own comparison says.
    const bool sameName = probe.print.rootName == print.rootName;
    const bool sameEllipsoid = _SameEllipsoid(probe.print, print);
    if (probe.geographic) {
        if (sameName && sameEllipsoid) return true;
        return probe.reference->IsSame(candidate());
    }
    const bool bothProjected = probe.print.kind == 'P' && print.kind == 'P';
    if (bothProjected && sameName && sameEllipsoid) return true;
    // Otherwise IsSameProjCS needs two vertical datums that OGR compares.
    if (bothProjected && probe.print.vertical && print.vertical && probe.reference->IsSameProjCS(candidate()))
        return true;
    // OGR's equivalence compares the projections in metres, false origin included.
    if (!_Close(probe.print.falseEasting, print.falseEasting) || !_Close(probe.print.falseNorthing, print.falseNorthing))
        return false;
    if (!_MayBeEquivalent(probe.print.projection, probe.print.normalizedParameters, print)) return false;
    LmQuietGdalErrors quiet;
    return const_cast<LmSpatialReference*>(probe.reference)->Handle()->IsSame(candidate()->Handle()) != 0;
}

// Whether the reference is the same as the entry or has its parameters
// (IsSame || IsSameParameter; the disjunction does not depend on the order).
bool LmEPSGMatcher::_Passes(const Probe& probe, const Entry& entry) const {
    if (!probe.null && !(entry.kind != 0 && entry.kind != (probe.geographic ? 'G' : 'P'))) {
        // IsSameParameter: the same kind and ellipsoid, and for a projection
        // the same method and parameters.
        if (_Described(entry).buildable && (entry.print->kind == 'G') == probe.geographic &&
            _SameEllipsoid(probe.print, *entry.print)) {
            const LmEPSGFingerprint& print = *entry.print;
            if (probe.geographic) return true;
            switch (_SameParameters(probe.print.projection, probe.parameters, print)) {
                case LmVerdict::eYes:
                    return true;
                case LmVerdict::eOpen:
                    if (probe.reference->IsSameParameter(_Built(m_serial, entry.index, entry.text))) return true;
                    break;
                case LmVerdict::eNo:
                    break;
            }
        }
    }
    return _IsSame(probe, entry);
}

bool LmEPSGMatcher::IsSame(const Probe& probe, std::size_t index) const {
    if (index >= m_entries.size()) return false;
    return _IsSame(probe, m_entries[index]);
}

LmEPSGMatcher::Match LmEPSGMatcher::_Answer(std::size_t index) const {
    Match match;
    if (index >= m_entries.size()) return match;
    match.index = static_cast<int>(index);
    match.code = m_entries[index].code;
    match.name = m_entries[index].name;
    match.text = m_entries[index].text;
    return match;
}

LmEPSGMatcher::Match LmEPSGMatcher::First(const LmSpatialReference* reference) const {
    if (reference == nullptr) return Match();
    return First(Probe(reference));
}

LmEPSGMatcher::Match LmEPSGMatcher::First(const Probe& probe) const {
    if (probe.reference == nullptr) return Match();
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        if (_Passes(probe, m_entries[i])) return _Answer(i);
    return Match();
}

}  // namespace Kernel
}  // namespace Lumora
