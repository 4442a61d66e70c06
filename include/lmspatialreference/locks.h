// Reader/writer locks, their scoped guard, and containers joined with a lock.
#ifndef LMSPATIALREFERENCE_LOCKS_H
#define LMSPATIALREFERENCE_LOCKS_H

#include <lmspatialreference/export.h>

#include <shared_mutex>

namespace Lumora {
namespace Utility {

// A reader/writer lock: many readers or one writer. Not recursive.
class LM_API LmRWLock {
public:
    LmRWLock() = default;
    LmRWLock(const LmRWLock&) = delete;
    LmRWLock& operator=(const LmRWLock&) = delete;
    ~LmRWLock() = default;

    // Exclusive (writer) and shared (reader) locking; each Lock or ReadLock
    // is paired with its Unlock by the same thread.
    void Lock() { m_mutex.lock(); }
    void Unlock() { m_mutex.unlock(); }
    void ReadLock() { m_mutex.lock_shared(); }
    void ReadUnlock() { m_mutex.unlock_shared(); }

private:
    std::shared_mutex m_mutex;
};

// Scoped guard: shared when read is true (lookups), exclusive otherwise.
class LM_API LmAutoLocker {
public:
    // Takes the lock at once; the destructor releases it.
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

// A container joined with its lock: the object is used directly as both.
template <class C, class L = LmRWLock>
class LM_API LmSafeObject : public C, public L {
public:
    LmSafeObject() = default;
    ~LmSafeObject() = default;
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_LOCKS_H
