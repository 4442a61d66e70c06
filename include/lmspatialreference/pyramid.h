/// @file
/// Tile pyramids: how a map is cut into square-pixel tiles level by level, the
/// tile arithmetic a map cache or tile server needs (tile of a point, extent of
/// a tile, tiles of a rectangle, device placement, best level for a
/// resolution), the pyramid's XML form, and multi-pyramids whose levels may be
/// taken over by sub-pyramids.
///
/// Map coordinates are in the units of the pyramid's top tile (degrees for the
/// geographic pyramid, metres for Web Mercator); resolutions are map units per
/// pixel. Axis directions follow from the top tile's corners: columns advance
/// from FromX toward ToX and rows from FromY toward ToY, so both stock
/// pyramids count rows from north to south.
///
/// Integer results that fall outside the 32-bit range (a point very far away, a
/// zero span or tile size) saturate at the nearest 32-bit limit, and NaN gives
/// 0, so no input makes a tile operation undefined.
#ifndef LMSPATIALREFERENCE_PYRAMID_H
#define LMSPATIALREFERENCE_PYRAMID_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/lmstring.h>
#include <lmspatialreference/rect.h>
#include <lmspatialreference/refobject.h>

#include <cstdint>
#include <vector>

namespace tinyxml2 {
class XMLElement;
class XMLNode;
}  // namespace tinyxml2

namespace Lumora {
namespace Kernel {

using Utility::LmRect;
using Utility::LmRefObject;
using Utility::LmSmarterPtr;
using Utility::LmString;

/// The stock pyramids of LmPyramid::WellknownPyramid.
enum LmWellknownPyramid : int {
    eGeographicPyramid = 0,    ///< 360-degree geographic: the defaults of CreateDefault
    eWebMercatorPyramid = 1,   ///< Web Mercator, 256-pixel tiles, levels 0..20, as XYZ web maps
};

/// A tiling scheme: levels TopLevelIndex (coarsest) to BottomLevelIndex (finest),
/// each a regular grid of TileSizeX x TileSizeY pixel tiles covering the top
/// tile, each level ScaleX (ScaleY) times finer than the one above. Held through
/// LmSmarterPtr<LmPyramid>. The tile operations only read the pyramid, so a
/// fully built pyramid may be queried from several threads; building or
/// re-reading it must not overlap with queries.
///
/// Every tile operation returns true whatever its input: levels outside the
/// pyramid, negative rows and columns and points outside Range are computed by
/// the same formulas. A null output pointer is skipped.
class LM_API LmPyramid : public LmRefObject {
public:
    /// The 360-degree geographic pyramid of CreateDefault.
    LmPyramid();
    /// The pyramid of an XML text; a text FromString rejects (or null) leaves the
    /// CreateDefault values.
    explicit LmPyramid(const char* xml);
    ~LmPyramid() override;

    /// Appends a new Pyramid element, with Basic, Level, TileBasic, TopTile,
    /// Const, Range and whatever WriteExtendNode adds, as the last child of
    /// parent (a document or an element). False only for a null parent.
    virtual bool ToXmlNode(tinyxml2::XMLNode* parent);
    /// Reads the children of a Pyramid element over the current members: each
    /// known element sets the members it carries (a later one overwrites),
    /// anything else goes to ReadExtendNode. Absent elements and attributes keep
    /// the current values; numbers are read with atoi/atof, so malformed ones give
    /// 0. False only for a null node.
    virtual bool FromXmlNode(tinyxml2::XMLNode* node);
    /// Extension hook of ToXmlNode: a derived class appends its own elements
    /// to pyramidElement. A plain pyramid writes nothing and returns true.
    virtual bool WriteExtendNode(tinyxml2::XMLNode* pyramidElement);
    /// Extension hook of FromXmlNode, called with each child element it does
    /// not know. A plain pyramid reads nothing and returns true.
    virtual bool ReadExtendNode(tinyxml2::XMLNode* node);
    /// Sets every member, the three texts included, to the 360-degree geographic
    /// default. Returns true.
    virtual bool CreateDefault();

