// A list of coded definitions searched for the first entry that a reference
// is the same as or shares the parameters with (IsSame || IsSameParameter),
// in the order the entries were added. The answer is exactly that of building
// every entry and testing it in turn. But an entry is only built for the OGR
// comparison itself, when its fingerprint (from EPSG.index, or read once by
// building it) shows that the comparison can pass; built entries are not
// kept, so memory stays that of the fingerprints.
#ifndef LMSPATIALREFERENCE_EPSGMATCHER_H
#define LMSPATIALREFERENCE_EPSGMATCHER_H

#include <lmspatialreference/spatialreference.h>

#include "internal/epsgfingerprint.h"

#include <deque>
#include <mutex>
#include <string>

namespace Lumora {
namespace Kernel {

class LmEPSGMatcher {
public:
    struct Match {
        int index = -1;  // -1 when nothing matched
        int code = 0;
        LmString name;
        LmString text;
    };

    LmEPSGMatcher() = default;
    LmEPSGMatcher(const LmEPSGMatcher&) = delete;
    LmEPSGMatcher& operator=(const LmEPSGMatcher&) = delete;

    // Entries are tried in the order they are added.
    void Add(int code, const char* name, const char* text);
    std::size_t Size() const { return m_entries.size(); }

    // The first entry that passes; safe to call from several threads at once.
    Match First(const LmSpatialReference* reference) const;

private:
    struct Entry;
    struct Probe;

    const Entry& _Described(const Entry& entry) const;
    bool _Passes(const Probe& probe, const Entry& entry) const;
    Match _Answer(std::size_t index) const;

    // A deque, so that entries (and their once flags) never move.
    std::deque<Entry> m_entries;
};

struct LmEPSGMatcher::Entry {
    int code = 0;
    LmString name;
    LmString text;
    // Read from the text before anything is built: 'G' GEOGCS, 'P' PROJCS, 0 other.
    char kind = 0;
    bool hasEllipsoid = false;
    double semiMajor = 0.0;
    double inverseFlattening = 0.0;
    // The fingerprint, taken from the index when it was computed from this
    // very text, else read once by building the entry.
    mutable std::once_flag describeOnce;
    mutable bool buildable = false;
    mutable LmEPSGFingerprint print;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_EPSGMATCHER_H
