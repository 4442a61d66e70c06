/// @file
/// The process-wide configuration tree and its nodes.
#ifndef LMSPATIALREFERENCE_CONFIGURATION_H
#define LMSPATIALREFERENCE_CONFIGURATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/lmstring.h>

#include <memory>
#include <string>
#include <vector>

namespace Lumora {
namespace Utility {

class LmConfigTree;

/// A node of a configuration tree, passed by value. A missing node is an empty
/// node, never an error. Names may be paths separated by '/', walked from the
/// node, so root["Kernel/SpatialReference/EPSG"] is
/// root["Kernel"]["SpatialReference"]["EPSG"].
class LM_API LmConfig {
public:
    /// The node at path in tree; callers get nodes from LmGlobeConfig::Instance.
    LmConfig(std::shared_ptr<LmConfigTree> tree, std::vector<std::string> path);
    ~LmConfig();

    /// The child node at a name or '/'-separated path; missing nodes are empty.
    LmConfig operator[](const char* name) const;
    /// The node's text, or defaultValue when the node is missing or empty.
    LmString StringValue(const char* defaultValue) const;
    /// true/yes/on/1 and false/no/off/0 (any case, surrounding blanks allowed);
    /// defaultValue when the node is missing, empty or holds anything else.
    bool BoolValue(bool defaultValue) const;

private:
    std::shared_ptr<LmConfigTree> m_tree;
    std::vector<std::string> m_path;
};

/// The process-wide configuration. On first use it loads the XML file named by
/// the environment variable LUMORA_CONFIG, if set. In the file, nested elements
/// are the keys and element text the values:
///   `<Configuration><Kernel><SpatialReference><EPSG>/data/EPSG.txt</EPSG>...`
/// The name of the document's root element does not matter.
class LM_API LmGlobeConfig {
public:
    /// The root node of the process-wide tree.
    static LmConfig Instance();
    /// Merges the keys of an XML file into the tree (its values win). False
    /// when the file cannot be read or is not well-formed XML.
    static bool Load(const char* path);
    /// Sets the value at a '/'-separated path, creating the nodes on the way.
    static void Set(const char* path, const char* value);
    /// Removes the node at a path with everything below it; an empty path
    /// clears the whole tree.
    static void Clear(const char* path);
    /// Gives a key the value it holds until a configuration file or a Set
    /// replaces it or a Clear drops it: a library built on this one names its
    /// built-in values this way. Before the tree is first used the value waits
    /// and is applied ahead of the LUMORA_CONFIG file; afterwards it is set
    /// only when the key is absent.
    static void SetDefault(const char* path, const char* value);
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_CONFIGURATION_H
