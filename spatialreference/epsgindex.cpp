#include "internal/epsgindex.h"

#include <lmspatialreference/epsg.h>

#include "internal/linereader.h"

#include <fstream>

namespace Lumora {
namespace Kernel {

const LmEPSGIndex& LmEPSGIndex::Instance() {
    static const LmEPSGIndex index = [] {
        LmEPSGIndex read;
        std::ifstream stream(MakeEPSGIndexFile().c_str());
        if (stream) read.Read(stream);
        return read;
    }();
    return index;
}

bool LmEPSGIndex::Read(std::istream& stream) {
    m_entries.clear();
    m_keys.clear();
    m_byCode.clear();
    const std::int64_t count = ReadCountLine(stream);
    if (count == 0) return false;
    m_entries.reserve(static_cast<std::size_t>(count));
    for (std::int64_t i = 0; i < count; ++i) {
        LmEPSGFingerprint print;
        if (!ParseFingerprint(ReadDataLine(stream), print) || (!print.alias && Find(print.code) != nullptr)) {
            m_entries.clear();
            m_keys.clear();
            m_byCode.clear();
            return false;
        }
        m_byCode.emplace(print.code, m_entries.size());
        m_keys.push_back({print.semiMajor, print.kind, print.alias});
        m_entries.push_back(std::move(print));
    }
    return true;
}

const LmEPSGFingerprint* LmEPSGIndex::Find(int code) const {
    const auto range = m_byCode.equal_range(code);
    for (auto entry = range.first; entry != range.second; ++entry)
        if (!m_entries[entry->second].alias) return &m_entries[entry->second];
    return nullptr;
}

const LmEPSGFingerprint* LmEPSGIndex::Find(int code, std::uint64_t textHash) const {
    const auto range = m_byCode.equal_range(code);
    for (auto entry = range.first; entry != range.second; ++entry)
        if (m_entries[entry->second].textHash == textHash) return &m_entries[entry->second];
    return nullptr;
}

}  // namespace Kernel
}  // namespace Lumora
