// A list of coded definitions searched for the first entry that a reference
// is the same as or shares the parameters with (IsSame || IsSameParameter),
// in the order the entries were added. The answer is exactly that of building
// every entry and testing it in turn. But the comparisons whose outcome the
// fingerprints decide (from EPSG.index, or read once by building the entry)
// are made on the fingerprints, and an entry is only built for an OGR
// comparison that can pass. Each thread keeps the last few entries it built,
// so memory stays that of the fingerprints and a few OGR objects.
#ifndef LMSPATIALREFERENCE_EPSGMATCHER_H
#define LMSPATIALREFERENCE_EPSGMATCHER_H

#include <lmspatialreference/spatialreference.h>

#include "internal/epsgfingerprint.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>

namespace Lumora {
namespace Kernel {

class LmEPSGMatcher {
public:
    // What a search needs of the reference looked for, read once per search.
    struct Probe;

    struct Match {
        int index = -1;  // -1 when nothing matched
        int code = 0;
        LmString name;
        LmString text;
    };

    LmEPSGMatcher();
    LmEPSGMatcher(const LmEPSGMatcher&) = delete;
    LmEPSGMatcher& operator=(const LmEPSGMatcher&) = delete;

    // Entries are tried in the order they are added. The matcher keeps a copy
    // of the text, or with AddLasting refers to one that outlives it.
    void Add(int code, const char* name, const char* text);
    void AddLasting(int code, const char* name, const LmString& text);
    std::size_t Size() const { return m_entries.size(); }

    // The first entry that passes; safe to call from several threads at once.
    Match First(const LmSpatialReference* reference) const;
    Match First(const Probe& probe) const;

    // Whether the reference is the same (IsSame) as one entry, building the
    // entry only when its fingerprint leaves the answer open.
    bool IsSame(const Probe& probe, std::size_t index) const;

private:
    struct Entry;

    void _Add(int code, const char* name, const char* text);
    const Entry& _Described(const Entry& entry) const;
    bool _Passes(const Probe& probe, const Entry& entry) const;
    bool _IsSame(const Probe& probe, const Entry& entry) const;
    Match _Answer(std::size_t index) const;

    // Deques, so that entries (and their once flags) and texts never move.
    std::deque<Entry> m_entries;
    std::deque<LmString> m_texts;
    // Tells this matcher's entries from those of one that lived before it.
    std::uint64_t m_serial;
};

struct LmEPSGMatcher::Probe {
    explicit Probe(const LmSpatialReference* reference);

    const LmSpatialReference* reference = nullptr;
    bool null = true;
    bool geographic = false;
    // The values IsSameParameter compares: parameters with exactly two
    // children, as written, by lower-case name.
    LmNamedValues parameters;
    LmEPSGFingerprint print;
};

struct LmEPSGMatcher::Entry {
    std::size_t index = 0;
    int code = 0;
    LmString name;
    const char* text = nullptr;
    // Read from the text before anything is built: 'G' GEOGCS, 'P' PROJCS, 0 other.
    char kind = 0;
    bool hasEllipsoid = false;
    double semiMajor = 0.0;
    double inverseFlattening = 0.0;
    // The fingerprint: the index's when it was computed from this very text
    // (indexed, set before any search sees the entry, so that those need no
    // once flag), else read once by building the entry.
    bool indexed = false;
    mutable std::once_flag describeOnce;
    mutable bool buildable = false;
    mutable const LmEPSGFingerprint* print = nullptr;
    mutable std::unique_ptr<LmEPSGFingerprint> ownPrint;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_EPSGMATCHER_H
