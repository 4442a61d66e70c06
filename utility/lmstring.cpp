#include <lmspatialreference/utility.h>

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace Lumora {
namespace Utility {

namespace {

bool _IsBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

}  // namespace

bool LmStringHelp::IsNullOrEmpty(const char* text) { return text == nullptr || *text == '\0'; }

std::vector<LmString> LmStringHelp::Split(const char* text, char separator) {
    std::vector<LmString> fields;
    const char* begin = text ? text : "";
    for (;;) {
        const char* end = std::strchr(begin, separator);
        if (separator == '\0' || end == nullptr) {
            fields.emplace_back(std::string(begin));
            return fields;
        }
        fields.emplace_back(std::string(begin, end));
        begin = end + 1;
    }
}

bool LmStringHelp::StartWith(const char* text, const char* prefix, bool ignoreCase) {
    if (text == nullptr || prefix == nullptr) return false;
    const std::size_t length = std::strlen(prefix);
    return ignoreCase ? ::strncasecmp(text, prefix, length) == 0 : std::strncmp(text, prefix, length) == 0;
}

LmString LmStringHelp::ToString(const char* text) { return LmString(text); }

LmString LmStringHelp::Trim(const char* text) {
    if (text == nullptr) return LmString();
    const char* begin = text;
    while (*begin && _IsBlank(*begin)) ++begin;
    const char* end = begin + std::strlen(begin);
    while (end > begin && _IsBlank(end[-1])) --end;
    return LmString(std::string(begin, end));
}

double LmCRT::_atof(const char* text) { return text ? std::atof(text) : 0.0; }

std::int64_t LmCRT::_atoi64(const char* text) {
    // strtoll saturates where atoll would overflow into undefined behaviour.
    return text ? static_cast<std::int64_t>(std::strtoll(text, nullptr, 10)) : 0;
}

int LmCRT::_stricmp(const char* a, const char* b) { return ::strcasecmp(a ? a : "", b ? b : ""); }

}  // namespace Utility
}  // namespace Lumora
