/// @file
/// Reader/writer locks, their scoped guard, and containers joined with a lock.
#ifndef LMSPATIALREFERENCE_LOCKS_H
#define LMSPATIALREFERENCE_LOCKS_H

#include <lmspatialreference/export.h>

#include <shared_mutex>

namespace Lumora {
namespace Utility {

/// A reader/writer lock: many readers or one writer. Not recursive.
class LM_API LmRWLock {
public:
    LmRWLock() = default;
    LmRWLock(const LmRWLock&) = delete;
    LmRWLock& operator=(const LmRWLock&) = delete;
    ~LmRWLock() = default;

    // Each Lock or ReadLock is paired with its unlock by the same thread.

    /// Takes the lock exclusively (writer), waiting for every holder to leave.
    void Lock() { m_mutex.lock(); }
    /// Releases an exclusive hold taken with Lock.
    void Unlock() { m_mutex.unlock(); }
    /// Takes the lock shared (reader), waiting while a writer holds it.
    void ReadLock() { m_mutex.lock_shared(); }
    /// Releases a shared hold taken with ReadLock.
    void ReadUnlock() { m_mutex.unlock_shared(); }

private:
    std::shared_mutex m_mutex;
};

/// Scoped guard: shared when read is true (lookups), exclusive otherwise.
class LM_API LmAutoLocker {
public:
    /// Takes the lock at once; the destructor releases it.
    LmAutoLocker(LmRWLock& lock, bool read) : m_lock(lock), m_read(read) {
        if (m_read) m_lock.ReadLock();
        else m_lock.Lock();
    }
    ~LmAutoLocker() {
        if (m_read) m_lock.ReadUnlock();
        else m_lock.Unlock();
    }
    LmAutoLocker(const LmAutoLocker&) = delete;
    LmAutoLocker& operator=(const LmAutoLocker&) = delete;

private:
    LmRWLock& m_lock;
    bool m_read;
};

/// A container joined with its lock: the object is used directly as both.
template <class C, class L = LmRWLock>
class LM_API LmSafeObject : public C, public L {
public:
    LmSafeObject() = default;
    ~LmSafeObject() = default;
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_LOCKS_H
