/// @file
/// Name tables of enumerations: one table per enumeration, shared by the
/// libraries and the programs that use them.
#ifndef LMSPATIALREFERENCE_ENUMTABLE_H
#define LMSPATIALREFERENCE_ENUMTABLE_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/lmstring.h>

#include <cstdint>
#include <limits>
#include <sstream>
#include <utility>
#include <vector>

namespace Lumora {
namespace Utility {

/// The single (name, value) table of an enumeration T, in insertion order.
template <class T>
class LM_API LmEnumType {
public:
    /// The table of T, one per process: the libraries and the program share it.
    /// A library that owns the names of an enumeration declares an explicit
    /// specialisation of Instance beside the enumeration, exported, and fills
    /// the table inside it on first use (as units.h does for LmUnits), so that
    /// a program that uses nothing else of the library still finds it filled.
    static LmEnumType& Instance() {
        static LmEnumType m_Instance;
        return m_Instance;
    }

    /// Appends a pair; earlier pairs win on a repeated name.
    void Push(const LmString& name, T value) { m_pairs.emplace_back(name, value); }

    /// Names match ignoring case, the first match winning; otherwise the text
    /// is read as a decimal integer and matched against the values.
    T FromString(const char* text, T defaultValue) const {
        if (m_pairs.empty()) return defaultValue;
        for (const auto& pair : m_pairs)
            if (LmCRT::_stricmp(pair.first.c_str(), text) == 0) return pair.second;

        std::int64_t number = 0;
        std::istringstream stream(text ? text : "");
        stream >> number;
        if (number == std::numeric_limits<std::int64_t>::min()) return defaultValue;
        for (const auto& pair : m_pairs)
            if (static_cast<std::int64_t>(pair.second) == number) return pair.second;
        return defaultValue;
    }

private:
    LmEnumType() = default;
    std::vector<std::pair<LmString, T>> m_pairs;
};

/// Reads an enumeration value from its name or number through its table.
class LM_API LmEnumParser {
public:
    /// LmEnumType<T>::Instance().FromString(text, defaultValue).
    template <class T>
    static T ParserFromString(const char* text, T defaultValue) {
        return LmEnumType<T>::Instance().FromString(text, defaultValue);
    }
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_ENUMTABLE_H
