#include <lmspatialreference/spatialreferencemanager.h>

#include "internal/linereader.h"
#include "internal/datapaths.h"

namespace Lumora {
namespace Kernel {

using Utility::LmCRT;
using Utility::LmDir;
using Utility::LmFile;

LmSpatialReferenceManager::LmSpatialReferenceCategory::~LmSpatialReferenceCategory() = default;

LmSpatialReferenceManager::LmSpatialReferenceManager(const char* dataFolder)
    : m_strDataFolder(LmDataFolder(dataFolder)) {}

LmSpatialReferenceManager::~LmSpatialReferenceManager() {
    for (LmSpatialReferenceCategory* category : m_categories) delete category;
}

LmString LmSpatialReferenceManager::DataFolder() const { return m_strDataFolder; }

int LmSpatialReferenceManager::CategoryCount() {
    if (!m_categories.empty()) return static_cast<int>(m_categories.size());
    const LmDir folder(m_strDataFolder.c_str());
    if (!folder.Exists()) return 0;
    for (const LmFile& file : folder.Files("*.txt"))
        m_categories.push_back(new LmSpatialReferenceCategoryImp(file.FullPath().c_str()));
    return static_cast<int>(m_categories.size());
}

LmSpatialReferenceManager::LmSpatialReferenceCategory* LmSpatialReferenceManager::Category(int i) {
    if (i < 0 || i >= CategoryCount()) return nullptr;
    return m_categories[static_cast<std::size_t>(i)];
}

LmSpatialReferenceManager::LmSpatialReferenceCategory* LmSpatialReferenceManager::SpecialCategory(
    LmSpecialCategory kind) {
    if (CategoryCount() <= 0) return nullptr;
    const char* name = kind == eEPSGAliasCategory ? "EPSG_Alias" : "EPSG";
    for (LmSpatialReferenceCategory* category : m_categories)
        if (LmCRT::_stricmp(category->Name().c_str(), name) == 0) return category;
    return nullptr;
}

LmSpatialReferenceCategoryImp::LmSpatialReferenceCategoryImp(const char* filePath) : m_file(filePath) {}

LmSpatialReferenceCategoryImp::~LmSpatialReferenceCategoryImp() = default;

LmString LmSpatialReferenceCategoryImp::Name() { return m_file.Name(false); }

LmString LmSpatialReferenceCategoryImp::Path() const { return m_file.Path(); }

int LmSpatialReferenceCategoryImp::Count() {
    if (!m_entries.empty()) return static_cast<int>(m_entries.size());
    m_entries = ReadCategoryFile(m_file.Path().c_str());
    return static_cast<int>(m_entries.size());
}

LmSmarterPtr<LmSpatialReference> LmSpatialReferenceCategoryImp::SpatialReference(int i) {
    if (i < 0 || i >= Count()) return LmSmarterPtr<LmSpatialReference>();
    const auto& entry = m_entries[static_cast<std::size_t>(i)];
    LmSmarterPtr<LmSpatialReference> reference(new LmSpatialReference(entry.second.c_str(), eWKT));
    reference->Name(entry.first.c_str());
    return reference;
}

}  // namespace Kernel
}  // namespace Lumora
