// Identification of arbitrary texts, and the index reader it rests on. The
// first byte picks what the rest is: a WKT, PROJ.4 or XML text to identify
// with FindEPSG, or the lines of an EPSG.index file.
#include <lmspatialreference/spatialreference.h>

#include "internal/epsgindex.h"

#include <ogr_srs_api.h>

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

using namespace Lumora::Kernel;

// While GDAL reads a text, PROJ looks each of its names up in its database;
// under the sanitizers, with libFuzzer hooking every comparison SQLite makes,
// that costs some 12 ms an input, twenty times all the rest. What is tested
// here reads whatever object GDAL built, resolved names or not, so PROJ runs
// without its database unless LM_FUZZ_PROJ_DATABASE is set: run that way
// now and then for the inputs that only resolved names lead to.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    if (std::getenv("LM_FUZZ_PROJ_DATABASE") == nullptr) {
        static const char* const nowhere[] = {"/nonexistent/proj", nullptr};
        OSRSetPROJSearchPaths(nowhere);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    switch (data[0] % 4) {
        case 0:
        case 1: {
            const LmSpatialReference reference(text.c_str(), data[0] % 4 == 0 ? eWKT : eProj4);
            std::vector<LmEPSGMatch> candidates;
            reference.FindEPSG(&candidates);
            reference.FindEPSG();
            break;
        }
        case 2: {
            const LmSpatialReference reference(text.c_str(), eXML);
            reference.FindEPSG();
            break;
        }
        default: {
            std::istringstream stream(text);
            LmEPSGIndex index;
            if (index.Read(stream))
                for (const LmEPSGFingerprint& print : index.Entries()) index.Find(print.code);
            break;
        }
    }
    return 0;
}
