#include <lmspatialreference/utility.h>

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <fnmatch.h>
#include <system_error>

namespace Lumora {
namespace Utility {

namespace fs = std::filesystem;

namespace {

LmString _Absolute(const LmString& path) {
    std::error_code error;
    const fs::path full = fs::absolute(fs::path(path.c_str()), error);
    return error ? path : LmString(full.lexically_normal().string());
}

}  // namespace

LmString LmFileSystem::Combine(const char* a, const char* b) {
    const LmString head(a), tail(b);
    if (head.empty()) return tail;
    if (tail.empty()) return head;
    const bool headEnds = head.back() == '/';
    const bool tailStarts = tail.front() == '/';
    if (headEnds && tailStarts) return LmString(head + tail.substr(1));
    if (headEnds || tailStarts) return LmString(head + tail);
    return LmString(head + "/" + tail);
}

bool LmFileSystem::Exists(const char* path) {
    if (LmStringHelp::IsNullOrEmpty(path)) return false;
    std::error_code error;
    return fs::exists(fs::path(path), error);
}

bool LmFileSystem::IsPathRooted(const char* path) { return path != nullptr && path[0] == '/'; }

LmString LmFileSystem::ModuleFileName() {
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&LmFileSystem::ModuleFileName), &info) == 0 || info.dli_fname == nullptr)
        return LmString();
    // The real file, links resolved: the loader may have reached it through a
    // linked folder (/lib -> usr/lib on merged-/usr systems), and a path such
    // as ../share taken lexically from the linked folder would miss.
    std::error_code error;
    const fs::path real = fs::canonical(fs::path(info.dli_fname), error);
    return error ? _Absolute(LmString(info.dli_fname)) : LmString(real.string());
}

LmString LmFileSystem::WorkingFolder() {
    std::error_code error;
    const fs::path folder = fs::current_path(error);
    return error ? LmString() : LmString(folder.string());
}

LmDir::LmDir(const char* path) : m_path(path) {}

bool LmDir::Exists() const {
    std::error_code error;
    return !m_path.empty() && fs::is_directory(fs::path(m_path.c_str()), error);
}

LmString LmDir::FullPath() const { return _Absolute(m_path); }

std::vector<LmFile> LmDir::Files(const char* pattern) const {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(fs::path(m_path.c_str()), error), end; !error && entry != end; entry.increment(error)) {
        std::error_code typeError;
        if (!entry->is_regular_file(typeError)) continue;
        const std::string name = entry->path().filename().string();
        if (pattern == nullptr || fnmatch(pattern, name.c_str(), FNM_CASEFOLD) == 0) names.push_back(name);
    }
    std::sort(names.begin(), names.end());

    std::vector<LmFile> files;
    const LmString folder = FullPath();
    for (const std::string& name : names) files.emplace_back(LmFileSystem::Combine(folder.c_str(), name.c_str()).c_str());
    return files;
}

LmFile::LmFile(const char* path) : m_path(path) {}

bool LmFile::Exists() const {
    std::error_code error;
    return !m_path.empty() && fs::is_regular_file(fs::path(m_path.c_str()), error);
}

LmString LmFile::FullPath() const { return _Absolute(m_path); }

LmString LmFile::Path() const { return m_path; }

LmString LmFile::Name(bool withExtension) const {
    const fs::path path(m_path.c_str());
    return LmString((withExtension ? path.filename() : path.stem()).string());
}

LmDir LmFile::Parent() const { return LmDir(fs::path(FullPath().c_str()).parent_path().string().c_str()); }

}  // namespace Utility
}  // namespace Lumora
