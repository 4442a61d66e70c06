// Writes EPSG.index, the fingerprints by which the library compares a
// reference with EPSG codes before it builds any of them.
#ifndef LMSPATIALREFERENCE_DATAGEN_EPSGINDEXWRITER_H
#define LMSPATIALREFERENCE_DATAGEN_EPSGINDEXWRITER_H

#include <string>
#include <utility>
#include <vector>

// table: the codes and texts of EPSG.txt; aliases: the "EPSG:<code>" entries
// of the alias category. Deprecated geographic and projected codes are
// indexed too, flagged, so that identification can name them last.
using Records = std::vector<std::pair<std::string, std::string>>;
bool WriteEPSGIndex(const std::string& path, const Records& table, const Records& aliases);

#endif  // LMSPATIALREFERENCE_DATAGEN_EPSGINDEXWRITER_H
