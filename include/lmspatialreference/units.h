/// @file
/// The units of measure a spatial reference reports.
#ifndef LMSPATIALREFERENCE_UNITS_H
#define LMSPATIALREFERENCE_UNITS_H

#include <lmspatialreference/enumtable.h>
#include <lmspatialreference/export.h>

namespace Lumora {
namespace Kernel {

/// Units of measure, by their EPSG unit-of-measure codes.
enum LmUnits : int {
    eMeter = 9001,
    eDegree = 9102,
    eKM = 9205,
    eCM = 9204,
    eMM = 9202,
    eInch = 9203,
    eSexagesimalDMS = 9110,
    eUnity = 9201,
};

}  // namespace Kernel

namespace Utility {

/// The unit name table: the names that appear in definitions ("Meter",
/// "Degree", "Kilometer", "Centimeter", "Millimeter", "Inch", "Inch_US_Surveyor",
/// "Inch_International") and the enumerator names ("eMeter" ... "eInch"). It is
/// filled on its first use, so it is never seen empty.
template <>
LM_API LmEnumType<Kernel::LmUnits>& LmEnumType<Kernel::LmUnits>::Instance();

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_UNITS_H
