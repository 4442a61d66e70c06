#include "internal/epsgfingerprint.h"

#include "internal/ogrsupport.h"

#include <ogr_spatialref.h>
#include <ogr_srs_api.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>

namespace Lumora {
namespace Kernel {

namespace {

const char* _FirstChild(const OGR_SRSNode* node) {
    return node != nullptr && node->GetChildCount() > 0 ? node->GetChild(0)->GetValue() : "";
}

// Shortest text that reads back to the same double, whatever the locale.
void _AppendNumber(std::string& line, double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    line.append(buffer, result.ptr);
}

bool _ReadNumber(const std::string& text, double& value) {
    if (text.empty()) return false;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::vector<std::string> _Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos) return parts;
        start = end + 1;
    }
}

std::string _JoinValues(const LmNamedValues& values) {
    std::string text;
    for (const auto& value : values) {
        if (!text.empty()) text += ';';
        text += value.first;
        text += '=';
        _AppendNumber(text, value.second);
    }
    return text;
}

bool _ReadValues(const std::string& text, LmNamedValues& values) {
    values.clear();
    if (text.empty()) return true;
    for (const std::string& item : _Split(text, ';')) {
        const std::size_t equals = item.rfind('=');
        double value = 0.0;
        if (equals == std::string::npos || !_ReadNumber(item.substr(equals + 1), value)) return false;
        values.emplace_back(item.substr(0, equals), value);
    }
    return true;
}

std::string _JoinKeys(const std::vector<std::string>& keys) {
    std::string text;
    for (const std::string& key : keys) {
        if (!text.empty()) text += ' ';
        text += key;
    }
    return text;
}

std::vector<std::string> _ReadKeys(const std::string& text) {
    std::vector<std::string> keys;
    if (text.empty()) return keys;
    for (std::string& key : _Split(text, ' '))
        if (!key.empty()) keys.push_back(std::move(key));
    return keys;
}

bool _Printable(const std::string& text) { return text.find_first_of("\t\r\n") == std::string::npos; }

constexpr std::size_t kFieldCount = 18;

}  // namespace

