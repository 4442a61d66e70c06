// The two process-wide EPSG tables. Lock order: g_EPSGCache before
// g_RecentCache, never the other way round.
#ifndef LMSPATIALREFERENCE_EPSGCACHE_H
#define LMSPATIALREFERENCE_EPSGCACHE_H

#include <lmspatialreference/epsg.h>

#include <map>
#include <memory>
#include <vector>

namespace Lumora {
namespace Kernel {

class LmEPSGMatcher;

// A reference identified as a code. The searches record the definition that
// matched by its place in the table or the alias category, which hold its text
// anyway; it is built again only when a later search has to compare it, so a
// record costs a few bytes rather than an OGR object. A reference a caller
// records is kept as it is.
struct LmRecentEPSG {
    std::shared_ptr<const LmEPSGMatcher> list;
    std::size_t index = 0;
    LmSmarterPtr<LmSpatialReference> reference;
};

using LmEPSGTable = Utility::LmSafeObject<std::map<int, LmString>, Utility::LmRWLock>;
using LmRecentEPSGTable = Utility::LmSafeObject<std::map<int, std::vector<LmRecentEPSG>>, Utility::LmRWLock>;

// Code to WKT text, as read from EPSG.txt; filled once, then only read.
extern LmEPSGTable g_EPSGCache;
// Code to the references identified as that code so far.
extern LmRecentEPSGTable g_RecentCache;

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_EPSGCACHE_H
