// EPSG.index, the fingerprints of the EPSG codes (epsgfingerprint.h), read
// once beside EPSG.txt and then only read, from any thread.
#ifndef LMSPATIALREFERENCE_INTERNAL_EPSGINDEX_H
#define LMSPATIALREFERENCE_INTERNAL_EPSGINDEX_H

#include "internal/epsgfingerprint.h"

#include <istream>
#include <unordered_map>
#include <vector>

namespace Lumora {
namespace Kernel {

class LmEPSGIndex {
public:
    // The process's index, read on first use; empty when the file is missing
    // or malformed, and the searches then do without it.
    static const LmEPSGIndex& Instance();

    // A count line, then that many fingerprint lines. False, and empty, on any
    // malformed line: a half-read index would silently narrow the searches.
    bool Read(std::istream& stream);

    const std::vector<LmEPSGFingerprint>& Entries() const { return m_entries; }
    // What a search looks at first, entry by entry, kept apart from the
    // fingerprints so that a walk over every code reads a few hundred
    // kilobytes rather than every fingerprint: the whole index does not stay
    // in a core's cache, and two searching threads would share the memory
    // bandwidth it takes.
    struct Key {
        double semiMajor;
        char kind;
        bool alias;
    };
    const std::vector<Key>& Keys() const { return m_keys; }
    // The fingerprint of a code's own definition; null when the index has none.
    const LmEPSGFingerprint* Find(int code) const;
    // The fingerprint computed from this very text of a code (its definition
    // or an alias entry), by the text's hash; null when none was.
    const LmEPSGFingerprint* Find(int code, std::uint64_t textHash) const;

private:
    std::vector<LmEPSGFingerprint> m_entries;
    std::vector<Key> m_keys;
    std::unordered_multimap<int, std::size_t> m_byCode;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_INTERNAL_EPSGINDEX_H
