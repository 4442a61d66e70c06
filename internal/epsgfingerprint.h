// The numbers and names by which a reference is compared with EPSG codes, read
// once from its OGR object. The same reading serves the generator, which
// writes one fingerprint per code into the data folder's EPSG.index, and the
// searches, which read the text being identified; so both sides always agree
// on how a value was normalised.
#ifndef LMSPATIALREFERENCE_INTERNAL_EPSGFINGERPRINT_H
#define LMSPATIALREFERENCE_INTERNAL_EPSGFINGERPRINT_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

class OGRSpatialReference;

namespace Lumora {
namespace Kernel {

using LmNamedValues = std::vector<std::pair<std::string, double>>;

struct LmEPSGFingerprint {
    // Only in the index: the code, whether EPSG deprecated it, and a hash of
    // the text the numbers were read from (0 for a code not in EPSG.txt).
    int code = 0;
    bool deprecated = false;
    // An entry of the alias category rather than the code's own definition:
    // it speeds up the alias search and takes no part in FindEPSG.
    bool alias = false;
    std::uint64_t textHash = 0;

    // 'G' geographic, 'P' projected, 'O' anything else, per OGR.
    char kind = 'O';
    double semiMajor = 0.0;
    double semiMinor = 0.0;
    double inverseFlattening = 0.0;
    double primeMeridian = 0.0;  // degrees
    double angularUnit = 0.0;    // radians per unit
    double linearUnit = 0.0;     // metres per unit
    std::string projection;      // PROJECTION, lower case
    std::string name;            // the CS name
    std::string rootName;        // the CS name, lower case
    bool vertical = false;       // has a VERT_DATUM
    bool northingFirst = false;  // the PROJCS's first AXIS points north or south
    double falseEasting = 0.0;   // in metres
    double falseNorthing = 0.0;
    // Per PARAMETER of the PROJCS, first occurrence of each lower-case name:
    // the value as written, and the value in degrees or metres.
    LmNamedValues parameters;
    LmNamedValues normalizedParameters;
    // Name keys (see LmNameKey): the datum's, and the CS's, each with every
    // alias the EPSG dataset and ESRI give it.
    std::vector<std::string> datumKeys;
    std::vector<std::string> nameKeys;
};

// The fingerprint of an OGR reference, under GDAL's quiet error handler. The
// names it holds are the object's own, one key each.
LmEPSGFingerprint ReadFingerprint(const OGRSpatialReference& srs);

// A name reduced to what spellings of it share: lower-case letters and digits
// only, so "NAD83 / UTM zone 18N" and "NAD_83_UTM_Zone_18N" meet, and without
// ESRI's "D_" and "GCS_" prefixes.
std::string LmNameKey(const char* name);

// FNV-1a, to tell whether an index line was computed from the text at hand.
std::uint64_t LmTextHash(const char* text);

// The text in lower case (ASCII), empty for null.
std::string LmLowerCase(const char* text);

// One line of EPSG.index, and back. Reading fails on a malformed line.
std::string FormatFingerprint(const LmEPSGFingerprint& fingerprint);
bool ParseFingerprint(const std::string& line, LmEPSGFingerprint& fingerprint);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_INTERNAL_EPSGFINGERPRINT_H
