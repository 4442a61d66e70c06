/// @file
/// Text encodings.
#ifndef LMSPATIALREFERENCE_ENCODING_H
#define LMSPATIALREFERENCE_ENCODING_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/lmstring.h>

namespace Lumora {
namespace Utility {

/// Conversion of narrow text to UTF-8.
class LM_API LmEncoding {
public:
    /// Text already in UTF-8 is returned unchanged; other text is converted
    /// from the locale's narrow encoding (Latin-1 when that is unknown).
    static LmString ToUtf8(const char* text);
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_ENCODING_H
