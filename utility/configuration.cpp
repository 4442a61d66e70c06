#include <lmspatialreference/utility.h>

#include <cstdlib>
#include <map>
#include <mutex>

#include <tinyxml2.h>

namespace Lumora {
namespace Utility {

namespace {

std::vector<std::string> _SplitPath(const char* path) {
    std::vector<std::string> names;
    for (const LmString& name : LmStringHelp::Split(path, '/'))
        if (!name.empty()) names.push_back(name);
    return names;
}

}  // namespace

// The tree behind LmConfig. Nodes are looked up by path on every read, so a
// node handed out earlier sees values set or cleared later.
class LmConfigTree {
public:
    bool Lookup(const std::vector<std::string>& path, std::string& value) {
        std::shared_lock<std::shared_mutex> lock(m_mutex);
        const Node* node = _Find(path);
        if (node == nullptr) return false;
        value = node->value;
        return true;
    }

    void Set(const std::vector<std::string>& path, const std::string& value) {
        std::unique_lock<std::shared_mutex> lock(m_mutex);
        _Make(path).value = value;
    }

    // Sets a value only where the path holds none, in one step.
    void SetIfAbsent(const std::vector<std::string>& path, const std::string& value) {
        std::unique_lock<std::shared_mutex> lock(m_mutex);
        if (_Find(path) == nullptr) _Make(path).value = value;
    }

    void Clear(const std::vector<std::string>& path) {
        std::unique_lock<std::shared_mutex> lock(m_mutex);
        if (path.empty()) {
            m_root = Node();
            return;
        }
        Node* parent = &m_root;
        for (std::size_t i = 0; i + 1 < path.size(); ++i) {
            auto child = parent->children.find(path[i]);
            if (child == parent->children.end()) return;
            parent = child->second.get();
        }
        parent->children.erase(path.back());
    }

    bool Load(const char* file) {
        tinyxml2::XMLDocument document;
        if (file == nullptr || document.LoadFile(file) != tinyxml2::XML_SUCCESS) return false;
        const tinyxml2::XMLElement* root = document.RootElement();
        if (root == nullptr) return false;
        std::unique_lock<std::shared_mutex> lock(m_mutex);
        _Merge(*root, m_root);
        return true;
    }

private:
    struct Node {
        std::string value;
        std::map<std::string, std::unique_ptr<Node>> children;
    };

    const Node* _Find(const std::vector<std::string>& path) const {
        const Node* node = &m_root;
        for (const std::string& name : path) {
            auto child = node->children.find(name);
            if (child == node->children.end()) return nullptr;
            node = child->second.get();
        }
        return node;
    }

    Node& _Make(const std::vector<std::string>& path) {
        Node* node = &m_root;
        for (const std::string& name : path) {
            std::unique_ptr<Node>& child = node->children[name];
            if (!child) child = std::make_unique<Node>();
            node = child.get();
        }
        return *node;
    }

    static void _Merge(const tinyxml2::XMLElement& element, Node& node) {
        for (const tinyxml2::XMLElement* child = element.FirstChildElement(); child;
             child = child->NextSiblingElement()) {
            std::unique_ptr<Node>& target = node.children[child->Name()];
            if (!target) target = std::make_unique<Node>();
            if (const char* text = child->GetText()) target->value = LmStringHelp::Trim(text);
            _Merge(*child, *target);
        }
    }

    std::shared_mutex m_mutex;
    Node m_root;
};

LmConfig::LmConfig(std::shared_ptr<LmConfigTree> tree, std::vector<std::string> path)
    : m_tree(std::move(tree)), m_path(std::move(path)) {}

LmConfig::~LmConfig() = default;

LmConfig LmConfig::operator[](const char* name) const {
    std::vector<std::string> path = m_path;
    for (std::string& part : _SplitPath(name)) path.push_back(std::move(part));
    return LmConfig(m_tree, std::move(path));
}

LmString LmConfig::StringValue(const char* defaultValue) const {
    std::string value;
    if (!m_tree->Lookup(m_path, value) || value.empty()) return LmString(defaultValue);
    return LmString(value);
}

bool LmConfig::BoolValue(bool defaultValue) const {
    const LmString text = LmStringHelp::Trim(StringValue("").c_str());
    for (const char* yes : {"true", "yes", "on", "1"})
        if (LmCRT::_stricmp(text.c_str(), yes) == 0) return true;
    for (const char* no : {"false", "no", "off", "0"})
        if (LmCRT::_stricmp(text.c_str(), no) == 0) return false;
    return defaultValue;
}

namespace {

// Values that libraries built on this one give their keys, kept until the
// tree is made so that a configuration file read then still overrides them.
struct PendingDefaults {
    std::mutex mutex;
    bool treeMade = false;
    std::vector<std::pair<std::vector<std::string>, std::string>> values;
};

PendingDefaults& _PendingDefaults() {
    static PendingDefaults pending;
    return pending;
}

std::shared_ptr<LmConfigTree> _GlobalTree() {
    static const std::shared_ptr<LmConfigTree> tree = [] {
        auto fresh = std::make_shared<LmConfigTree>();
        {
            PendingDefaults& pending = _PendingDefaults();
            std::lock_guard<std::mutex> lock(pending.mutex);
            for (const auto& value : pending.values) fresh->Set(value.first, value.second);
            pending.values.clear();
            pending.treeMade = true;
        }
        if (const char* file = std::getenv("LUMORA_CONFIG")) fresh->Load(file);
        return fresh;
    }();
    return tree;
}

}  // namespace

LmConfig LmGlobeConfig::Instance() { return LmConfig(_GlobalTree(), {}); }

bool LmGlobeConfig::Load(const char* path) { return _GlobalTree()->Load(path); }

void LmGlobeConfig::Set(const char* path, const char* value) {
    _GlobalTree()->Set(_SplitPath(path), value ? value : "");
}

void LmGlobeConfig::Clear(const char* path) { _GlobalTree()->Clear(_SplitPath(path)); }

void LmGlobeConfig::SetDefault(const char* path, const char* value) {
    std::vector<std::string> names = _SplitPath(path);
    {
        PendingDefaults& pending = _PendingDefaults();
        std::lock_guard<std::mutex> lock(pending.mutex);
        if (!pending.treeMade) {
            pending.values.emplace_back(std::move(names), value ? value : "");
            return;
        }
    }
    _GlobalTree()->SetIfAbsent(names, value ? value : "");
}

}  // namespace Utility
}  // namespace Lumora
