// Where the library finds the files it reads: the catalogue's data folder,
// the EPSG table and its index, the alias category, and GDAL's own data.
// Every such path is decided in datapaths.cpp, which also implements the
// public MakeSpecialFolder (spatialreferencemanager.h), MakeEPSGFile and
// MakeEPSGIndexFile (epsg.h), so a change of layout or of configuration keys
// is made in one place.
#ifndef LMSPATIALREFERENCE_INTERNAL_DATAPATHS_H
#define LMSPATIALREFERENCE_INTERNAL_DATAPATHS_H

#include <lmspatialreference/utility.h>

namespace Lumora {
namespace Kernel {

// The catalogue's data folder as a full path: the folder given when it
// exists, else that of "Kernel/SpatialReference/DataFolder" (default
// "../data/coordinatesystem"), else that of the historical
// "Kernel/SpatialRererence/DataFolder" (default "../data/Coordinate System").
// Empty when none exists.
Utility::LmString LmDataFolder(const char* given);

// The file of the catalogue's "EPSG_Alias" category; empty when the data
// folder has none.
Utility::LmString LmAliasCategoryPath();

// Points GDAL at "Kernel/SpatialReference/GDAL_DATA" when the environment
// names no GDAL_DATA, before OGR's own EPSG support is first used.
void LmProvideGdalData();

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_INTERNAL_DATAPATHS_H