    /// The row and column of the tile at level that holds the map point (x, y),
    /// and when not null the pixel in it: pixelX counts from the tile's starting
    /// (FromX) edge from 0, pixelY counts from the tile's far edge from 1, so a
    /// point on the starting edge of a 256-pixel tile has pixelY 256. A point on
    /// a tile boundary belongs to the tile that starts there.
    virtual bool TileIndex(int level, double x, double y, int* row, int* col, int* pixelX, int* pixelY);
    /// The map rectangle of the tile (row, col) at level, normalised so that
    /// xmin <= xmax and ymin <= ymax whatever the axis directions.
    virtual bool TileExtent(int level, int row, int col, double* xmin, double* ymin, double* xmax,
                            double* ymax);
    /// The rows and columns of the tiles at level that the map rectangle touches,
    /// after shrinking it inward by Tolerance so that a rectangle ending exactly
    /// on a tile boundary does not reach into the next tile. The indices come out
    /// ordered whatever the corner order, but the rectangle is not normalised:
    /// crossed corners widen it by Tolerance instead, reaching one tile further.
    virtual bool TileIndexRange(double xmin, double ymin, double xmax, double ymax, int level, int* minRow,
                                int* minCol, int* maxRow, int* maxCol);
    /// The union of the map rectangles of tiles (row1, col1) and (row2, col2).
    virtual bool TileExtentRange(int level, int row1, int col1, int row2, int col2, double* xmin, double* ymin,
                                 double* xmax, double* ymax);
    /// The device (pixel) rectangle of tile (row, col) on a grid whose origin is
    /// the anchor's left or right edge (as columns advance east or west) and its
    /// bottom or top edge (as rows advance north or south). Device y grows
    /// downward. The origin row and column are not subtracted.
    virtual bool DevicePosition(const LmRect& anchor, int row, int col, LmRect* out, int level);
    ///@{
    /// The signed map width and height of one tile at level (TileSpanY is
    /// negative when rows run southward). x and y let derived classes choose by
    /// place; a plain pyramid ignores them.
    virtual double TileSpanX(int level, double x, double y);
    virtual double TileSpanY(int level, double x, double y);
    ///@}
    ///@{
    /// +1 when columns (rows) advance toward larger x (y), otherwise -1 (also
    /// for a zero span).
    virtual int DirectionX(int level);
    virtual int DirectionY(int level);
    ///@}

    /// Reads an XML text whose root element is exactly "Pyramid": the members
    /// first return to the CreateDefault values, then the text is read over
    /// them. False, leaving the pyramid unchanged, for null, malformed XML, no
    /// root element or another root name.
    virtual bool FromString(const char* xml);
    /// The indented XML text of the pyramid, without an XML declaration. Doubles
    /// are written with 17 significant digits, so they read back exactly;
    /// ScaleX and ScaleY are read back as integers. False if nothing was written.
    virtual bool ToString(LmString& out);
    /// The same text, empty on failure.
    virtual LmString ToString();

    /// The level whose pixel size (TileSpanX / TileSizeX) is nearest to
    /// resolution, ties going to the coarser level; TopLevelIndex when the
    /// pyramid has no levels.
    virtual int BestLevel(double resolution);
    /// A fractional level for resolution, interpolated with a base-2 logarithm
    /// between the last level coarser than it and the next; TopLevelIndex when
    /// even the top level is at least as fine, BottomLevelIndex when every level
    /// is coarser.
    virtual double PreciseLevel(double resolution);

    /// A new stock pyramid (an LmMultiPyramid without sub-pyramids); a kind other
    /// than eWebMercatorPyramid gives the geographic pyramid.
    static LmSmarterPtr<LmPyramid> WellknownPyramid(LmWellknownPyramid kind);

    ///@{
    /// One reader per element of the XML form (Level, Basic, TileBasic,
    /// TopTile, Range, Const), each taking that element and setting only the
    /// members it carries; a null element is ignored.
    void ReadLevel(tinyxml2::XMLElement* element);
    void ReadBasic(tinyxml2::XMLElement* element);
    void ReadTileBasic(tinyxml2::XMLElement* element);
    void ReadTopTile(tinyxml2::XMLElement* element);
    void ReadRange(tinyxml2::XMLElement* element);
    void ReadConst(tinyxml2::XMLElement* element);
    ///@}
    ///@{
    /// One writer per element of the XML form, each appending its element to
    /// the Pyramid element; a null element is ignored.
    void WriteLevel(tinyxml2::XMLElement* pyramidElement);
    void WriteBasic(tinyxml2::XMLElement* pyramidElement);
    void WriteTileBasic(tinyxml2::XMLElement* pyramidElement);
    void WriteTopTile(tinyxml2::XMLElement* pyramidElement);
    void WriteRange(tinyxml2::XMLElement* pyramidElement);
    void WriteConst(tinyxml2::XMLElement* pyramidElement);
    ///@}

