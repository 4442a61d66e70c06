/// @file
/// The spatial reference catalogue: a data folder of text files, one category
/// of named spatial reference definitions per "*.txt" file.
///
/// A category file holds a count line N (1 to 99999), then N pairs of lines:
/// the entry's name, then its definition in well-known text. Lines are read as
/// they stand, at most 10,239 characters each.
#ifndef LMSPATIALREFERENCE_SPATIALREFERENCEMANAGER_H
#define LMSPATIALREFERENCE_SPATIALREFERENCEMANAGER_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/utility.h>

#include <utility>
#include <vector>

namespace Lumora {
namespace Kernel {

/// The folder named by a configuration key, else by defaultPath; a relative
/// value is taken relative to the working folder. Empty when no directory
/// exists there.
LM_API LmString MakeSpecialFolder(const char* configKey, const char* defaultPath);

/// A catalogue over one data folder. Folders and files are scanned on first
/// demand and never again (except an empty folder or an empty category, which
/// are looked at again on every call). Not locked: use one manager from one
/// thread at a time, or warm it up first.
class LM_API LmSpatialReferenceManager {
public:
    /// One category file of the catalogue.
    class LM_API LmSpatialReferenceCategory {
    public:
        virtual ~LmSpatialReferenceCategory();
        /// The file name without its extension ("EPSG.txt" gives "EPSG").
        virtual LmString Name() = 0;
        /// The number of entries; 0 for an unreadable file or a count line that
        /// is not in 1..99999.
        virtual int Count() = 0;
        /// A new reference built from entry i's text and named after the entry;
        /// an empty pointer when i is out of range.
        virtual LmSmarterPtr<LmSpatialReference> SpatialReference(int i) = 0;
    };

    /// The categories with a fixed role, found by file name ignoring case.
    enum LmSpecialCategory : int {
        eEPSGCategory = 0,       ///< "EPSG"
        eEPSGAliasCategory = 1,  ///< "EPSG_Alias"
    };

    /// The folder given (when it exists), else the folder of the key
    /// "Kernel/SpatialReference/DataFolder" (default "../data/coordinatesystem"),
    /// else of "Kernel/SpatialRererence/DataFolder" (default
    /// "../data/Coordinate System"); the catalogue is empty when none exists.
    explicit LmSpatialReferenceManager(const char* dataFolder);
    ~LmSpatialReferenceManager();
    LmSpatialReferenceManager(const LmSpatialReferenceManager&) = delete;
    LmSpatialReferenceManager& operator=(const LmSpatialReferenceManager&) = delete;

    /// The resolved folder as a full path; empty when none was found.
    LmString DataFolder() const;
    /// The number of category files ("*.txt") in the data folder, which is
    /// scanned on the first call that finds any and never again; 0 when the
    /// folder is missing or has none.
    int CategoryCount();
    /// Category i, in the order of CategoryCount's scan; borrowed, valid while
    /// the manager lives. Null when i is out of range.
    LmSpatialReferenceCategory* Category(int i);
    /// The category of a fixed role; borrowed, valid while the manager lives.
    /// Null when the folder has no such file. Values other than
    /// eEPSGAliasCategory look for "EPSG".
    LmSpatialReferenceCategory* SpecialCategory(LmSpecialCategory kind);

private:
    LmString m_strDataFolder;
    std::vector<LmSpatialReferenceCategory*> m_categories;
};

/// The category of one file, whose entries are read on the first Count().
class LM_API LmSpatialReferenceCategoryImp : public LmSpatialReferenceManager::LmSpatialReferenceCategory {
public:
    /// Names the category file; nothing is read until a member is first asked for.
    explicit LmSpatialReferenceCategoryImp(const char* filePath);
    ~LmSpatialReferenceCategoryImp() override;

    /// The file name without its extension.
    LmString Name() override;
    /// Reads the file on the first call that finds entries (a missing or
    /// empty file is looked at again next time) and answers their number; 0
    /// for an unreadable file or a count line that is not in 1..99999.
    int Count() override;
    /// A new reference read from entry i's WKT and named after the entry,
    /// owned by the returned pointer; an empty pointer when i is out of range.
    LmSmarterPtr<LmSpatialReference> SpatialReference(int i) override;
    /// The category file's path, as given to the constructor.
    LmString Path() const;

private:
    std::vector<std::pair<LmString, LmString>> m_entries;
    Utility::LmFile m_file;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_SPATIALREFERENCEMANAGER_H
