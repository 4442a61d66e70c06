// The legacy parameter text comes from files of unknown origin: the reader
// must survive any bytes, and the GDAL reference it builds from whatever
// numbers it read must be buildable and destroyable without faults.
#include <lmspatialreference/legacyparameters.h>

#include <ogr_spatialref.h>

#include <cstdint>
#include <string>

using namespace Lumora::Kernel;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The reader takes a C string, so an embedded zero ends the text as it
    // would for any caller.
    const std::string text(reinterpret_cast<const char*>(data), size);
    tag_Projection_Param record;
    if (!record.FromString(text.c_str())) return 0;
    OGRSpatialReference* srs = record.ToGdal();
    if (srs == nullptr) __builtin_trap();
    srs->IsProjected();
    OGRSpatialReference::DestroySpatialReference(srs);
    return 0;
}