    std::int32_t TopLevelIndex;      ///< coarsest level (default 0)
    std::int32_t BottomLevelIndex;   ///< finest level, inclusive (20)
    double ScaleX;                   ///< tile width ratio between a level and the next finer (2)
    double ScaleY;                   ///< same for the height (2)
    std::uint32_t TileSizeX;         ///< tile width in pixels (256)
    std::uint32_t TileSizeY;         ///< tile height in pixels (256)
    std::int32_t OriginRowIndex;     ///< number of the first row of tiles (0)
    std::int32_t OriginColIndex;     ///< number of the first column of tiles (0)
    LmString Description;            ///< UTF-8 free text ("金字塔方案")
    LmString PyramidID;              ///< identifier ("Pyramid0001")
    LmString Name;                   ///< UTF-8 display name ("360度")
    double FromX;                    ///< x of the top tile's corner of row 0, column 0 (-180)
    double FromY;                    ///< y of that corner (90)
    double ToX;                      ///< x of the top tile's opposite corner (180)
    double ToY;                      ///< y of the opposite corner (-270)
    double XMin;                     ///< least x of the valid data range, descriptive only (-180)
    double YMin;                     ///< least y of the valid data range (-90)
    double XMax;                     ///< greatest x of the valid data range (180)
    double YMax;                     ///< greatest y of the valid data range (90)
    double PI;                       ///< carried and written, used by no computation (3.141592653589793)
    double Tolerance;                ///< inward shrink of TileIndexRange, map units (2^-23)
};

/// A pyramid whose levels may be taken over by sub-pyramids, carried in the XML
/// form's Specials element. The tile operations of a level that a sub-pyramid
/// covers are answered by the first such sub-pyramid in Specials. DirectionX,
/// DirectionY, BestLevel and PreciseLevel walk this pyramid's own levels with
/// the spans of whichever pyramid covers each level, but divide by this
/// pyramid's own TileSizeX.
class LM_API LmMultiPyramid : public LmPyramid {
public:
    /// The 360-degree geographic pyramid of CreateDefault, without sub-pyramids.
    LmMultiPyramid();
    /// The defaults, then FromString(xml), whose result is ignored.
    explicit LmMultiPyramid(const char* xml);
    ~LmMultiPyramid() override;

    /// Writes Specials with one Pyramid element per sub-pyramid; writes nothing
    /// and returns false when there are none.
    bool WriteExtendNode(tinyxml2::XMLNode* pyramidElement) override;
    /// Appends a plain LmPyramid (defaults, then the element read over them) for
    /// each Pyramid child of a Specials element; anything else is ignored.
    /// Sub-pyramids do not nest. Returns true.
    bool ReadExtendNode(tinyxml2::XMLNode* node) override;

    ///@{
    /// Answered by FindPyramid(level) when a sub-pyramid covers level, else as
    /// LmPyramid answers them; the sub-pyramid is chosen by level alone.
    bool TileIndex(int level, double x, double y, int* row, int* col, int* pixelX, int* pixelY) override;
    bool TileExtent(int level, int row, int col, double* xmin, double* ymin, double* xmax,
                    double* ymax) override;
    bool TileIndexRange(double xmin, double ymin, double xmax, double ymax, int level, int* minRow,
                        int* minCol, int* maxRow, int* maxCol) override;
    bool TileExtentRange(int level, int row1, int col1, int row2, int col2, double* xmin, double* ymin,
                         double* xmax, double* ymax) override;
    bool DevicePosition(const LmRect& anchor, int row, int col, LmRect* out, int level) override;
    double TileSpanX(int level, double x, double y) override;
    double TileSpanY(int level, double x, double y) override;
    ///@}

    /// Empties Specials, then reads as LmPyramid::FromString; a rejected text
    /// leaves the own members unchanged but Specials empty.
    bool FromString(const char* xml) override;

    /// The first sub-pyramid whose own TopLevelIndex..BottomLevelIndex holds
    /// level, or null.
    LmPyramid* FindPyramid(int level) const;

    /// The sub-pyramids in the order read or appended. FromString replaces the
    /// list; FromXmlNode called directly appends to it.
    std::vector<LmSmarterPtr<LmPyramid>> Specials;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_PYRAMID_H