std::string LmLowerCase(const char* text) {
    std::string lower(text == nullptr ? "" : text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::string LmNameKey(const char* name) {
    std::string key;
    for (const char* c = name == nullptr ? "" : name; *c != '\0'; ++c)
        if (std::isalnum(static_cast<unsigned char>(*c))) key += static_cast<char>(std::tolower(static_cast<unsigned char>(*c)));
    // ESRI writes D_North_American_1983 and GCS_North_American_1983 for the
    // datum and the CS that the EPSG dataset calls North American Datum 1983
    // and NAD83; the prefixes carry nothing a comparison could use.
    const std::string lower = LmLowerCase(name);
    if (lower.rfind("d_", 0) == 0 && key.size() > 1) key.erase(0, 1);
    else if (lower.rfind("gcs_", 0) == 0 && key.size() > 3) key.erase(0, 3);
    return key;
}

std::uint64_t LmTextHash(const char* text) {
    std::uint64_t hash = 14695981039346656037ull;
    for (const unsigned char* c = reinterpret_cast<const unsigned char*>(text == nullptr ? "" : text); *c != 0; ++c) {
        hash ^= *c;
        hash *= 1099511628211ull;
    }
    return hash;
}

LmEPSGFingerprint ReadFingerprint(const OGRSpatialReference& constSrs) {
    // OGR's getters are not const, though reading changes nothing.
    OGRSpatialReference& srs = const_cast<OGRSpatialReference&>(constSrs);
    LmQuietGdalErrors quiet;
    LmEPSGFingerprint print;
    print.kind = srs.IsGeographic() ? 'G' : srs.IsProjected() ? 'P' : 'O';
    print.semiMajor = srs.GetSemiMajor();
    print.semiMinor = srs.GetSemiMinor();
    print.inverseFlattening = srs.GetInvFlattening();
    print.primeMeridian = srs.GetPrimeMeridian();
    print.angularUnit = srs.GetAngularUnits();
    print.linearUnit = srs.GetLinearUnits();
    print.projection = LmLowerCase(srs.GetAttrValue("PROJECTION"));
    print.name = _FirstChild(srs.GetRoot());
    print.rootName = LmLowerCase(print.name.c_str());
    print.vertical = srs.GetAttrValue("VERT_DATUM") != nullptr;
    print.falseEasting = srs.GetNormProjParm(SRS_PP_FALSE_EASTING, 0.0);
    print.falseNorthing = srs.GetNormProjParm(SRS_PP_FALSE_NORTHING, 0.0);
    const OGR_SRSNode* projcs = srs.GetAttrNode("PROJCS");
    for (int i = 0, n = projcs ? projcs->GetChildCount() : 0; i < n; ++i) {
        const OGR_SRSNode* child = projcs->GetChild(i);
        if (!EQUAL(child->GetValue(), "PARAMETER") || child->GetChildCount() < 2) continue;
        const char* name = _FirstChild(child);
        std::string lower = LmLowerCase(name);
        const bool known = std::any_of(print.parameters.begin(), print.parameters.end(),
                                       [&lower](const auto& parameter) { return parameter.first == lower; });
        if (known) continue;
        print.parameters.emplace_back(lower, srs.GetProjParm(name, 0.0));
        print.normalizedParameters.emplace_back(std::move(lower), srs.GetNormProjParm(name, 0.0));
    }
    const OGR_SRSNode* firstAxis = projcs != nullptr ? projcs->GetNode("AXIS") : nullptr;
    if (firstAxis != nullptr && firstAxis->GetChildCount() >= 2) {
        const char* orientation = firstAxis->GetChild(1)->GetValue();
        print.northingFirst = EQUAL(orientation, "NORTH") || EQUAL(orientation, "SOUTH");
    }
    const std::string datum = LmNameKey(srs.GetAttrValue("DATUM"));
    if (!datum.empty()) print.datumKeys.push_back(datum);
    const std::string name = LmNameKey(_FirstChild(srs.GetRoot()));
    if (!name.empty()) print.nameKeys.push_back(name);
    return print;
}

std::string FormatFingerprint(const LmEPSGFingerprint& print) {
    if (!_Printable(print.projection) || !_Printable(print.name)) return "";
    std::string line = std::to_string(print.code);
    line += '\t';
    std::string flags;
    if (print.deprecated) flags += 'd';
    if (print.alias) flags += 'a';
    if (print.vertical) flags += 'v';
    if (print.northingFirst) flags += 'n';
    line += flags.empty() ? "-" : flags;
    char hash[17];
    std::snprintf(hash, sizeof hash, "%016llx", static_cast<unsigned long long>(print.textHash));
    line += '\t';
    line += hash;
    line += '\t';
    line += print.kind;
    for (double value : {print.semiMajor, print.semiMinor, print.inverseFlattening, print.primeMeridian,
                         print.angularUnit, print.linearUnit}) {
        line += '\t';
        _AppendNumber(line, value);
    }
    line += '\t' + print.projection + '\t' + print.name + '\t';
    _AppendNumber(line, print.falseEasting);
    line += '\t';
    _AppendNumber(line, print.falseNorthing);
    line += '\t' + _JoinValues(print.parameters) + '\t' + _JoinValues(print.normalizedParameters);
    line += '\t' + _JoinKeys(print.datumKeys) + '\t' + _JoinKeys(print.nameKeys);
    return line;
}

bool ParseFingerprint(const std::string& line, LmEPSGFingerprint& print) {
    const std::vector<std::string> fields = _Split(line, '\t');
    if (fields.size() != kFieldCount) return false;
    print = LmEPSGFingerprint();
    const auto code = std::from_chars(fields[0].data(), fields[0].data() + fields[0].size(), print.code);
    if (code.ec != std::errc() || print.code <= 0) return false;
    print.deprecated = fields[1].find('d') != std::string::npos;
    print.alias = fields[1].find('a') != std::string::npos;
    print.vertical = fields[1].find('v') != std::string::npos;
    print.northingFirst = fields[1].find('n') != std::string::npos;
    const auto hash = std::from_chars(fields[2].data(), fields[2].data() + fields[2].size(), print.textHash, 16);
    if (hash.ec != std::errc() || fields[3].size() != 1) return false;
    print.kind = fields[3][0];
    double* numbers[] = {&print.semiMajor,   &print.semiMinor,   &print.inverseFlattening,
                         &print.primeMeridian, &print.angularUnit, &print.linearUnit};
    for (std::size_t i = 0; i < 6; ++i)
        if (!_ReadNumber(fields[4 + i], *numbers[i])) return false;
    print.projection = fields[10];
    print.name = fields[11];
    print.rootName = LmLowerCase(print.name.c_str());
    if (!_ReadNumber(fields[12], print.falseEasting) || !_ReadNumber(fields[13], print.falseNorthing)) return false;
    if (!_ReadValues(fields[14], print.parameters) || !_ReadValues(fields[15], print.normalizedParameters)) return false;
    print.datumKeys = _ReadKeys(fields[16]);
    print.nameKeys = _ReadKeys(fields[17]);
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
