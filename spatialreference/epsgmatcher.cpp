#include "spatialreference/epsgmatcher.h"

#include "internal/epsgindex.h"
#include "internal/ogrsupport.h"

#include <algorithm>
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
// that differs by more rules it out.
bool _MayBeEquivalent(const std::string& projection, const LmNamedValues& parameters, const LmEPSGFingerprint& entry) {
    const bool convertible = _ConvertibleMethod(projection);
    if (convertible != _ConvertibleMethod(entry.projection)) return false;
    if (convertible) return true;
    if (projection != entry.projection) return false;
    for (const auto& parameter : parameters)
        for (const auto& own : entry.normalizedParameters)
            if (own.first == parameter.first && !_Close(own.second, parameter.second, 1e-8)) return false;
    return true;
}

}  // namespace

// What the search needs of the reference looked for, read once per search.
struct LmEPSGMatcher::Probe {
    const LmSpatialReference* reference = nullptr;
    bool geographic = false;
    double semiMajor = 0.0;
    double inverseFlattening = 0.0;
    // The values IsSameParameter compares: parameters with exactly two
    // children, as written.
    std::vector<std::pair<std::string, double>> parameters;
    LmEPSGFingerprint print;
};

void LmEPSGMatcher::Add(int code, const char* name, const char* text) {
    Entry& entry = m_entries.emplace_back();
    entry.code = code;
    entry.name = name;
    entry.text = text;
    if (_StartsWith(entry.text.c_str(), "GEOGCS[")) entry.kind = 'G';
    else if (_StartsWith(entry.text.c_str(), "PROJCS[")) entry.kind = 'P';
    entry.hasEllipsoid = _ReadSpheroid(entry.text.c_str(), entry.semiMajor, entry.inverseFlattening);
    const LmEPSGFingerprint* indexed = LmEPSGIndex::Instance().Find(code, LmTextHash(entry.text.c_str()));
    if (indexed != nullptr) {
        std::call_once(entry.describeOnce, [&entry, indexed] {
            entry.print = *indexed;
            entry.buildable = true;
        });
    }
}

const LmEPSGMatcher::Entry& LmEPSGMatcher::_Described(const Entry& entry) const {
    std::call_once(entry.describeOnce, [&entry] {
        LmSpatialReference built(entry.text.c_str(), eWKT);
        entry.buildable = !built.IsNull();
        if (entry.buildable) entry.print = ReadFingerprint(*built.Handle());
    });
    return entry;
}

// Whether the reference is the same as the entry or has its parameters. The
// tests are those of IsSame and IsSameParameter, reordered cheapest first
// (their disjunction does not depend on the order); the entry is built only
// for a comparison that its fingerprint shows can pass.
bool LmEPSGMatcher::_Passes(const Probe& probe, const Entry& entry) const {
    const char wanted = probe.geographic ? 'G' : 'P';
    if (entry.kind != 0 && entry.kind != wanted) return false;
    if (entry.hasEllipsoid) {
        const double semiMajorMargin = probe.geographic ? kGeographicSemiMajorMargin : kProjectedSemiMajorMargin;
        const double flatteningMargin = probe.geographic ? kGeographicFlatteningMargin : kProjectedFlatteningMargin;
        if (std::fabs(entry.semiMajor - probe.semiMajor) > semiMajorMargin) return false;
        if (_Flattened(entry.inverseFlattening) && _Flattened(probe.inverseFlattening) &&
            std::fabs(entry.inverseFlattening - probe.inverseFlattening) > flatteningMargin)
            return false;
    }
    const LmEPSGFingerprint& print = _Described(entry).print;
    // Both tests refuse an entry that OGR cannot build, or of the other kind.
    if (!entry.buildable || (print.kind == 'G') != probe.geographic) return false;
    // Built at most once per search, and only for a comparison that can pass.
    LmSmarterPtr<LmSpatialReference> built;
    const auto candidate = [&entry, &built]() -> LmSpatialReference* {
        if (!built) built = new LmSpatialReference(entry.text.c_str(), eWKT);
        return built;
    };
    if (probe.geographic) return probe.reference->IsSameParameter(candidate()) || probe.reference->IsSame(candidate());

    // IsSameParameter needs the same projection and every parameter of the
    // reference equal in the entry.
    if (!probe.print.projection.empty() && probe.print.projection == print.projection) {
        bool conflict = false;
        for (const auto& parameter : probe.parameters) {
            for (const auto& own : print.parameters) {
                if (own.first == parameter.first) {
                    conflict = own.second != parameter.second;
                    break;
                }
            }
            if (conflict) break;
        }
        if (!conflict && probe.reference->IsSameParameter(candidate())) return true;
    }
    // IsSame is OGR's equivalence or else IsSameProjCS, which needs the same
    // CS name or two vertical datums.
    if ((probe.print.rootName == print.rootName || (probe.print.vertical && print.vertical)) &&
        probe.reference->IsSameProjCS(candidate()))
        return true;
    // OGR's equivalence compares the projections in metres, false origin included.
    if (!_Close(probe.print.falseEasting, print.falseEasting) || !_Close(probe.print.falseNorthing, print.falseNorthing))
        return false;
    if (!_MayBeEquivalent(probe.print.projection, probe.print.normalizedParameters, print)) return false;
    LmQuietGdalErrors quiet;
    return const_cast<LmSpatialReference*>(probe.reference)->Handle()->IsSame(candidate()->Handle()) != 0;
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
    if (reference->IsNull()) {
        // Two null references are the same: the first entry OGR cannot build.
        for (std::size_t i = 0; i < m_entries.size(); ++i)
            if (!_Described(m_entries[i]).buildable) return _Answer(i);
        return Match();
    }

    Probe probe;
    probe.reference = reference;
    probe.geographic = reference->IsGeographic();
    probe.semiMajor = reference->EquatorialRadiusA();
    probe.inverseFlattening = reference->FlattenInverseF();
    {
        // Handle() is the only access to the OGR object; reading it changes nothing.
        OGRSpatialReference* srs = const_cast<LmSpatialReference*>(reference)->Handle();
        probe.print = ReadFingerprint(*srs);
        LmQuietGdalErrors quiet;
        const OGR_SRSNode* projcs = srs->GetAttrNode("PROJCS");
        for (int i = 0, n = projcs ? projcs->GetChildCount() : 0; i < n; ++i) {
            const OGR_SRSNode* child = projcs->GetChild(i);
            if (!EQUAL(child->GetValue(), "PARAMETER") || child->GetChildCount() != 2) continue;
            const char* name = FirstChildValue(child, "");
            probe.parameters.emplace_back(LmLowerCase(name), srs->GetProjParm(name, 0.0));
        }
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        if (_Passes(probe, m_entries[i])) return _Answer(i);
    return Match();
}

}  // namespace Kernel
}  // namespace Lumora
