/// @file
/// The candidates of LmSpatialReference::FindEPSG.
#ifndef LMSPATIALREFERENCE_EPSGMATCH_H
#define LMSPATIALREFERENCE_EPSGMATCH_H

#include <lmspatialreference/utility.h>

namespace Lumora {
namespace Kernel {

/// One candidate of LmSpatialReference::FindEPSG: an EPSG code whose numbers
/// agree with a reference, and how far its names do too.
struct LmEPSGMatch {
    /// The EPSG code.
    int Code = 0;
    /// 0..100: 100 when the numbers and the names (datum and CS) agree, or the
    /// text carries this code as its EPSG authority; 85 when the datum's name
    /// agrees but not the CS's, 75 the other way round; 50 for the numbers
    /// alone.
    int Confidence = 0;
    /// The code's name in the EPSG dataset, as GDAL writes it.
    Utility::LmString Name;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_EPSGMATCH_H
