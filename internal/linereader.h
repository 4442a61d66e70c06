// Line reading shared by the catalogue's category files and the EPSG table.
#ifndef LMSPATIALREFERENCE_INTERNAL_LINEREADER_H
#define LMSPATIALREFERENCE_INTERNAL_LINEREADER_H

#include <lmspatialreference/utility.h>

#include <fstream>
#include <istream>
#include <map>
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

// The count line that opens a category file or the EPSG table: its number
// when in 1..99999, else 0.
inline std::int64_t ReadCountLine(std::istream& stream) {
    const std::int64_t count = Utility::LmCRT::_atoi64(ReadDataLine(stream).c_str());
    return count >= 1 && count <= 99999 ? count : 0;
}

// The number of a code line, with or without its "EPSG:" prefix in any case.
inline std::int64_t CodeOfLine(const Utility::LmString& line) {
    const char* digits = line.c_str();
    if (Utility::LmStringHelp::StartWith(digits, "EPSG:", true)) digits += 5;
    return Utility::LmCRT::_atoi64(digits);
}

// The entries of a category file: its count line, when in 1..99999, then as
// many pairs of lines (name, definition), missing lines reading as empty.
// Nothing for an unreadable file or any other count.
inline std::vector<std::pair<Utility::LmString, Utility::LmString>> ReadCategoryFile(const char* path) {
    std::vector<std::pair<Utility::LmString, Utility::LmString>> entries;
    std::ifstream stream(path == nullptr ? "" : path);
    if (!stream) return entries;
    const std::int64_t count = ReadCountLine(stream);
    entries.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
        Utility::LmString name = ReadDataLine(stream);
        Utility::LmString text = ReadDataLine(stream);
        entries.emplace_back(std::move(name), std::move(text));
    }
    return entries;
}

// The records of an EPSG table (see epsg.h for its format) added to table.
// False, with nothing added, when the count line is not in 1..99999.
inline bool ReadEPSGTable(std::istream& stream, std::map<int, Utility::LmString>& table) {
    std::int64_t count = ReadCountLine(stream);
    if (count == 0) return false;
    for (; count >= 1; --count) {
        const std::int64_t code = CodeOfLine(ReadDataLine(stream));
        if (code <= 0 || code > INT32_MAX) break;
        table[static_cast<int>(code)] = ReadDataLine(stream);
    }
    return true;
}

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_INTERNAL_LINEREADER_H
