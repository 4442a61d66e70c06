#include <lmspatialreference/utility.h>

#include <functional>

namespace Lumora {
namespace Utility {

void LmRefObject::OnFinalRelease() { delete this; }

LmRefObject::~LmRefObject() = default;

long LmRefObject::AddRef() { return ++m_refCount; }

long LmRefObject::Release() {
    const long count = --m_refCount;
    if (count == 0) OnFinalRelease();
    return count;
}

long LmRefObject::RefCount() const { return m_refCount.load(); }

std::size_t LmRefObject::HashCode() const { return std::hash<const void*>()(this); }

}  // namespace Utility
}  // namespace Lumora
