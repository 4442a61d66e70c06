#include <lmspatialreference/spatialreference.h>

#include "internal/ogrsupport.h"

namespace Lumora {
namespace Kernel {

using Utility::LmEnumParser;
using Utility::LmEnumType;

namespace {

// Both the names that appear in definitions and the enumerator names; the
// three inch spellings deliberately share one code.
void _RegisterUnitNames(LmEnumType<LmUnits>& table) {
    table.Push("Meter", eMeter);
    table.Push("Degree", eDegree);
    table.Push("Kilometer", eKM);
    table.Push("Centimeter", eCM);
    table.Push("Millimeter", eMM);
    table.Push("Inch", eInch);
    table.Push("Inch_US_Surveyor", eInch);
    table.Push("Inch_International", eInch);
    table.Push("eMeter", eMeter);
    table.Push("eDegree", eDegree);
    table.Push("eKM", eKM);
    table.Push("eCM", eCM);
    table.Push("eMM", eMM);
    table.Push("eInch", eInch);
}

}  // namespace

// OGR's spellings "metre" and "US survey foot" have no entry and so answer
// eMeter by default rather than by match.
LmUnits LmSpatialReference::Units() const {
    LmQuietGdalErrors quiet;
    if (m_pSRS == nullptr) return static_cast<LmUnits>(0);
    LmString name = m_pSRS->GetAttrValue("UNIT", 0);
    if (name.empty()) name = IsGeographic() ? "Degree" : "Meter";
    return LmEnumParser::ParserFromString<LmUnits>(name.c_str(), eMeter);
}

}  // namespace Kernel

namespace Utility {

// Filled inside the first call rather than by a static initialiser, so the
// table does not depend on when, or whether, the library's initialisers ran
// before a program's first lookup. The local static makes the fill thread-safe.
template <>
LmEnumType<Kernel::LmUnits>& LmEnumType<Kernel::LmUnits>::Instance() {
    static LmEnumType table = [] {
        LmEnumType filled;
        Kernel::_RegisterUnitNames(filled);
        return filled;
    }();
    return table;
}

}  // namespace Utility
}  // namespace Lumora
