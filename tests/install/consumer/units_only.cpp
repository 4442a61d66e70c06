// A program that uses the unit name table and nothing else of the library: the
// table must be filled on its first use, not by the library's initialisers.
#include <lmspatialreference/units.h>

#include <cstdio>

using namespace Lumora::Kernel;
using Lumora::Utility::LmEnumParser;

int main() {
    const bool ok = LmEnumParser::ParserFromString<LmUnits>("Kilometer", eMeter) == eKM &&
                    LmEnumParser::ParserFromString<LmUnits>("inch_us_surveyor", eMeter) == eInch &&
                    LmEnumParser::ParserFromString<LmUnits>("9102", eMeter) == eDegree;
    std::printf("units-only consumer: %s\n", ok ? "ok" : "FAILED");
    return ok ? 0 : 1;
}
