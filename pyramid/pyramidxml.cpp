#include <lmspatialreference/pyramid.h>

#include <cstdlib>
#include <cstring>

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

XMLElement* _Append(XMLElement* pyramidElement, const char* name) {
    XMLElement* element = pyramidElement->GetDocument()->NewElement(name);
    pyramidElement->InsertEndChild(element);
    return element;
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

void LmPyramid::ReadLevel(XMLElement* element) {
    if (!element) return;
    for (const XMLAttribute* a = element->FirstAttribute(); a; a = a->Next()) {
        if (_Is(a, "TopLevelIndex")) TopLevelIndex = _Int(a);
        else if (_Is(a, "BottomLevelIndex")) BottomLevelIndex = _Int(a);
        // Read as integers although written as doubles: a fractional ratio
        // does not survive a round trip, as existing pyramid files expect.
        else if (_Is(a, "ScaleX")) ScaleX = _Int(a);
        else if (_Is(a, "ScaleY")) ScaleY = _Int(a);
    }
}

void LmPyramid::ReadBasic(XMLElement* element) {
    if (!element) return;
    for (const XMLAttribute* a = element->FirstAttribute(); a; a = a->Next()) {
        if (_Is(a, "Description")) Description = a->Value();
        else if (_Is(a, "PyramidID")) PyramidID = a->Value();
        else if (_Is(a, "Name")) Name = a->Value();
    }
}

void LmPyramid::ReadTileBasic(XMLElement* element) {
    if (!element) return;
    for (const XMLAttribute* a = element->FirstAttribute(); a; a = a->Next()) {
        if (_Is(a, "TileSizeX")) TileSizeX = static_cast<std::uint32_t>(_Int(a));
        else if (_Is(a, "TileSizeY")) TileSizeY = static_cast<std::uint32_t>(_Int(a));
        else if (_Is(a, "OriginRowIndex")) OriginRowIndex = _Int(a);
        else if (_Is(a, "OriginColIndex")) OriginColIndex = _Int(a);
    }
}

void LmPyramid::ReadTopTile(XMLElement* element) {
    if (!element) return;
    for (const XMLAttribute* a = element->FirstAttribute(); a; a = a->Next()) {
        if (_Is(a, "FromX")) FromX = _Double(a);
        else if (_Is(a, "FromY")) FromY = _Double(a);
        else if (_Is(a, "ToX")) ToX = _Double(a);
        else if (_Is(a, "ToY")) ToY = _Double(a);
    }
}

void LmPyramid::ReadRange(XMLElement* element) {
    if (!element) return;
    for (const XMLAttribute* a = element->FirstAttribute(); a; a = a->Next()) {
        if (_Is(a, "XMin")) XMin = _Double(a);
        else if (_Is(a, "YMin")) YMin = _Double(a);
        else if (_Is(a, "XMax")) XMax = _Double(a);
        else if (_Is(a, "YMax")) YMax = _Double(a);
    }
}

void LmPyramid::ReadConst(XMLElement* element) {
    if (!element) return;
    for (const XMLAttribute* a = element->FirstAttribute(); a; a = a->Next()) {
        if (_Is(a, "PI")) PI = _Double(a);
        else if (_Is(a, "Tolerance")) Tolerance = _Double(a);
    }
}

// tinyxml2 writes doubles with 17 significant digits, which atof reads back
// to the same double.
void LmPyramid::WriteBasic(XMLElement* pyramidElement) {
    if (!pyramidElement) return;
    XMLElement* e = _Append(pyramidElement, "Basic");
    e->SetAttribute("Description", Description.c_str());
    e->SetAttribute("PyramidID", PyramidID.c_str());
    e->SetAttribute("Name", Name.c_str());
}

void LmPyramid::WriteLevel(XMLElement* pyramidElement) {
    if (!pyramidElement) return;
    XMLElement* e = _Append(pyramidElement, "Level");
    e->SetAttribute("TopLevelIndex", static_cast<int>(TopLevelIndex));
    e->SetAttribute("BottomLevelIndex", static_cast<int>(BottomLevelIndex));
    e->SetAttribute("ScaleX", ScaleX);
    e->SetAttribute("ScaleY", ScaleY);
}

void LmPyramid::WriteTileBasic(XMLElement* pyramidElement) {
    if (!pyramidElement) return;
    XMLElement* e = _Append(pyramidElement, "TileBasic");
    e->SetAttribute("TileSizeX", static_cast<unsigned>(TileSizeX));
    e->SetAttribute("TileSizeY", static_cast<unsigned>(TileSizeY));
    e->SetAttribute("OriginRowIndex", static_cast<int>(OriginRowIndex));
    e->SetAttribute("OriginColIndex", static_cast<int>(OriginColIndex));
}

void LmPyramid::WriteTopTile(XMLElement* pyramidElement) {
    if (!pyramidElement) return;
    XMLElement* e = _Append(pyramidElement, "TopTile");
    e->SetAttribute("FromX", FromX);
    e->SetAttribute("FromY", FromY);
    e->SetAttribute("ToX", ToX);
    e->SetAttribute("ToY", ToY);
}

void LmPyramid::WriteConst(XMLElement* pyramidElement) {
    if (!pyramidElement) return;
    XMLElement* e = _Append(pyramidElement, "Const");
    e->SetAttribute("PI", PI);
    e->SetAttribute("Tolerance", Tolerance);
}

void LmPyramid::WriteRange(XMLElement* pyramidElement) {
    if (!pyramidElement) return;
    XMLElement* e = _Append(pyramidElement, "Range");
    e->SetAttribute("XMin", XMin);
    e->SetAttribute("YMin", YMin);
    e->SetAttribute("XMax", XMax);
    e->SetAttribute("YMax", YMax);
}

}  // namespace Kernel
}  // namespace Lumora
