#include <lmspatialreference/spatialreference.h>

#include "internal/epsgindex.h"
#include "internal/ogrsupport.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace Lumora {
namespace Kernel {

namespace {

// Tolerances for values as users' files write them: rounded to a tenth of a
// millimetre, a millionth of a degree or 1e-8 of a scale, they still name the
// code they were written from, while the closest distinct ellipsoids (WGS 84
// and GRS 1980, 1.5e-6 apart in inverse flattening) stay apart.
constexpr double kLengthTolerance = 1e-3;  // metres
constexpr double kAngleTolerance = 1e-6;   // degrees
constexpr double kScaleTolerance = 1e-8;
constexpr double kInverseFlatteningTolerance = 5e-7;
constexpr double kUnitTolerance = 1e-8;  // relative
constexpr int kTrusted = 70;

enum LmParameterKind { eLength, eScale, eAngle };

LmParameterKind _KindOf(const std::string& name) {
    if (name.find("false_") != std::string::npos || name.find("easting") != std::string::npos ||
        name.find("northing") != std::string::npos)
        return eLength;
    if (name.find("scale") != std::string::npos) return eScale;
    return eAngle;
}

double _ValueOf(const LmNamedValues& values, const std::string& name) {
    for (const auto& value : values)
        if (value.first == name) return value.second;
    return _KindOf(name) == eScale ? 1.0 : 0.0;
}

bool _SameParameters(const LmNamedValues& a, const LmNamedValues& b) {
    // A parameter one side leaves out has its default on that side.
    for (const LmNamedValues* side : {&a, &b}) {
        for (const auto& value : *side) {
            const double other = _ValueOf(side == &a ? b : a, value.first);
            const LmParameterKind kind = _KindOf(value.first);
            const double tolerance = kind == eLength ? kLengthTolerance : kind == eScale ? kScaleTolerance : kAngleTolerance;
            if (!(std::fabs(value.second - other) <= tolerance)) return false;
        }
    }
    return true;
}

bool _Sphere(double inverseFlattening) { return !(inverseFlattening > 0.0 && inverseFlattening < 1e8); }

bool _SameUnit(double a, double b) { return std::fabs(a - b) <= kUnitTolerance * std::max(std::fabs(a), std::fabs(b)); }

// The numbers: everything but the names. statedAxes: whether the text gives
// its projected axes, so that their order counts.
bool _NumbersAgree(const LmEPSGFingerprint& text, bool statedAxes, const LmEPSGFingerprint& code) {
    if (text.kind != code.kind || !(std::fabs(text.semiMajor - code.semiMajor) <= kLengthTolerance * 10)) return false;
    if (_Sphere(text.inverseFlattening) != _Sphere(code.inverseFlattening)) return false;
    if (!_Sphere(text.inverseFlattening) &&
        !(std::fabs(text.inverseFlattening - code.inverseFlattening) <= kInverseFlatteningTolerance))
        return false;
    if (!(std::fabs(text.primeMeridian - code.primeMeridian) <= kAngleTolerance)) return false;
    if (text.kind == 'G') return _SameUnit(text.angularUnit, code.angularUnit);
    if (text.projection != code.projection || !_SameUnit(text.linearUnit, code.linearUnit)) return false;
    if (statedAxes && text.northingFirst != code.northingFirst) return false;
    return _SameParameters(text.normalizedParameters, code.normalizedParameters);
}

bool _Contains(const std::vector<std::string>& keys, const std::vector<std::string>& wanted) {
    for (const std::string& key : wanted)
        if (std::find(keys.begin(), keys.end(), key) != keys.end()) return true;
    return false;
}

// Whether a WKT text gives axes for its outermost CS itself: an AXIS node
// directly inside the root node. GDAL adds AXIS nodes to every projected CS
// it reads, so only the text tells whether its author chose an order.
bool _StatesAxes(const char* text) {
    int depth = 0;
    bool quoted = false;
    for (const char* c = text; *c != '\0'; ++c) {
        if (*c == '"') quoted = !quoted;
        if (quoted) continue;
        if (*c == '[' || *c == '(') {
            if (depth == 1 && c - text >= 4 && EQUALN(c - 4, "AXIS", 4)) return true;
            ++depth;
        } else if (*c == ']' || *c == ')') {
            --depth;
        }
    }
    return false;
}

struct Candidate {
    const LmEPSGFingerprint* code;
    int confidence;
    bool datum;
};

}  // namespace

int LmSpatialReference::FindEPSG(std::vector<LmEPSGMatch>* candidates) const {
    if (candidates != nullptr) candidates->clear();
    if (m_pSRS == nullptr) return 0;
    const LmEPSGIndex& index = LmEPSGIndex::Instance();
    if (index.Entries().empty()) return 0;

    LmQuietGdalErrors quiet;
    const LmEPSGFingerprint text = ReadFingerprint(*m_pSRS);
    if (text.kind == 'O') return 0;
    // References built from a code, XML or PROJ.4 have no WKT of their own to
    // ask; their axes are as OGR holds them.
    const bool statedAxes = text.kind == 'P' && (m_strWKT.empty() || _StatesAxes(m_strWKT.c_str()));
    int authority = 0;
    const char* authorityName = m_pSRS->GetAuthorityName(nullptr);
    const char* authorityCode = m_pSRS->GetAuthorityCode(nullptr);
    if (authorityName != nullptr && authorityCode != nullptr && EQUAL(authorityName, "EPSG"))
        authority = std::atoi(authorityCode);

    std::vector<Candidate> found;
    const std::vector<LmEPSGIndex::Key>& keys = index.Keys();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        // The kind and the semi-major axis first, as _NumbersAgree compares them.
        if (keys[i].alias || keys[i].kind != text.kind ||
            !(std::fabs(text.semiMajor - keys[i].semiMajor) <= kLengthTolerance * 10))
            continue;
        const LmEPSGFingerprint& code = index.Entries()[i];
        if (!_NumbersAgree(text, statedAxes, code)) continue;
        const bool datum = _Contains(code.datumKeys, text.datumKeys);
        const bool name = _Contains(code.nameKeys, text.nameKeys);
        const int confidence = code.code == authority || (datum && name) ? 100 : datum ? 85 : name ? 75 : 50;
        found.push_back({&code, confidence, datum});
    }
    // Without stated axes the text is easting first: a northing-first code
    // only stands where no easting-first code on a datum as well named does.
    if (text.kind == 'P' && !statedAxes) {
        const auto twinned = [&found](const Candidate& northing) {
            return northing.code->northingFirst &&
                   std::any_of(found.begin(), found.end(), [&northing](const Candidate& other) {
                       return !other.code->northingFirst && other.datum >= northing.datum;
                   });
        };
        found.erase(std::remove_if(found.begin(), found.end(), twinned), found.end());
    }
    std::sort(found.begin(), found.end(), [](const Candidate& a, const Candidate& b) {
        if (a.confidence != b.confidence) return a.confidence > b.confidence;
        if (a.code->deprecated != b.code->deprecated) return !a.code->deprecated;
        return a.code->code < b.code->code;
    });
    if (candidates != nullptr)
        for (const Candidate& candidate : found)
            candidates->push_back({candidate.code->code, candidate.confidence, LmString(candidate.code->name)});
    return !found.empty() && found.front().confidence >= kTrusted ? found.front().code->code : 0;
}

}  // namespace Kernel
}  // namespace Lumora
