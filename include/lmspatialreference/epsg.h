/// @file
/// The EPSG code table: the library's own list of EPSG codes and their
/// well-known texts, read once from EPSG.txt, and the process-wide search that
/// LmSpatialReference::EPSG() falls back on when OGR knows no authority code.
///
/// EPSG.txt holds a count line N (1 to 99999), then N pairs of lines: a code
/// (optionally prefixed "EPSG:" in any case) and its one-line WKT. A later
/// record of the same code replaces an earlier one, and a code line that is not
/// a positive number ends the table.
///
/// The tables are locked, so the functions may be called from several threads
/// at once, but the references handed to them are not: OGR fills parts of a
/// reference lazily, even while it is only compared. A reference must not be
/// passed while another thread uses it, and one handed to g_CacheRecentEPSG is
/// compared by every later search, from any thread, so its caller must stop
/// using it while others may search.
#ifndef LMSPATIALREFERENCE_EPSG_H
#define LMSPATIALREFERENCE_EPSG_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/spatialreference.h>

namespace Lumora {
namespace Kernel {

/// The full path of EPSG.txt: the key "Kernel/SpatialReference/EPSG" when set
/// (rooted, or relative to the library's folder), else EPSG.txt in the
/// catalogue's data folder, else "../data/coordinatesystem/EPSG.txt" beside the
/// library when it exists, else "../data/Coordinate System/EPSG.txt" there.
LM_API LmString MakeEPSGFile();

/// The full path of EPSG.index, the fingerprints of the EPSG codes that the
/// data generator writes beside EPSG.txt. Identification is exact without it,
/// only slower, and FindEPSG needs it.
LM_API LmString MakeEPSGIndexFile();

/// Reads EPSG.txt on the first successful call and keeps it for the life of the
/// process. False when the file is missing or its count line is not in
/// 1..99999; a later call then tries again.
LM_API bool LoadEPSG();

/// The code under which a reference the same as this one (IsSame) was recorded,
/// smallest code first; 0 when none.
LM_API int g_SearchRecentEPSG(const LmSpatialReference* reference);
/// Records a reference under a code, so that later searches answer it at once.
/// The table holds a reference to it for the life of the process; a null
/// reference is ignored.
LM_API void g_CacheRecentEPSG(LmSpatialReference* reference, int code);
/// Records a new reference read from a WKT text under a code.
LM_API void g_CacheRecentEPSG(const char* wkt, int code);
/// The code named ("EPSG:<code>") by the first entry of the catalogue's
/// "EPSG_Alias" category that is the same as the reference or has its
/// parameters (IsSame or IsSameParameter); 0 when none, or when that entry's
/// Name() (its name line, or its CS name when the line is empty) names no
/// code from 1 to 2147483647.
LM_API int g_SearchAliasEPSG(const LmSpatialReference* reference);
/// The EPSG code of a reference: the recent references, then the alias
/// category, then the smallest code of the table whose text is the same or has
/// the same parameters. 0 when none matches or the table cannot be loaded.
LM_API int g_SearchEPSG(const LmSpatialReference* reference);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_EPSG_H
