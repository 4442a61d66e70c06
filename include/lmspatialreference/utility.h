// The utility layer (liblmutility): reference counting, the intrusive smart
// pointer, strings, reader/writer locks, the process-wide configuration tree,
// file-system objects, string and C-runtime helpers, and small numeric helpers.
#ifndef LMSPATIALREFERENCE_UTILITY_H
#define LMSPATIALREFERENCE_UTILITY_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <shared_mutex>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Lumora {
namespace Utility {

// ---------------------------------------------------------------------------
// Reference counting

// Base of every reference-counted object. A new object has a count of 0 and
// belongs to nobody until its first AddRef; the last Release deletes it. The
// count is atomic because cached objects are handed to several threads.
class LmRefObject {
public:
    LmRefObject() : m_refCount(0) {}
    // A copy is a new object: it does not inherit the owners of the original.
    LmRefObject(const LmRefObject&) : m_refCount(0) {}
    LmRefObject& operator=(const LmRefObject&) { return *this; }

    virtual void OnFinalRelease();
    virtual ~LmRefObject();
    virtual long AddRef();
    virtual long Release();
    virtual long RefCount() const;
    virtual std::size_t HashCode() const;

private:
    std::atomic<long> m_refCount;
};

// Intrusive smart pointer over an LmRefObject-derived T.
template <class T>
class LmSmarterPtr {
public:
    LmSmarterPtr() : m_p(nullptr) {}
    // Accepts the literal 0 as "null", as raw pointers do.
    LmSmarterPtr(int) : m_p(nullptr) {}
    // Factories wrap a new object with addRef true, so the returned pointer is
    // its only owner; false takes over a reference the caller already holds.
    LmSmarterPtr(T* p, bool addRef = true) : m_p(p) {
        if (m_p && addRef) m_p->AddRef();
    }
    LmSmarterPtr(const LmSmarterPtr& other) : m_p(other.m_p) {
        if (m_p) m_p->AddRef();
    }
    ~LmSmarterPtr() {
        if (m_p) m_p->Release();
    }

    T* operator=(T* p) {
        if (m_p && m_p == p) return m_p;
        if (p) p->AddRef();
        Attach(p);
        return m_p;
    }
    LmSmarterPtr& operator=(const LmSmarterPtr& other) {
        *this = other.m_p;
        return *this;
    }

    void Attach(T* p) {
        T* old = m_p;
        m_p = p;
        if (old) old->Release();
    }

    bool operator!() const { return m_p == nullptr; }
    explicit operator bool() const { return m_p != nullptr; }
    T* operator->() const { return m_p; }
    operator T*() const { return m_p; }
    bool operator==(T* p) const { return m_p == p; }

private:
    T* m_p;
};

// ---------------------------------------------------------------------------
// Strings

// The string type of every interface: a standard string that also accepts a
// null C string (as an empty text), which C-style callers pass freely.
class LmString : public std::string {
public:
    LmString() = default;
    LmString(const LmString&) = default;
    LmString(const char* text) : std::string(text ? text : "") {}
    LmString(const std::string& text) : std::string(text) {}
    ~LmString() = default;

    LmString& operator=(const LmString&) = default;
    LmString& operator=(const char* text) {
        assign(text ? text : "");
        return *this;
    }
    LmString& operator=(const std::string& text) {
        assign(text);
        return *this;
    }
};

class LmStringHelp {
public:
    static bool IsNullOrEmpty(const char* text);
    // Every separator splits, so empty fields are kept: "a,,b" gives three
    // fields. A null or empty text gives one empty field.
    static std::vector<LmString> Split(const char* text, char separator);
    static bool StartWith(const char* text, const char* prefix, bool ignoreCase);
    static LmString ToString(const char* text);
    static LmString Trim(const char* text);
};

// C-runtime functions under their traditional names; every one accepts null.
class LmCRT {
public:
    static double _atof(const char* text);
    static std::int64_t _atoi64(const char* text);
    static int _stricmp(const char* a, const char* b);
};

class LmEncoding {
public:
    // Text already in UTF-8 is returned unchanged; other text is converted
    // from the locale's narrow encoding (Latin-1 when that is unknown).
    static LmString ToUtf8(const char* text);
};

// ---------------------------------------------------------------------------
// Locks

class LmRWLock {
public:
    LmRWLock() = default;
    LmRWLock(const LmRWLock&) = delete;
    LmRWLock& operator=(const LmRWLock&) = delete;
    ~LmRWLock() = default;

    void Lock() { m_mutex.lock(); }
    void Unlock() { m_mutex.unlock(); }
    void ReadLock() { m_mutex.lock_shared(); }
    void ReadUnlock() { m_mutex.unlock_shared(); }

private:
    std::shared_mutex m_mutex;
};

// Scoped guard: shared when read is true (lookups), exclusive otherwise.
class LmAutoLocker {
public:
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
class LmSafeObject : public C, public L {
public:
    LmSafeObject() = default;
    ~LmSafeObject() = default;
};

// ---------------------------------------------------------------------------
// Configuration

class LmConfigTree;

// A node of a configuration tree, passed by value. A missing node is an empty
// node, never an error. Names may be paths separated by '/', walked from the
// node, so root["Kernel/SpatialReference/EPSG"] is
// root["Kernel"]["SpatialReference"]["EPSG"].
class LmConfig {
public:
    LmConfig(std::shared_ptr<LmConfigTree> tree, std::vector<std::string> path);
    ~LmConfig();

