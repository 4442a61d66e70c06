#include <lmspatialreference/pyramid.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <variant>

#include <tinyxml2.h>

namespace Lumora {
namespace Kernel {

using tinyxml2::XMLAttribute;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

namespace {

bool _Is(const XMLAttribute* attribute, const char* name) { return std::strcmp(attribute->Name(), name) == 0; }

int _Int(const XMLAttribute* attribute) { return std::atoi(attribute->Value()); }

double _Double(const XMLAttribute* attribute) { return std::atof(attribute->Value()); }

// One attribute of a pyramid element and the member it carries.
struct _Attribute {
    const char* name;
    std::variant<std::int32_t LmPyramid::*, std::uint32_t LmPyramid::*, double LmPyramid::*, LmString LmPyramid::*>
        member;
    // Read as an integer although written as a double: a fractional ratio
    // does not survive a round trip, as existing pyramid files expect.
    bool readAsInteger = false;
};

// The attributes of each element, in the order they are written.
const _Attribute kLevel[] = {{"TopLevelIndex", &LmPyramid::TopLevelIndex},
                             {"BottomLevelIndex", &LmPyramid::BottomLevelIndex},
                             {"ScaleX", &LmPyramid::ScaleX, true},
                             {"ScaleY", &LmPyramid::ScaleY, true}};
const _Attribute kBasic[] = {
    {"Description", &LmPyramid::Description}, {"PyramidID", &LmPyramid::PyramidID}, {"Name", &LmPyramid::Name}};
const _Attribute kTileBasic[] = {{"TileSizeX", &LmPyramid::TileSizeX},
                                 {"TileSizeY", &LmPyramid::TileSizeY},
                                 {"OriginRowIndex", &LmPyramid::OriginRowIndex},
                                 {"OriginColIndex", &LmPyramid::OriginColIndex}};
const _Attribute kTopTile[] = {
    {"FromX", &LmPyramid::FromX}, {"FromY", &LmPyramid::FromY}, {"ToX", &LmPyramid::ToX}, {"ToY", &LmPyramid::ToY}};
const _Attribute kRange[] = {
    {"XMin", &LmPyramid::XMin}, {"YMin", &LmPyramid::YMin}, {"XMax", &LmPyramid::XMax}, {"YMax", &LmPyramid::YMax}};
const _Attribute kConst[] = {{"PI", &LmPyramid::PI}, {"Tolerance", &LmPyramid::Tolerance}};

// Sets the members of the attributes the element has; the others keep their values.
template <std::size_t N>
void _Read(LmPyramid& pyramid, XMLElement* element, const _Attribute (&attributes)[N]) {
    if (!element) return;
    for (const XMLAttribute* a = element->FirstAttribute(); a; a = a->Next()) {
        for (const _Attribute& attribute : attributes) {
            if (!_Is(a, attribute.name)) continue;
            std::visit(
                [&](auto member) {
                    using Value = std::remove_reference_t<decltype(pyramid.*member)>;
                    if constexpr (std::is_same_v<Value, LmString>) pyramid.*member = a->Value();
                    else if constexpr (std::is_same_v<Value, double>)
                        pyramid.*member = attribute.readAsInteger ? _Int(a) : _Double(a);
                    else pyramid.*member = static_cast<Value>(_Int(a));
                },
                attribute.member);
            break;
        }
    }
}

// Appends the element with every attribute of the table. tinyxml2 writes
// doubles with 17 significant digits, which atof reads back to the same double.
template <std::size_t N>
void _Write(const LmPyramid& pyramid, XMLElement* pyramidElement, const char* name, const _Attribute (&attributes)[N]) {
    if (!pyramidElement) return;
    XMLElement* element = pyramidElement->GetDocument()->NewElement(name);
    pyramidElement->InsertEndChild(element);
    for (const _Attribute& attribute : attributes) {
        std::visit(
            [&](auto member) {
                const auto& value = pyramid.*member;
                if constexpr (std::is_same_v<std::decay_t<decltype(value)>, LmString>)
                    element->SetAttribute(attribute.name, value.c_str());
                else element->SetAttribute(attribute.name, value);
            },
            attribute.member);
    }
}

}  // namespace

bool LmPyramid::FromString(const char* xml) {
    if (!xml) return false;
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    document.Parse(xml, std::strlen(xml));
    if (document.Error()) return false;
    XMLElement* root = document.RootElement();
    if (!root || std::strcmp(root->Name(), "Pyramid") != 0) return false;
    CreateDefault();
    return FromXmlNode(root);
}

bool LmPyramid::FromXmlNode(XMLNode* node) {
    if (!node) return false;
    for (XMLElement* child = node->FirstChildElement(); child; child = child->NextSiblingElement()) {
        const char* name = child->Name();
        if (std::strcmp(name, "Level") == 0) ReadLevel(child);
        else if (std::strcmp(name, "Basic") == 0) ReadBasic(child);
        else if (std::strcmp(name, "TileBasic") == 0) ReadTileBasic(child);
        else if (std::strcmp(name, "TopTile") == 0) ReadTopTile(child);
        else if (std::strcmp(name, "Range") == 0) ReadRange(child);
        else if (std::strcmp(name, "Const") == 0) ReadConst(child);
        else ReadExtendNode(child);
    }
    return true;
}

bool LmPyramid::ToXmlNode(XMLNode* parent) {
    if (!parent) return false;
    XMLElement* pyramid = parent->GetDocument()->NewElement("Pyramid");
    WriteBasic(pyramid);
    WriteLevel(pyramid);
    WriteTileBasic(pyramid);
    WriteTopTile(pyramid);
    WriteConst(pyramid);
    WriteRange(pyramid);
    WriteExtendNode(pyramid);
    parent->InsertEndChild(pyramid);
    return true;
}

bool LmPyramid::WriteExtendNode(XMLNode*) { return true; }

bool LmPyramid::ReadExtendNode(XMLNode*) { return true; }

bool LmPyramid::ToString(LmString& out) {
    tinyxml2::XMLDocument document;
    ToXmlNode(&document);
    tinyxml2::XMLPrinter printer(nullptr, false);
    document.Print(&printer);
    out = printer.CStr();
    return !out.empty();
}

LmString LmPyramid::ToString() {
    LmString out;
    ToString(out);
    return out;
}

void LmPyramid::ReadLevel(XMLElement* element) { _Read(*this, element, kLevel); }
void LmPyramid::ReadBasic(XMLElement* element) { _Read(*this, element, kBasic); }
void LmPyramid::ReadTileBasic(XMLElement* element) { _Read(*this, element, kTileBasic); }
void LmPyramid::ReadTopTile(XMLElement* element) { _Read(*this, element, kTopTile); }
void LmPyramid::ReadRange(XMLElement* element) { _Read(*this, element, kRange); }
void LmPyramid::ReadConst(XMLElement* element) { _Read(*this, element, kConst); }

void LmPyramid::WriteLevel(XMLElement* pyramidElement) { _Write(*this, pyramidElement, "Level", kLevel); }
void LmPyramid::WriteBasic(XMLElement* pyramidElement) { _Write(*this, pyramidElement, "Basic", kBasic); }
void LmPyramid::WriteTileBasic(XMLElement* pyramidElement) { _Write(*this, pyramidElement, "TileBasic", kTileBasic); }
void LmPyramid::WriteTopTile(XMLElement* pyramidElement) { _Write(*this, pyramidElement, "TopTile", kTopTile); }
void LmPyramid::WriteRange(XMLElement* pyramidElement) { _Write(*this, pyramidElement, "Range", kRange); }
void LmPyramid::WriteConst(XMLElement* pyramidElement) { _Write(*this, pyramidElement, "Const", kConst); }

}  // namespace Kernel
}  // namespace Lumora
