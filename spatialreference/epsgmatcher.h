// A list of coded definitions searched for the first entry that a reference
// is the same as or shares the parameters with (IsSame || IsSameParameter),
// in the order the entries were added. The answer is exactly that of building
// every entry and testing it in turn; the entries are only built once, and
// those that cannot pass either test, by kind and ellipsoid and by a few
// values read ahead of the OGR comparisons, are skipped.
#ifndef LMSPATIALREFERENCE_EPSGMATCHER_H
#define LMSPATIALREFERENCE_EPSGMATCHER_H

#include <lmspatialreference/spatialreference.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

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

    // The first entry that passes; safe to call from several threads (calls
    // are serialised, since the built OGR objects are shared).
    Match First(const LmSpatialReference* reference);

private:
    struct Entry;
    struct Probe;

    LmSpatialReference* _Built(Entry& entry);
    bool _Passes(const Probe& probe, Entry& entry);
    Match _Answer(std::size_t index) const;

    std::mutex m_mutex;
    std::vector<Entry> m_entries;
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
    // Filled when the entry is built.
    bool built = false;
    LmSmarterPtr<LmSpatialReference> reference;
    std::string projection;  // lower case
    std::string rootName;    // lower case
    bool vertical = false;   // has a VERT_DATUM
    double falseEasting = 0.0;
    double falseNorthing = 0.0;
    std::vector<std::pair<std::string, double>> parameters;  // lower-case name, first value
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_EPSGMATCHER_H
