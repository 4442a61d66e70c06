// Line reading shared by the catalogue's category files and the EPSG table.
#ifndef LMSPATIALREFERENCE_LINEREADER_H
#define LMSPATIALREFERENCE_LINEREADER_H

#include <lmspatialreference/utility.h>

#include <fstream>
#include <istream>
#include <string>
#include <utility>
#include <vector>

namespace Lumora {
namespace Kernel {

// The longest line the data files may hold; the rest of a longer line is
// dropped so that one bad record cannot shift the pairs after it.
constexpr std::size_t kLongestDataLine = 10239;

// The next line without its LF, cut to kLongestDataLine characters; an empty
// text at the end of the stream.
inline Utility::LmString ReadDataLine(std::istream& stream) {
    std::string line;
    if (!std::getline(stream, line)) return Utility::LmString();
    if (line.size() > kLongestDataLine) line.resize(kLongestDataLine);
    return Utility::LmString(line);
}

// The entries of a category file: its count line, when in 1..99999, then as
// many pairs of lines (name, definition), missing lines reading as empty.
// Nothing for an unreadable file or any other count.
inline std::vector<std::pair<Utility::LmString, Utility::LmString>> ReadCategoryFile(const char* path) {
    std::vector<std::pair<Utility::LmString, Utility::LmString>> entries;
    std::ifstream stream(path == nullptr ? "" : path);
    if (!stream) return entries;
    const std::int64_t count = Utility::LmCRT::_atoi64(ReadDataLine(stream).c_str());
    if (count < 1 || count > 99999) return entries;
    entries.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
        Utility::LmString name = ReadDataLine(stream);
        Utility::LmString text = ReadDataLine(stream);
        entries.emplace_back(std::move(name), std::move(text));
    }
    return entries;
}

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_LINEREADER_H
