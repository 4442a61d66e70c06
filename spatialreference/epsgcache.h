// The two process-wide EPSG tables. Lock order: g_EPSGCache before
// g_RecentCache, never the other way round.
#ifndef LMSPATIALREFERENCE_EPSGCACHE_H
#define LMSPATIALREFERENCE_EPSGCACHE_H

#include <lmspatialreference/epsg.h>

#include <map>
#include <vector>

namespace Lumora {
namespace Kernel {

using LmEPSGTable = Utility::LmSafeObject<std::map<int, LmString>, Utility::LmRWLock>;
using LmRecentEPSGTable =
    Utility::LmSafeObject<std::map<int, std::vector<LmSmarterPtr<LmSpatialReference>>>, Utility::LmRWLock>;

// Code to WKT text, as read from EPSG.txt; filled once, then only read.
extern LmEPSGTable g_EPSGCache;
// Code to the references identified as that code so far.
extern LmRecentEPSGTable g_RecentCache;

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_EPSGCACHE_H
