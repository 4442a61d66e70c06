/// @file
/// Reference counting: the base of every shared object of the library and the
/// intrusive smart pointer that owns them.
#ifndef LMSPATIALREFERENCE_REFOBJECT_H
#define LMSPATIALREFERENCE_REFOBJECT_H

#include <lmspatialreference/export.h>

#include <atomic>
#include <cstddef>

namespace Lumora {
namespace Utility {

/// Base of every reference-counted object. A new object has a count of 0 and
/// belongs to nobody until its first AddRef; the last Release deletes it. The
/// count is atomic because cached objects are handed to several threads.
class LM_API LmRefObject {
public:
    /// A new object, with a count of 0.
    LmRefObject() : m_refCount(0) {}
    /// A copy is a new object: it does not inherit the owners of the original.
    LmRefObject(const LmRefObject&) : m_refCount(0) {}
    /// Assignment leaves the count alone: the owners belong to the object, not
    /// to its value.
    LmRefObject& operator=(const LmRefObject&) { return *this; }

    /// Called by the Release that drops the count to 0; deletes the object.
    virtual void OnFinalRelease();
    /// Destroyed only through the last Release (or by a caller that never
    /// handed it to an owner).
    virtual ~LmRefObject();
    /// Adds an owner; returns the new count.
    virtual long AddRef();
    /// Drops an owner and deletes the object when none is left; returns the
    /// new count (0 means the object is gone).
    virtual long Release();
    /// The current number of owners.
    virtual long RefCount() const;
    /// A hash of the object's identity (its address), not of its contents.
    virtual std::size_t HashCode() const;

private:
    std::atomic<long> m_refCount;
};

/// Intrusive smart pointer over an LmRefObject-derived T.
template <class T>
class LM_API LmSmarterPtr {
public:
    /// A null pointer.
    LmSmarterPtr() : m_p(nullptr) {}
    /// Accepts the literal 0 as "null", as raw pointers do.
    LmSmarterPtr(int) : m_p(nullptr) {}
    /// Factories wrap a new object with addRef true, so the returned pointer is
    /// its only owner; false takes over a reference the caller already holds.
    LmSmarterPtr(T* p, bool addRef = true) : m_p(p) {
        if (m_p && addRef) m_p->AddRef();
    }
    /// Shares other's object: one more owner.
    LmSmarterPtr(const LmSmarterPtr& other) : m_p(other.m_p) {
        if (m_p) m_p->AddRef();
    }
    /// Releases the object, which dies when this was its last owner.
    ~LmSmarterPtr() {
        if (m_p) m_p->Release();
    }

    /// Shares p: adds a reference to it and releases the old object; returns p.
    T* operator=(T* p) {
        if (m_p && m_p == p) return m_p;
        if (p) p->AddRef();
        Attach(p);
        return m_p;
    }
    /// Shares other's object, releasing the old one.
    LmSmarterPtr& operator=(const LmSmarterPtr& other) {
        *this = other.m_p;
        return *this;
    }

    /// Takes over p without adding a reference, releasing the old object.
    void Attach(T* p) {
        T* old = m_p;
        m_p = p;
        if (old) old->Release();
    }

    /// True when null.
    bool operator!() const { return m_p == nullptr; }
    /// True when not null.
    explicit operator bool() const { return m_p != nullptr; }
    /// The object, not null-checked.
    T* operator->() const { return m_p; }
    /// The raw pointer, still owned by this and the other owners: a caller
    /// that keeps it beyond this pointer's life adds its own reference.
    operator T*() const { return m_p; }
    /// True when this points at p (both null included).
    bool operator==(T* p) const { return m_p == p; }

private:
    T* m_p;
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_REFOBJECT_H
