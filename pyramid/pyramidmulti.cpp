#include <lmspatialreference/pyramid.h>

#include <cstring>

#include <tinyxml2.h>

namespace Lumora {
namespace Kernel {

LmMultiPyramid::LmMultiPyramid() = default;

LmMultiPyramid::LmMultiPyramid(const char* xml) { FromString(xml); }

LmMultiPyramid::~LmMultiPyramid() = default;

LmPyramid* LmMultiPyramid::FindPyramid(int level) const {
    for (const auto& special : Specials) {
        if (special && special->TopLevelIndex <= level && level <= special->BottomLevelIndex) return special;
    }
    return nullptr;
}

bool LmMultiPyramid::FromString(const char* xml) {
    Specials.clear();
    return LmPyramid::FromString(xml);
}

bool LmMultiPyramid::ReadExtendNode(tinyxml2::XMLNode* node) {
    const tinyxml2::XMLElement* element = node ? node->ToElement() : nullptr;
    if (!element || std::strcmp(element->Name(), "Specials") != 0) return true;
    for (tinyxml2::XMLElement* child = node->FirstChildElement("Pyramid"); child;
         child = child->NextSiblingElement("Pyramid")) {
        LmSmarterPtr<LmPyramid> special(new LmPyramid());
        special->FromXmlNode(child);
        Specials.push_back(special);
    }
    return true;
}

bool LmMultiPyramid::WriteExtendNode(tinyxml2::XMLNode* pyramidElement) {
    if (Specials.empty() || !pyramidElement) return false;
    tinyxml2::XMLElement* specials = pyramidElement->GetDocument()->NewElement("Specials");
    for (const auto& special : Specials) {
        if (special) special->ToXmlNode(specials);
    }
    pyramidElement->InsertEndChild(specials);
    return true;
}

bool LmMultiPyramid::TileIndex(int level, double x, double y, int* row, int* col, int* pixelX, int* pixelY) {
    if (LmPyramid* special = FindPyramid(level)) return special->TileIndex(level, x, y, row, col, pixelX, pixelY);
    return LmPyramid::TileIndex(level, x, y, row, col, pixelX, pixelY);
}

bool LmMultiPyramid::TileExtent(int level, int row, int col, double* xmin, double* ymin, double* xmax,
                                double* ymax) {
    if (LmPyramid* special = FindPyramid(level)) return special->TileExtent(level, row, col, xmin, ymin, xmax, ymax);
    return LmPyramid::TileExtent(level, row, col, xmin, ymin, xmax, ymax);
}

bool LmMultiPyramid::TileIndexRange(double xmin, double ymin, double xmax, double ymax, int level, int* minRow,
                                    int* minCol, int* maxRow, int* maxCol) {
    if (LmPyramid* special = FindPyramid(level)) {
        return special->TileIndexRange(xmin, ymin, xmax, ymax, level, minRow, minCol, maxRow, maxCol);
    }
    return LmPyramid::TileIndexRange(xmin, ymin, xmax, ymax, level, minRow, minCol, maxRow, maxCol);
}

bool LmMultiPyramid::TileExtentRange(int level, int row1, int col1, int row2, int col2, double* xmin,
                                     double* ymin, double* xmax, double* ymax) {
    if (LmPyramid* special = FindPyramid(level)) {
        return special->TileExtentRange(level, row1, col1, row2, col2, xmin, ymin, xmax, ymax);
    }
    return LmPyramid::TileExtentRange(level, row1, col1, row2, col2, xmin, ymin, xmax, ymax);
}

bool LmMultiPyramid::DevicePosition(const LmRect& anchor, int row, int col, LmRect* out, int level) {
    if (LmPyramid* special = FindPyramid(level)) return special->DevicePosition(anchor, row, col, out, level);
    return LmPyramid::DevicePosition(anchor, row, col, out, level);
}

double LmMultiPyramid::TileSpanX(int level, double x, double y) {
    if (LmPyramid* special = FindPyramid(level)) return special->TileSpanX(level, x, y);
    return LmPyramid::TileSpanX(level, x, y);
}

double LmMultiPyramid::TileSpanY(int level, double x, double y) {
    if (LmPyramid* special = FindPyramid(level)) return special->TileSpanY(level, x, y);
    return LmPyramid::TileSpanY(level, x, y);
}

}  // namespace Kernel
}  // namespace Lumora
