/// @file
/// Files and folders.
#ifndef LMSPATIALREFERENCE_FILESYSTEM_H
#define LMSPATIALREFERENCE_FILESYSTEM_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/lmstring.h>

#include <vector>

namespace Lumora {
namespace Utility {

/// Path helpers over '/'-separated paths; every one accepts null as empty.
class LM_API LmFileSystem {
public:
    /// a and b joined by exactly one '/'; either alone when the other is empty.
    static LmString Combine(const char* a, const char* b);
    /// True when a file or folder exists at path; false for null or empty.
    static bool Exists(const char* path);
    /// True when path starts with '/'.
    static bool IsPathRooted(const char* path);
    /// Full path of the shared library file that holds the utility layer, with
    /// symbolic links resolved. Empty when the system cannot tell.
    static LmString ModuleFileName();
    /// The current working folder; empty when it cannot be read.
    static LmString WorkingFolder();
};

class LmFile;

/// A folder, by path; nothing is touched until asked.
class LM_API LmDir {
public:
    /// Remembers the path; nothing is checked yet.
    explicit LmDir(const char* path);
    /// True when the path names an existing folder.
    bool Exists() const;
    /// The absolute, normalised path; the path as given when that fails.
    LmString FullPath() const;
    /// Regular files of the folder whose names match a wildcard pattern such
    /// as "*.txt", ignoring case, sorted by name. Subfolders are not searched.
    std::vector<LmFile> Files(const char* pattern) const;

private:
    LmString m_path;
};

/// A file, by path; nothing is touched until asked.
class LM_API LmFile {
public:
    /// Remembers the path; nothing is checked yet.
    explicit LmFile(const char* path);
    /// True when the path names an existing regular file.
    bool Exists() const;
    /// The absolute, normalised path; the path as given when that fails.
    LmString FullPath() const;
    /// The path as given.
    LmString Path() const;
    /// The file name; with its extension when withExtension is true.
    LmString Name(bool withExtension) const;
    /// The folder that holds the file.
    LmDir Parent() const;

private:
    LmString m_path;
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_FILESYSTEM_H
