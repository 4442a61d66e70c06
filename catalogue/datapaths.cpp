#include "internal/datapaths.h"

#include <lmspatialreference/epsg.h>
#include <lmspatialreference/spatialreferencemanager.h>

#include <cpl_conv.h>

#include <cstdlib>
#include <cstring>
#include <mutex>

namespace Lumora {
namespace Kernel {

using Utility::LmDir;
using Utility::LmFile;
using Utility::LmFileSystem;
using Utility::LmGlobeConfig;
using Utility::LmStringHelp;

namespace {

LmString _LibraryFolder() {
    const LmString module = LmFileSystem::ModuleFileName();
    if (module.empty()) return LmFileSystem::WorkingFolder();
    return LmFile(module.c_str()).Parent().FullPath();
}

// The catalogue's relative default only works from one working folder, so the
// data folder found from the library's own folder is the key's built-in
// value: where the install put it (LM_INSTALLED_DATA_FOLDER, relative to the
// library), else beside lib/ as in the build tree. A configuration file or a
// Set overrides it, a Clear drops it.
const bool g_dataFolderDefault = [] {
    if (LmFileSystem::ModuleFileName().empty()) return false;
    const LmString libraryFolder = _LibraryFolder();
    for (const char* relative : {LM_INSTALLED_DATA_FOLDER, "../data/coordinatesystem"}) {
        const LmDir folder(LmFileSystem::Combine(libraryFolder.c_str(), relative).c_str());
        if (!folder.Exists()) continue;
        LmGlobeConfig::SetDefault("Kernel/SpatialReference/DataFolder", folder.FullPath().c_str());
        return true;
    }
    return false;
}();

}  // namespace

LmString MakeSpecialFolder(const char* configKey, const char* defaultPath) {
    LmString folder = LmGlobeConfig::Instance()[configKey == nullptr ? "" : configKey].StringValue(defaultPath);
    if (!LmFileSystem::IsPathRooted(folder.c_str()))
        folder = LmFileSystem::Combine(LmFileSystem::WorkingFolder().c_str(), folder.c_str());
    if (!LmDir(folder.c_str()).Exists()) return LmString();
    return folder;
}

LmString LmDataFolder(const char* given) {
    LmString folder = LmStringHelp::ToString(given);
    if (!folder.empty() && !LmDir(folder.c_str()).Exists()) folder.clear();
    if (folder.empty()) folder = MakeSpecialFolder("Kernel/SpatialReference/DataFolder", "../data/coordinatesystem");
    // The historical spelling of the key and its folder name are still honoured.
    if (folder.empty()) folder = MakeSpecialFolder("Kernel/SpatialRererence/DataFolder", "../data/Coordinate System");
    // A full path, so that the answer does not change with the working folder.
    if (!folder.empty()) folder = LmDir(folder.c_str()).FullPath();
    return folder;
}

LmString MakeEPSGFile() {
    const LmString base = _LibraryFolder();
    const LmString configured = LmGlobeConfig::Instance()["Kernel/SpatialReference/EPSG"].StringValue("");
    if (!configured.empty()) {
        if (LmFileSystem::IsPathRooted(configured.c_str())) return configured;
        return LmFileSystem::Combine(base.c_str(), configured.c_str());
    }
    LmString folder = LmDataFolder(nullptr);
    if (!folder.empty()) {
        if (!LmFileSystem::IsPathRooted(folder.c_str())) folder = LmFileSystem::Combine(base.c_str(), folder.c_str());
        return LmFileSystem::Combine(folder.c_str(), "EPSG.txt");
    }
    const LmString candidate = LmFileSystem::Combine(base.c_str(), "../data/coordinatesystem/EPSG.txt");
    if (LmFileSystem::Exists(candidate.c_str())) return candidate;
    return LmFileSystem::Combine(base.c_str(), "../data/Coordinate System/EPSG.txt");
}

LmString MakeEPSGIndexFile() {
    const LmString table = MakeEPSGFile();
    return LmFileSystem::Combine(LmFile(table.c_str()).Parent().FullPath().c_str(), "EPSG.index");
}

LmString LmAliasCategoryPath() {
    LmSpatialReferenceManager catalogue(nullptr);
    auto* category = dynamic_cast<LmSpatialReferenceCategoryImp*>(
        catalogue.SpecialCategory(LmSpatialReferenceManager::eEPSGAliasCategory));
    return category == nullptr ? LmString() : category->Path();
}

void LmProvideGdalData() {
    static std::mutex mutex;
    std::lock_guard<std::mutex> lock(mutex);
    if (std::getenv("GDAL_DATA") != nullptr) return;
    const LmString folder = LmGlobeConfig::Instance()["Kernel/SpatialReference/GDAL_DATA"].StringValue("");
    if (folder.empty()) return;
    // putenv keeps the string itself, so it must live as long as the process.
    const LmString assignment = "GDAL_DATA=" + folder;
    putenv(strdup(assignment.c_str()));
    CPLSetConfigOption("GDAL_DATA", folder.c_str());
}

}  // namespace Kernel
}  // namespace Lumora
