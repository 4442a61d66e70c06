#include <lmspatialreference/utility.h>

#include <cstring>
#include <iconv.h>
#include <langinfo.h>

namespace Lumora {
namespace Utility {

namespace {

// Strict UTF-8 check: rejects overlong forms, surrogates and values past U+10FFFF.
bool _IsUtf8(const unsigned char* s) {
    while (*s) {
        if (*s < 0x80) { ++s; continue; }
        int length;
        unsigned int code;
        if ((*s & 0xE0) == 0xC0) { length = 2; code = *s & 0x1F; }
        else if ((*s & 0xF0) == 0xE0) { length = 3; code = *s & 0x0F; }
        else if ((*s & 0xF8) == 0xF0) { length = 4; code = *s & 0x07; }
        else return false;
        for (int i = 1; i < length; ++i) {
            if ((s[i] & 0xC0) != 0x80) return false;
            code = (code << 6) | (s[i] & 0x3F);
        }
        static const unsigned int smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (code < smallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return false;
        s += length;
    }
    return true;
}

LmString _Latin1ToUtf8(const unsigned char* s) {
    std::string out;
    for (; *s; ++s) {
        if (*s < 0x80) {
            out += static_cast<char>(*s);
        } else {
            out += static_cast<char>(0xC0 | (*s >> 6));
            out += static_cast<char>(0x80 | (*s & 0x3F));
        }
    }
    return LmString(out);
}

bool _Iconv(const char* from, const char* text, LmString& result) {
    iconv_t cd = iconv_open("UTF-8", from);
    if (cd == reinterpret_cast<iconv_t>(-1)) return false;
    std::size_t inLeft = std::strlen(text);
    std::string out(inLeft * 4 + 4, '\0');
    char* in = const_cast<char*>(text);
    char* outPtr = &out[0];
    std::size_t outLeft = out.size();
    const bool ok = iconv(cd, &in, &inLeft, &outPtr, &outLeft) != static_cast<std::size_t>(-1);
    iconv_close(cd);
    if (ok) result = LmString(out.substr(0, out.size() - outLeft));
    return ok;
}

}  // namespace

LmString LmEncoding::ToUtf8(const char* text) {
    if (text == nullptr) return LmString();
    const auto* bytes = reinterpret_cast<const unsigned char*>(text);
    if (_IsUtf8(bytes)) return LmString(text);

    const char* codeset = nl_langinfo(CODESET);
    LmString converted;
    if (codeset && *codeset && _Iconv(codeset, text, converted)) return converted;
    return _Latin1ToUtf8(bytes);
}

}  // namespace Utility
}  // namespace Lumora
