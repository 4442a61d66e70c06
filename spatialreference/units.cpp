#include <lmspatialreference/spatialreference.h>

#include "spatialreference/ogrsupport.h"

namespace Lumora {
namespace Kernel {

using Utility::LmEnumParser;
using Utility::LmEnumType;

namespace {

// Both the names that appear in definitions and the enumerator names; the
// three inch spellings deliberately share one code.
bool _RegisterUnitNames() {
    LmEnumType<LmUnits>& table = LmEnumType<LmUnits>::Instance();
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
    return true;
}

// Filled once, when the library is loaded.
const bool _unitNamesRegistered = _RegisterUnitNames();

}  // namespace

// OGR's spellings "metre" and "US survey foot" have no entry and so answer
// eMeter by default rather than by match.
LmUnits LmSpatialReference::Units() const {
    if (m_pSRS == nullptr) return static_cast<LmUnits>(0);
    LmString name = m_pSRS->GetAttrValue("UNIT", 0);
    if (name.empty()) name = IsGeographic() ? "Degree" : "Meter";
    return LmEnumParser::ParserFromString<LmUnits>(name.c_str(), eMeter);
}

}  // namespace Kernel
}  // namespace Lumora
