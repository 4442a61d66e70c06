// Reads untrusted bytes as the EPSG table, as LoadEPSG does, and searches what
// was read for a geographic and a projected reference, as EPSG() does.
#include "internal/linereader.h"
#include "spatialreference/epsgmatcher.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

using namespace Lumora::Kernel;

namespace {

// Building an entry runs GDAL's WKT reader, which has a fuzzer of its own;
// a few entries are enough to reach every step of the search.
constexpr std::size_t kMostSearched = 8;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static LmSpatialReference* const probes[] = {new LmSpatialReference(eWGS84),
                                                 new LmSpatialReference(eWebMercator)};
    std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
    std::map<int, LmString> table;
    if (!ReadEPSGTable(stream, table)) return 0;
    LmEPSGMatcher matcher;
    for (const auto& record : table) {
        if (matcher.Size() == kMostSearched) break;
        matcher.Add(record.first, "", record.second.c_str());
    }
    for (const LmSpatialReference* probe : probes) matcher.First(probe);
    return 0;
}