    LmConfig operator[](const char* name) const;
    // The node's text, or defaultValue when the node is missing or empty.
    LmString StringValue(const char* defaultValue) const;
    // true/yes/on/1 and false/no/off/0 (any case, surrounding blanks allowed);
    // defaultValue when the node is missing, empty or holds anything else.
    bool BoolValue(bool defaultValue) const;

private:
    std::shared_ptr<LmConfigTree> m_tree;
    std::vector<std::string> m_path;
};

// The process-wide configuration. On first use it loads the XML file named by
// the environment variable LUMORA_CONFIG, if set. In the file, nested elements
// are the keys and element text the values:
//   <Configuration><Kernel><SpatialReference><EPSG>/data/EPSG.txt</EPSG>...
// The name of the document's root element does not matter.
class LmGlobeConfig {
public:
    static LmConfig Instance();
    // Merges the keys of an XML file into the tree (its values win). False
    // when the file cannot be read or is not well-formed XML.
    static bool Load(const char* path);
    // Sets the value at a '/'-separated path, creating the nodes on the way.
    static void Set(const char* path, const char* value);
    // Removes the node at a path with everything below it; an empty path
    // clears the whole tree.
    static void Clear(const char* path);
};

// ---------------------------------------------------------------------------
// Files and folders

class LmFileSystem {
public:
    static LmString Combine(const char* a, const char* b);
    static bool Exists(const char* path);
    static bool IsPathRooted(const char* path);
    // Full path of the shared library file that holds the utility layer.
    static LmString ModuleFileName();
    static LmString WorkingFolder();
};

class LmFile;

class LmDir {
public:
    explicit LmDir(const char* path);
    bool Exists() const;
    LmString FullPath() const;
    // Regular files of the folder whose names match a wildcard pattern such
    // as "*.txt", ignoring case, sorted by name. Subfolders are not searched.
    std::vector<LmFile> Files(const char* pattern) const;

private:
    LmString m_path;
};

class LmFile {
public:
    explicit LmFile(const char* path);
    bool Exists() const;
    LmString FullPath() const;
    LmString Path() const;
    // The file name; with its extension when withExtension is true.
    LmString Name(bool withExtension) const;
    LmDir Parent() const;

private:
    LmString m_path;
};

// ---------------------------------------------------------------------------
// Numbers

class LmMath {
public:
    static double Pi();
    static double ToRadian(double degrees);
    static double Log(double value);

    // a when a > b, else b; so Max(NaN, b) is b.
    template <class A, class B>
    static std::common_type_t<A, B> Max(A a, B b) {
        using R = std::common_type_t<A, B>;
        return static_cast<R>(a) > static_cast<R>(b) ? static_cast<R>(a) : static_cast<R>(b);
    }
    // The smaller of two values of any arithmetic types, as a double.
    template <class A, class B>
    static double Min(A a, B b) {
        const double da = static_cast<double>(a);
        const double db = static_cast<double>(b);
        return da < db ? da : db;
    }
};

// ---------------------------------------------------------------------------
// Device rectangle: four 32-bit integers in the order left, right, top, bottom.

struct LmRect {
    std::int32_t left = 0;
    std::int32_t right = 0;
    std::int32_t top = 0;
    std::int32_t bottom = 0;
};

// ---------------------------------------------------------------------------
// Enumeration name tables

// The single (name, value) table of an enumeration T, in insertion order.
template <class T>
class LmEnumType {
public:
    static LmEnumType& Instance() {
        static LmEnumType m_Instance;
        return m_Instance;
    }

    void Push(const LmString& name, T value) { m_pairs.emplace_back(name, value); }

    // Names match ignoring case, the first match winning; otherwise the text
    // is read as a decimal integer and matched against the values.
    T FromString(const char* text, T defaultValue) const {
        if (m_pairs.empty()) return defaultValue;
        for (const auto& pair : m_pairs)
            if (LmCRT::_stricmp(pair.first.c_str(), text) == 0) return pair.second;

        std::int64_t number = 0;
        std::istringstream stream(text ? text : "");
        stream >> number;
        if (number == std::numeric_limits<std::int64_t>::min()) return defaultValue;
        for (const auto& pair : m_pairs)
            if (static_cast<std::int64_t>(pair.second) == number) return pair.second;
        return defaultValue;
    }

private:
    LmEnumType() = default;
    std::vector<std::pair<LmString, T>> m_pairs;
};

class LmEnumParser {
public:
    template <class T>
    static T ParserFromString(const char* text, T defaultValue) {
        return LmEnumType<T>::Instance().FromString(text, defaultValue);
    }
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_UTILITY_H
