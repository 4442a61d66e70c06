#include <lmspatialreference/legacyparameters.h>

#include "internal/ogrsupport.h"

#include <vector>

namespace Lumora {
namespace Kernel {

using Utility::LmString;

namespace {

// A valid text carries at least this many fields, though only the first 279
// are stored: the writers of the record always added a tail of nine or more.
constexpr std::size_t _minimumFields = 288;

// Hands the fields to the members one after the other, each with the parser
// of the member's type.
class _FieldCursor {
public:
    explicit _FieldCursor(const std::vector<LmString>& fields) : m_fields(fields) {}

    template <class T>
    void Read(T& member) {
        Parser<T>::Parse(m_fields[m_next++].c_str(), member);
    }
    template <class T, std::size_t N>
    void ReadEach(T (&members)[N]) {
        for (T& member : members) Read(member);
    }
    void Read(tagMATRIX3& matrix) {
        for (auto& row : matrix.Value) ReadEach(row);
    }

private:
    const std::vector<LmString>& m_fields;
    std::size_t m_next = 0;
};

template <class T, std::size_t N>
void _Fill(T (&values)[N], T value) {
    for (T& v : values) v = value;
}

}  // namespace

tagMATRIX3* matrix3_identity(tagMATRIX3* matrix) {
    if (matrix == nullptr) return nullptr;
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 3; ++c) matrix->Value[r][c] = r == c ? 1.0 : 0.0;
    return matrix;
}

tag_Projection_Param::tag_Projection_Param()
    : Kind(0),
      SemiMajorKm(6378.2064),
      SemiMinorKm(6356.583799998981),
      InvFlattening(294.9786982),
      RadiusKm(6371.116),
      ProjType(0),
      ZoneWidth(0),
      ZoneNumber(20),
      Hemisphere(0),
      FalseEastingKm(500.0),
      FalseNorthingKm(0.0),
      CentralMeridian(117.0),
      OriginLatitude(30.0),
      ExtraParams{0, 100, 100, 100, 25, 45, 100, 120, 105, 123},
      StdParallel1(25.0),
      StdParallel2(45.0),
      ScaleFactor(1.0),
      SatelliteHeightKm(0.0),
      TrueScaleLatitude(0.0),
      SpareParam(30.0),
      Affine{0, 0, 0, 1, 1},
      ItemCount(0) {
    GeogName[0] = '\0';
    ProjName[0] = '\0';
    matrix3_identity(&Matrix1);
    matrix3_identity(&Matrix2);
    for (auto& name : ItemNames) name[0] = '\0';
    _Fill(ItemValue1, 0.0);
    _Fill(ItemValue2, 0.0);
    _Fill(ItemValue3, 0.0);
    _Fill(ItemValue4, 0.0);
    for (auto& label : Labels) label[0] = '\0';
    _Fill(Flags, 0);
    _Fill(Shift, 0.0);
}

bool tag_Projection_Param::FromString(const char* text) {
    if (text == nullptr) return false;
    const std::vector<LmString> fields = Utility::LmStringHelp::Split(text, ',');
    if (fields.size() < _minimumFields) return false;

    _FieldCursor cursor(fields);
    cursor.Read(Kind);
    cursor.Read(GeogName);
    cursor.Read(SemiMajorKm);
    cursor.Read(SemiMinorKm);
    cursor.Read(InvFlattening);
    cursor.Read(RadiusKm);
    cursor.Read(ProjType);
    cursor.Read(ProjName);
    cursor.Read(ZoneWidth);
    cursor.Read(ZoneNumber);
    cursor.Read(Hemisphere);
    cursor.Read(FalseEastingKm);
    cursor.Read(FalseNorthingKm);
    cursor.Read(CentralMeridian);
    cursor.Read(OriginLatitude);
    cursor.ReadEach(ExtraParams);
    cursor.Read(StdParallel1);
    cursor.Read(StdParallel2);
    cursor.Read(ScaleFactor);
    cursor.Read(SatelliteHeightKm);
    cursor.Read(TrueScaleLatitude);
    cursor.Read(SpareParam);
    cursor.Read(Matrix1);
    cursor.Read(Matrix2);
    cursor.ReadEach(Affine);
    cursor.Read(ItemCount);
    // The item table is stored as parallel arrays but written item by item.
    for (int i = 0; i < 40; ++i) {
        cursor.Read(ItemNames[i]);
        cursor.Read(ItemValue1[i]);
        cursor.Read(ItemValue2[i]);
        cursor.Read(ItemValue3[i]);
        cursor.Read(ItemValue4[i]);
    }
    cursor.ReadEach(Labels);
    cursor.ReadEach(Flags);
    for (int i = 0; i < 10; ++i) cursor.Read(Shift[i]);
    return true;
}

LmString tag_Projection_Param::ToString() const { return LmString(); }

OGRSpatialReference* tag_Projection_Param::ToGdal() const {
    // GDAL's return codes are deliberately ignored: a refused parameter leaves
    // the reference as far as it got, and its complaints must stay off stderr.
    LmQuietGdalErrors quiet;
    OGRSpatialReference* srs = WithGisAxisOrder(OGRSpatialReference::FromHandle(OSRNewSpatialReference(nullptr)));
    if (srs == nullptr || ProjType == 0 || ProjType == 40 || ProjType == 41) return srs;

    // One name serves the geographic system, its datum and its ellipsoid.
    const LmString geogName = LmFixedText(GeogName);
    srs->SetGeogCS(geogName.c_str(), geogName.c_str(), geogName.c_str(), SemiMajorKm * 1000.0, InvFlattening,
                   nullptr, 0.0, nullptr, 0.0);

    const double fe = FalseEastingKm * 1000.0;
    const double fn = FalseNorthingKm * 1000.0;
    if (ProjType != 1) srs->SetProjCS(LmFixedText(ProjName).c_str());

    const double lat0 = OriginLatitude;
    const double lon0 = CentralMeridian;
    const double sp1 = StdParallel1;
    const double sp2 = StdParallel2;
    const double k = ScaleFactor;
    // The zone forms of types 11 and 12 write the zone number in front of the
    // false easting (zone 20 gives 20500000 m), as the data this record comes
    // from expects. The zone range is checked before any arithmetic on it.
    const bool standardEasting = fe == 500000.0;
    const bool sixDegreeZone = ZoneNumber >= 1 && ZoneNumber <= 60 && lon0 == ZoneNumber * 6.0 - 3.0;
    const bool threeDegreeZone = ZoneNumber >= 1 && ZoneNumber <= 120 && lon0 == ZoneNumber * 3.0;
    const double zonedEasting = ZoneNumber * 1000000.0 + fe;

    switch (ProjType) {
        case 2: srs->SetACEA(lat0, lat0, lat0, lon0, fe, fn); break;
        case 3: srs->SetACEA(sp1, sp2, lat0, lon0, fe, fn); break;
        case 4: srs->SetEC(lat0, lat0, lat0, lon0, fe, fn); break;
        case 5: srs->SetEC(sp1, sp2, lat0, lon0, fe, fn); break;
        case 6: srs->SetLCC1SP(lat0, lon0, 1.0, fe, fn); break;
        case 7: srs->SetLCC(sp1, sp2, lat0, lon0, fe, fn); break;
        case 8:
        case 10: srs->SetPolyconic(lat0, lon0, fe, fn); break;
        case 11:
            if (standardEasting && ZoneWidth == 0 && sixDegreeZone)
                srs->SetTM(0.0, lon0, 1.0, zonedEasting, fn);
            else if (standardEasting && ZoneWidth == 1 && threeDegreeZone)
                srs->SetTM(0.0, lon0, 1.0, zonedEasting, fn);
            else
                srs->SetTM(lat0, lon0, k, fe, fn);
            break;
        case 12:
            // The stored false northing gives way to the hemisphere's here.
            if (standardEasting && sixDegreeZone && (Hemisphere == 0 || Hemisphere == 1))
                srs->SetTM(0.0, lon0, 0.9996, zonedEasting, Hemisphere == 1 ? 10000000.0 : 0.0);
            else
                srs->SetTM(lat0, lon0, k, fe, fn);
            break;
        case 13: srs->SetCEA(0.0, lon0, fe, fn); break;
        case 14: srs->SetCEA(lat0, lon0, fe, fn); break;
        case 15: srs->SetEquirectangular(0.0, lon0, fe, fn); break;
        case 16: srs->SetEquirectangular(lat0, lon0, fe, fn); break;
        case 17: srs->SetMercator(0.0, lon0, k, fe, fn); break;
        case 18: srs->SetMercator(lat0, lon0, k, fe, fn); break;
        case 19:
        case 23: srs->SetLAEA(lat0, lon0, fe, fn); break;
        case 20: srs->SetPS(TrueScaleLatitude, lon0, k, fe, fn); break;
        case 21: srs->SetPS(TrueScaleLatitude, lon0, 1.0, 0.0, 0.0); break;
        case 22:
        case 26: srs->SetAE(lat0, lon0, fe, fn); break;
        case 24: srs->SetOS(lat0, lon0, k, fe, fn); break;
        case 25: srs->SetOS(30.0, 105.0, k, fe, fn); break;
        case 27: srs->SetGnomonic(lat0, lon0, fe, fn); break;
        case 28: srs->SetOrthographic(lat0, lon0, fe, fn); break;
        case 29: srs->SetStereographic(lat0, lon0, 1.0, fe, fn); break;
        case 30: srs->SetGEOS(lon0, SatelliteHeightKm * 1000.0, fe, fn); break;
        case 31: srs->SetBonne(lat0, lon0, fe, fn); break;
        case 32: srs->SetSinusoidal(lon0, fe, fn); break;
        case 33: srs->SetEckertVI(lon0, fe, fn); break;
        case 34: srs->SetMollweide(lon0, fe, fn); break;
        default: break;  // 1 and 9 have no method; other numbers are unknown.
    }
    // Only a full seven-parameter block is a datum shift. It goes on last:
    // GDAL 3 replaces a base system that already carries TOWGS84 with WGS 84
    // when the system is then made projected.
    if (Shift[0] == 7.0) srs->SetTOWGS84(Shift[1], Shift[2], Shift[3], Shift[4], Shift[5], Shift[6], Shift[7]);
    return srs;
}

}  // namespace Kernel
}  // namespace Lumora
