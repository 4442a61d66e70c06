/// @file
/// The legacy projection parameter record: a fixed-layout structure that older
/// software used to carry a coordinate system (an ellipsoid, a projection type
/// number with its parameters, a seven-parameter datum shift and several tables),
/// its comma-separated text form, and its translation into a GDAL spatial
/// reference. LmSpatialReference reads this text with eLegacyParameters (and
/// tries it first with eAutoDetect).
///
/// Lengths stored in the record (ellipsoid axes, false easting and northing,
/// satellite height) are in kilometres; angles are in decimal degrees.
#ifndef LMSPATIALREFERENCE_LEGACYPARAMETERS_H
#define LMSPATIALREFERENCE_LEGACYPARAMETERS_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/lmstring.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

class OGRSpatialReference;

namespace Lumora {
namespace Kernel {

/// A 3x3 matrix of doubles, row-major.
struct tagMATRIX3 {
    double Value[3][3]; ///< Value[row][column]
};

/// Sets the diagonal of the matrix to 1.0 and every other element to 0.0.
/// Returns its argument (null stays null).
LM_API tagMATRIX3* matrix3_identity(tagMATRIX3* matrix);

/// Reads one field of the legacy text into a member of the record. Numbers
/// follow the C library's conversion rules: a text that is not a number reads
/// as 0.
template <class T>
struct Parser;

/// A 64-bit integer conversion of the text, truncated to its low 32 bits.
template <>
struct Parser<std::int32_t> {
    /// Reads text into value.
    static void Parse(const char* text, std::int32_t& value) {
        value = static_cast<std::int32_t>(static_cast<std::uint32_t>(Utility::LmCRT::_atoi64(text)));
    }
};

/// The C library's atof.
template <>
struct Parser<double> {
    /// Reads text into value.
    static void Parse(const char* text, double& value) { value = Utility::LmCRT::_atof(text); }
};

/// Fixed text arrays: the array is cleared, then at most N characters are
/// copied. A text of N characters or more therefore fills the array with NO
/// terminating zero (and is cut); read such arrays with LmFixedText.
template <std::size_t N>
struct Parser<char[N]> {
    /// Clears value, then copies at most N characters of text into it.
    static void Parse(const char* text, char (&value)[N]) {
        std::memset(value, 0, N);
        if (text != nullptr) std::memcpy(value, text, ::strnlen(text, N));
    }
};

/// A copy into a caller's buffer of `capacity` bytes, always terminated: at most
/// capacity - 1 characters are copied. Nothing is written when capacity is 0 or
/// the buffer is null; a null text gives an empty one.
template <>
struct Parser<char*> {
    /// Copies text into buffer, terminated.
    static void Parse(const char* text, char* buffer, std::size_t capacity) {
        if (buffer == nullptr || capacity == 0) return;
        std::size_t length = 0;
        if (text != nullptr) {
            length = ::strnlen(text, capacity - 1);
            std::memcpy(buffer, text, length);
        }
        buffer[length] = '\0';
    }
};

/// The text held in a fixed array of the record, read no further than the
/// array's end whether or not it is terminated.
template <std::size_t N>
Utility::LmString LmFixedText(const char (&text)[N]) {
    return Utility::LmString(std::string(text, ::strnlen(text, N)));
}

/// The legacy projection parameter record. The comment of each member gives
/// its position in the comma-separated text (0-based). Members marked "kept"
/// are read and stored but take no part in the translation to GDAL.
struct LM_API tag_Projection_Param {
    std::int32_t Kind;              ///< 0: leading integer (kept)
    char GeogName[128];             ///< 1: geographic system, also its datum and ellipsoid name
    double SemiMajorKm;             ///< 2: semi-major axis, km
    double SemiMinorKm;             ///< 3: semi-minor axis, km (kept)
    double InvFlattening;           ///< 4: inverse flattening
    double RadiusKm;                ///< 5: sphere radius, km (kept)
    std::int32_t ProjType;          ///< 6: projection type number, see ToGdal
    char ProjName[128];             ///< 7: projected system name
    std::int32_t ZoneWidth;         ///< 8: 0 for 6-degree zones, 1 for 3-degree zones
    std::int32_t ZoneNumber;        ///< 9: zone number
    std::int32_t Hemisphere;        ///< 10: 0 north, 1 south
    double FalseEastingKm;          ///< 11: false easting, km
    double FalseNorthingKm;         ///< 12: false northing, km
    double CentralMeridian;         ///< 13: degrees
    double OriginLatitude;          ///< 14: latitude of origin, degrees
    double ExtraParams[10];         ///< 15 to 24 (kept)
    double StdParallel1;            ///< 25: degrees
    double StdParallel2;            ///< 26: degrees
    double ScaleFactor;             ///< 27
    double SatelliteHeightKm;       ///< 28: km
    double TrueScaleLatitude;       ///< 29: latitude of true scale (polar stereographic), degrees
    double SpareParam;              ///< 30 (kept)
    tagMATRIX3 Matrix1;             ///< 31 to 39, row by row (kept)
    tagMATRIX3 Matrix2;             ///< 40 to 48, row by row (kept)
    double Affine[5];               ///< 49 to 53: three offsets, two scales (kept)
    std::int32_t ItemCount;         ///< 54 (kept)
    ///@{
    /// 55 to 254: item i is the five fields 55 + 5i to 59 + 5i, its name then
    /// its entries of the four value arrays (kept).
    char ItemNames[40][32];
    double ItemValue1[40];
    double ItemValue2[40];
    double ItemValue3[40];
    double ItemValue4[40];
    ///@}
    char Labels[4][50];             ///< 255 to 258 (kept)
    std::int32_t Flags[10];         ///< 259 to 268 (kept)
    /// 269 to 278: Shift[0] is the number of shift parameters; Shift[1..7] are
    /// dx, dy, dz (metres), rx, ry, rz (arc-seconds) and the scale difference
    /// (parts per million). Shift[10..19] are never read from text.
    double Shift[20];

    /// The defaults: Clarke 1866 (6378.2064 km, 1/f 294.9786982), type 0, a
    /// 6-degree zone 20 at 117 E with a 500 km false easting, origin latitude
    /// 30, standard parallels 25 and 45, scale 1, identity matrices, affine
    /// scales 1, empty texts and no datum shift.
    tag_Projection_Param();

    /// Reads the comma-separated text (fields as they are: no trimming, no
    /// quoting). A text of 287 fields or fewer (or null) gives false and leaves
    /// the record unchanged; otherwise fields 0 to 278 are stored, fields from
    /// 279 on are ignored, and the result is true.
    bool FromString(const char* text);

    /// The record is only ever read from text: always an empty text.
    Utility::LmString ToString() const;

    /// A new GDAL spatial reference, owned by the caller (destroy it with
    /// OGRSpatialReference::DestroySpatialReference), in the traditional GIS
    /// axis order; never null. ProjType 0, 40 and 41 give an EMPTY, non-null
    /// reference (no geographic part at all); 1 gives the geographic system
    /// only; 2 to 34 a projected system (see the source for the methods);
    /// any other number the geographic system and the projected name only.
    /// The Gauss-Kruger (11) and UTM (12) zone forms put the zone number in
    /// front of the false easting (zone 20 gives 20500000 m).
    OGRSpatialReference* ToGdal() const;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_LEGACYPARAMETERS_H
