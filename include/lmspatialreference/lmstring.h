/// @file
/// Strings: the text type of every interface, string helpers and the C-runtime
/// conversions under their traditional names.
#ifndef LMSPATIALREFERENCE_LMSTRING_H
#define LMSPATIALREFERENCE_LMSTRING_H

#include <lmspatialreference/export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Lumora {
namespace Utility {

/// The string type of every interface: a standard string that also accepts a
/// null C string (as an empty text), which C-style callers pass freely.
class LM_API LmString : public std::string {
public:
    ///@{
    /// Empty, a copy, a C string (null gives an empty text) or a standard
    /// string; the conversions are implicit, so either kind of text can be
    /// passed where an LmString is asked for.
    LmString() = default;
    LmString(const LmString&) = default;
    LmString(const char* text) : std::string(text ? text : "") {}
    LmString(const std::string& text) : std::string(text) {}
    ///@}
    ~LmString() = default;

    ///@{
    /// Assignment takes the same forms, a null C string again giving an empty text.
    LmString& operator=(const LmString&) = default;
    LmString& operator=(const char* text) {
        assign(text ? text : "");
        return *this;
    }
    LmString& operator=(const std::string& text) {
        assign(text);
        return *this;
    }
    ///@}
};

/// String helpers; every one accepts a null text.
class LM_API LmStringHelp {
public:
    /// True for a null or empty text.
    static bool IsNullOrEmpty(const char* text);
    /// Every separator splits, so empty fields are kept: "a,,b" gives three
    /// fields. A null or empty text gives one empty field.
    static std::vector<LmString> Split(const char* text, char separator);
    /// True when text begins with prefix (an empty prefix always matches);
    /// false when either is null.
    static bool StartWith(const char* text, const char* prefix, bool ignoreCase);
    /// The text as an LmString; null gives an empty text.
    static LmString ToString(const char* text);
    /// The text without leading and trailing white space; null gives an empty text.
    static LmString Trim(const char* text);
};

/// C-runtime functions under their traditional names; every one accepts null.
class LM_API LmCRT {
public:
    /// The leading decimal number of text; 0 for null or no number.
    static double _atof(const char* text);
    /// The leading decimal integer of text, saturated at the 64-bit limits; 0
    /// for null or no number.
    static std::int64_t _atoi64(const char* text);
    /// Compares ignoring ASCII case: 0 when equal, negative or positive as
    /// strcmp. Null compares as an empty text.
    static int _stricmp(const char* a, const char* b);
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_LMSTRING_H
