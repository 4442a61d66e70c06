// Runs the known answers of tests/data/*.known: one test per line, named after
// its file and line. Each file documents its operations at its top.
//
// A line is "<operation> <inputs> -> <expected outputs> +- <tolerance>", with
// one tolerance for every output or one per output; "*" as an expected output
// leaves it unchecked, and a "quoted text" must equal the output exactly.
// "reference <name> <kind> <text>" names a spatial reference for the lines
// after it in the same file; <kind> is wkt, proj4 or xml (the text as
// written), wellknown (wgs84, cgcs2000, webmercator), epsg-wkt or epsg-xml (the
// text GDAL writes for an EPSG code, authority and axes included), code (the
// library's reference for an EPSG code) or code-wkt (read back from its WKT).
#include "tests/fitting/estimation_fixtures.h"
#include "tests/fixtures.h"

#include <gtest/gtest.h>
#include <ogr_spatialref.h>
#include <ogr_srs_api.h>

#include <dirent.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iomanip>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace Fixtures;

namespace {

// A file's named references, as (kind, text): they are built when a case runs,
// never while the cases are being registered.
using References = std::map<std::string, std::pair<std::string, std::string>>;

struct KnownAnswer {
    std::string file;
    int line = 0;
    std::string operation;  // empty for a line that could not be read
    std::vector<std::string> inputs, expected;
    std::vector<bool> quoted;  // per expected output
    std::vector<double> tolerances;
    std::shared_ptr<const References> references;
};

// Names a case by its place in the data, for gtest's messages.
void PrintTo(const KnownAnswer& answer, std::ostream* out) { *out << answer.file << ":" << answer.line; }

std::vector<double> _Numbers(const std::vector<std::string>& words, std::size_t from = 0) {
    std::vector<double> numbers;
    for (std::size_t i = from; i < words.size(); ++i) numbers.push_back(std::strtod(words[i].c_str(), nullptr));
    return numbers;
}

void _ReadFile(const std::string& name, std::vector<KnownAnswer>& answers) {
    std::ifstream in(std::string(LM_TEST_KNOWN_DIR) + "/" + name);
    auto references = std::make_shared<References>();
    std::string text;
    for (int line = 1; std::getline(in, text); ++line) {
        std::istringstream words(text);
        std::string operation, label, kind, word;
        if (!(words >> operation) || operation[0] == '#') continue;
        if (operation == "reference" && words >> label >> kind >> std::ws && std::getline(words, word)) {
            (*references)[label] = {kind, word};
            continue;
        }
        KnownAnswer answer{name, line, "", {}, {}, {}, {}, references};
        std::vector<std::string>* part = &answer.inputs;
        while (words >> std::ws && !words.eof()) {
            const bool quoted = words.peek() == '"';
            words >> std::quoted(word);
            if (word == "->" && !quoted) part = &answer.expected;
            else if (word == "+-" && !quoted) part = nullptr;
            else if (part) part->push_back(word);
            else answer.tolerances.push_back(std::strtod(word.c_str(), nullptr));
            if (part == &answer.expected && word != "->") answer.quoted.push_back(quoted);
        }
        const std::size_t tolerances = answer.tolerances.size();
        if (!answer.expected.empty() && (tolerances == 1 || tolerances == answer.expected.size()))
            answer.operation = operation;
        answers.push_back(answer);
    }
}

std::vector<KnownAnswer> _ReadAll() {
    std::vector<std::string> names;
    if (DIR* dir = opendir(LM_TEST_KNOWN_DIR)) {
        while (const dirent* entry = readdir(dir)) {
            const std::string name = entry->d_name;
            if (name.size() > 6 && name.compare(name.size() - 6, 6, ".known") == 0) names.push_back(name);
        }
        closedir(dir);
    }
    std::sort(names.begin(), names.end());
    std::vector<KnownAnswer> answers;
    for (const std::string& name : names) _ReadFile(name, answers);
    return answers;
}

LmSmarterPtr<LmSpatialReference> _Named(const KnownAnswer& answer, std::size_t input) {
    const auto found = answer.references->find(answer.inputs.at(input));
    if (found == answer.references->end()) return LmSmarterPtr<LmSpatialReference>();
    const auto& [kind, text] = found->second;
    if (kind == "wkt") return Reference(text.c_str(), eWKT);
    if (kind == "proj4") return Reference(text.c_str(), eProj4);
    if (kind == "xml") return Reference(text.c_str(), eXML);
    if (kind == "epsg-wkt") return Reference(EpsgWkt(std::stoi(text)).c_str(), eWKT);
    if (kind == "epsg-xml") return Reference(Reference(EpsgWkt(std::stoi(text)).c_str())->ExportToXml().c_str(), eXML);
    if (kind == "code") return LmSmarterPtr<LmSpatialReference>(new LmSpatialReference(std::stoi(text)));
    if (kind == "code-wkt") return Reference(LmSpatialReference(std::stoi(text)).ExportToWKT(false).c_str(), eWKT);
    if (text == "wgs84") return Reference(eWGS84);
    if (text == "cgcs2000") return Reference(eCGCS2000);
    return Reference(eWebMercator);
}

LmCoordinateTransformationMethod _Method(const std::string& name) {
    if (name == "position-vector") return ePositionVector7Parameter;
    if (name == "coordinate-frame") return eCoordinateFrame7Parameter;
    return eGeocentricTranslation3Parameter;
}

LmSmarterPtr<LmPyramid> _Pyramid(const std::string& name) {
    return LmPyramid::WellknownPyramid(name == "webmercator" ? eWebMercatorPyramid : eGeographicPyramid);
}

// The operations: each gives the values a line's inputs lead to.
using Operation = std::function<std::vector<double>(const KnownAnswer&)>;

// The operations on the descriptive records of a reference, whose outputs
// mix texts and numbers.
using Outputs = std::vector<std::string>;
using RecordOperation = std::function<Outputs(const LmSpatialReference&, int index)>;

const std::map<std::string, RecordOperation>& _RecordOperations() {
    static const std::map<std::string, RecordOperation> operations = {
        // coordinate-system <reference> -> code "name"
        {"coordinate-system",
         [](const LmSpatialReference& r, int) {
             const LmCoordinateSystem cs = r.CoordinateSystem();
             return Outputs{std::to_string(cs.Code), cs.Name};
         }},
        // axis <reference> index -> order "name" "abbreviation" "orientation" nameCode csCode unitCode
        {"axis",
         [](const LmSpatialReference& r, int index) {
             const LmCoordinateAxis axis = r.CoordinateAxis(index);
             return Outputs{std::to_string(axis.Order), axis.Name, axis.Abbreviation, axis.Orientation,
                            std::to_string(axis.AxisNameCode), std::to_string(axis.CoordinateSystemCode),
                            std::to_string(axis.UnitCode)};
         }},
        // geographic-crs <reference> -> code "name" "kind" csCode datumCode datumCode
        {"geographic-crs",
         [](const LmSpatialReference& r, int) {
             const LmCoordinateReferenceSystem crs = r.GeographicCoordinateReferenceSystem();
             return Outputs{std::to_string(crs.Code), crs.Name, crs.Kind, std::to_string(crs.CoordinateSystemCode),
                            std::to_string(crs.DatumCode[0]), std::to_string(crs.DatumCode[1])};
         }},
        // datum <reference> -> code "name" ellipsoidCode primeMeridianCode ellipsoidUnitCode
        {"datum",
         [](const LmSpatialReference& r, int) {
             const LmDatum datum = r.Datum();
             return Outputs{std::to_string(datum.Code), datum.Name, std::to_string(datum.EllipsoidCode),
                            std::to_string(datum.PrimeMeridianCode), std::to_string(r.EllipsoidInfo().UnitCode)};
         }},
        // conversion <reference> -> methodCode "name" parameterCount
        {"conversion",
         [](const LmSpatialReference& r, int) {
             const LmCoordinateConversionsRule rule = r.CoordinateConversionsRule();
             return Outputs{std::to_string(rule.MethodCode), rule.Name,
                            std::to_string(r.CoordinateConversionsParameterCount())};
         }},
        // conversion-parameter <reference> index -> "name" methodCode parameterCode value unit
        {"conversion-parameter",
         [](const LmSpatialReference& r, int index) {
             const LmCoordinateConversionsParameter p = r.CoordinateConversionsParameter(index);
             return Outputs{p.Name, std::to_string(p.MethodCode), std::to_string(p.ParameterCode),
                            std::to_string(p.Value), std::to_string(static_cast<int>(p.Unit))};
         }},
    };
    return operations;
}

const std::map<std::string, Operation>& _Operations() {
    static const std::map<std::string, Operation> operations = {
        // project <source> <target> x y [z] -> x y [z]
        {"project",
         [](const KnownAnswer& a) {
             std::vector<double> xyz = _Numbers(a.inputs, 2);
             LmProjectCoordinateTransformation projection(_Named(a, 0), _Named(a, 1));
             EXPECT_TRUE(projection.Transformation(xyz.data(), 1, static_cast<int>(xyz.size())));
             return xyz;
         }},
        // shift <source> <target> <method> p1 .. p7 x y -> x y
        {"shift",
         [](const KnownAnswer& a) {
             const std::vector<double> numbers = _Numbers(a.inputs, 3);
             LmParameterProjectCoordinateTransformation shift(_Named(a, 0), _Named(a, 1), _Method(a.inputs.at(2)),
                                                              numbers.data());
             std::vector<double> xy(numbers.begin() + 7, numbers.end());
             EXPECT_TRUE(shift.Transformation(xy.data(), 1, 2));
             return xy;
         }},
        // bursa-chain <source> <target> dX dY dZ rx ry rz ppm x y z -> x y z:
        // the factory's chain through geocentric coordinates.
        {"bursa-chain",
         [](const KnownAnswer& a) {
             const std::vector<double> numbers = _Numbers(a.inputs, 2);
             LmSmarterPtr<LmCoordinateTransformation> chain =
                 LmCoordinateTransformationFactory::CreateBursa7CoordinateTransformation(_Named(a, 0), _Named(a, 1),
                                                                                         numbers.data());
             std::vector<double> xyz(numbers.begin() + 7, numbers.end());
             EXPECT_TRUE(chain->Transformation(xyz.data(), 1, 3));
             return xyz;
         }},
        {"gcj02",
         [](const KnownAnswer& a) {
             std::vector<double> out(2);
             WGS84ToGCJ02(_Numbers(a.inputs).data(), out.data(), nullptr);
             return out;
         }},
        {"bd09",
         [](const KnownAnswer& a) {
             std::vector<double> out(2);
             WGS84ToBD09(_Numbers(a.inputs).data(), out.data(), nullptr);
             return out;
         }},
        {"out-of-china",
         [](const KnownAnswer& a) {
             const std::vector<double> in = _Numbers(a.inputs);
             return std::vector<double>{outOfChina(in.at(0), in.at(1)) ? 1.0 : 0.0};
         }},
        // geodesic-inverse a f lon1 lat1 lon2 lat2 -> distance azi1 azi2
        {"geodesic-inverse",
         [](const KnownAnswer& a) {
             const std::vector<double> in = _Numbers(a.inputs);
             std::vector<double> out(3);
             out[0] = LmGeodesic(in.at(0), in.at(1)).Inverse(in.at(2), in.at(3), in.at(4), in.at(5), &out[1], &out[2]);
             return out;
         }},
        // geodesic-direct a f lon1 lat1 azi1 distance -> lon2 lat2 azi2
        {"geodesic-direct",
         [](const KnownAnswer& a) {
             const std::vector<double> in = _Numbers(a.inputs);
             std::vector<double> out(3);
             LmGeodesic(in.at(0), in.at(1)).Direct(in.at(2), in.at(3), in.at(4), in.at(5), &out[0], &out[1], &out[2]);
             return out;
         }},
        // geodesic-interpolate a f lon1 lat1 lon2 lat2 fraction -> lon lat azi
        {"geodesic-interpolate",
         [](const KnownAnswer& a) {
             const std::vector<double> in = _Numbers(a.inputs);
             std::vector<double> out(3);
             LmGeodesic(in.at(0), in.at(1))
                 .Interpolation(in.at(2), in.at(3), in.at(4), in.at(5), in.at(6), &out[0], &out[1], &out[2]);
             return out;
         }},
        // tile-extent <webmercator|geographic> level row col -> xmin ymin xmax ymax
        {"tile-extent",
         [](const KnownAnswer& a) {
             const std::vector<double> in = _Numbers(a.inputs, 1);
             std::vector<double> out(4);
             EXPECT_TRUE(_Pyramid(a.inputs.at(0))
                             ->TileExtent(int(in.at(0)), int(in.at(1)), int(in.at(2)), &out[0], &out[1], &out[2], &out[3]));
             return out;
         }},
        // tile-index <webmercator|geographic> level x y -> row col pixelX pixelY
        {"tile-index",
         [](const KnownAnswer& a) {
             const std::vector<double> in = _Numbers(a.inputs, 1);
             int row = -1, col = -1, px = -1, py = -1;
             EXPECT_TRUE(_Pyramid(a.inputs.at(0))->TileIndex(int(in.at(0)), in.at(1), in.at(2), &row, &col, &px, &py));
             return std::vector<double>{double(row), double(col), double(px), double(py)};
         }},
        // plane4-recover dX dY seconds ppm noise -> dX dY seconds ppm meanError:
        // twelve Gauss-Kruger points of a 40 km square moved by the similarity
        // X = dX + k (x cos t - y sin t), Y = dY + k (x sin t + y cos t).
        {"plane4-recover",
         [](const KnownAnswer& a) {
             using EstimationTests::Noise;
             const std::vector<double> in = _Numbers(a.inputs);
             const double t = in.at(2) * kPi / 180.0 / 3600.0, k = 1.0 + in.at(3) * 1e-6;
             std::vector<double> source, target;
             for (int i = 0; i < 12; ++i) {
                 const double x = 480000.0 + 40000.0 * std::fmod(i * 0.618034, 1.0);
                 const double y = 3400000.0 + 40000.0 * std::fmod(i * 0.414214, 1.0);
                 source.insert(source.end(), {x, y});
                 target.push_back(in[0] + k * (x * std::cos(t) - y * std::sin(t)) + Noise(2 * i, in.at(4)));
                 target.push_back(in[1] + k * (x * std::sin(t) + y * std::cos(t)) + Noise(2 * i + 1, in.at(4)));
             }
             std::vector<double> out(5, -1.0);
             LmCoordinateTransformationFactory::ComputePlane4Parameter(12, 2, source.data(), target.data(), out.data(),
                                                                       out[4]);
             return out;
         }},
        // bursa-recover <coordinate-frame|position-vector> dX dY dZ rx ry rz ppm noise
        //   -> dX dY dZ rx ry rz ppm meanError:
        // fifteen CGCS2000 points over eastern China carried to Beijing 1954
        // by the linearised Helmert model in the given rotation convention.
        {"bursa-recover",
         [](const KnownAnswer& a) {
             using namespace EstimationTests;
             const std::vector<double> p = _Numbers(a.inputs, 1);
             const Helmert truth = {p.at(0), p.at(1), p.at(2), p.at(3), p.at(4), p.at(5), p.at(6)};
             const BursaCase c = MakeBursaCase(truth, a.inputs.at(0) == "coordinate-frame", 15, p.at(7));
             std::vector<double> out(8, -1.0);
             LmCoordinateTransformationFactory::ComputeBursa7Parameter(
                 EstimationTests::Reference(kCgcs2000), EstimationTests::Reference(kBeijing1954), 15, 3,
                 c.source.data(), c.target.data(), out.data(), out[7]);
             return out;
         }},
        // legacy-projection type method parameterName... -> parameterValue...:
        // a record named "Proj" on "Geog" (Krassowsky's ellipsoid) whose
        // parameters all differ, so one read from the wrong member shows.
        {"legacy-projection",
         [](const KnownAnswer& a) {
             tag_Projection_Param r;
             r.ProjType = std::stoi(a.inputs.at(0));
             Parser<char[128]>::Parse("Geog", r.GeogName);
             Parser<char[128]>::Parse("Proj", r.ProjName);
             r.SemiMajorKm = 6378.245;
             r.InvFlattening = 298.3;
             r.FalseEastingKm = 123.0;
             r.FalseNorthingKm = 45.5;
             r.OriginLatitude = 31.0;
             r.CentralMeridian = 118.0;
             r.StdParallel1 = 24.0;
             r.StdParallel2 = 46.0;
             r.ScaleFactor = 0.95;
             r.TrueScaleLatitude = 71.0;
             r.SatelliteHeightKm = 35786.0;
             std::unique_ptr<OGRSpatialReference, void (*)(OGRSpatialReference*)> srs(
                 r.ToGdal(), OGRSpatialReference::DestroySpatialReference);
             EXPECT_STREQ(srs->GetAttrValue("PROJECTION"), a.inputs.at(1).c_str());
             EXPECT_STREQ(srs->GetAttrValue("PROJCS"), "Proj");
             EXPECT_STREQ(srs->GetAttrValue("GEOGCS"), "Geog");
             EXPECT_STREQ(srs->GetAttrValue("DATUM"), "Geog");
             EXPECT_DOUBLE_EQ(srs->GetSemiMajor(), 6378245.0);
             EXPECT_DOUBLE_EQ(srs->GetInvFlattening(), 298.3);
             EXPECT_EQ(srs->GetAxisMappingStrategy(), OAMS_TRADITIONAL_GIS_ORDER);
             std::vector<double> out;
             for (std::size_t i = 2; i < a.inputs.size(); ++i) out.push_back(srs->GetProjParm(a.inputs[i].c_str(), -1));
             return out;
         }},
        // legacy-zone type zoneWidth zoneNumber hemisphere centralMeridian falseEastingKm
        //   -> centralMeridian originLatitude scaleFactor falseEasting falseNorthing:
        // the Transverse Mercator GDAL makes of a legacy record whose own
        // origin latitude is 31, scale factor 0.8 and false northing 10 km.
        {"legacy-zone",
         [](const KnownAnswer& a) {
             const std::vector<double> in = _Numbers(a.inputs);
             tag_Projection_Param r;
             r.ProjType = int(in.at(0));
             r.ZoneWidth = int(in.at(1));
             r.ZoneNumber = int(in.at(2));
             r.Hemisphere = int(in.at(3));
             r.CentralMeridian = in.at(4);
             r.FalseEastingKm = in.at(5);
             r.OriginLatitude = 31;
             r.ScaleFactor = 0.8;
             r.FalseNorthingKm = 10;
             std::unique_ptr<OGRSpatialReference, void (*)(OGRSpatialReference*)> srs(
                 r.ToGdal(), OGRSpatialReference::DestroySpatialReference);
             EXPECT_STREQ(srs->GetAttrValue("PROJECTION"), SRS_PT_TRANSVERSE_MERCATOR);
             std::vector<double> out;
             for (const char* name : {SRS_PP_CENTRAL_MERIDIAN, SRS_PP_LATITUDE_OF_ORIGIN, SRS_PP_SCALE_FACTOR,
                                      SRS_PP_FALSE_EASTING, SRS_PP_FALSE_NORTHING})
                 out.push_back(srs->GetProjParm(name, -1));
             return out;
         }},
    };
    return operations;
}

class KnownAnswers : public testing::TestWithParam<KnownAnswer> {};

TEST_P(KnownAnswers, Hold) {
    const KnownAnswer& answer = GetParam();
    SCOPED_TRACE(answer.file + ":" + std::to_string(answer.line));
    Outputs got;
    const auto operation = _Operations().find(answer.operation);
    const auto record = _RecordOperations().find(answer.operation);
    if (operation != _Operations().end()) {
        // Seventeen digits give every double back exactly.
        char text[32];
        for (double value : operation->second(answer))
            got.emplace_back(text, std::snprintf(text, sizeof text, "%.17g", value));
    } else if (record != _RecordOperations().end()) {
        const LmSmarterPtr<LmSpatialReference> reference = _Named(answer, 0);
        ASSERT_TRUE(reference);
        got = record->second(*reference, answer.inputs.size() > 1 ? std::stoi(answer.inputs[1]) : 0);
    } else {
        FAIL() << "unknown operation or malformed line";
    }
    ASSERT_EQ(got.size(), answer.expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        if (answer.quoted[i]) {
            EXPECT_EQ(got[i], answer.expected[i]) << "output " << i;
        } else if (answer.expected[i] != "*") {
            const double tolerance = answer.tolerances[answer.tolerances.size() == 1 ? 0 : i];
            EXPECT_NEAR(std::strtod(got[i].c_str(), nullptr), std::strtod(answer.expected[i].c_str(), nullptr),
                        tolerance)
                << "output " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Data, KnownAnswers, testing::ValuesIn(_ReadAll()),
                         [](const testing::TestParamInfo<KnownAnswer>& info) {
                             std::string name = info.param.file.substr(0, info.param.file.size() - 6);
                             return name + "_line" + std::to_string(info.param.line);
                         });

}  // namespace
