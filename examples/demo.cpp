// A tour of the library. First its typical request: project 10,000 interleaved
// WGS 84 points (x = longitude, y = latitude, step 2) to UTM zone 50N, once
// serially and once in parallel, then to an EPSG-coded target. Then a GCJ-02
// round trip, geodesics on WGS 84, and an affine transformation estimated from
// control points with its numeric inverse. Then Bursa seven parameters
// estimated from control points between CGCS2000 and Beijing 1954, with their
// residuals, and the typical estimation end to end through the factory: Bursa
// parameters from control points in two projected references, applied to new
// points. Last, a Gauss-Kruger reference read from a legacy parameter record
// and the Web Mercator tile pyramid of web maps.
#include <lmspatialreference/lmspatialreference.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

using namespace Lumora::Kernel;
using Lumora::Utility::LmGlobeConfig;

namespace {

const char* const kWgs84 =
    R"(GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";

const char* const kUtmZone50N =
    R"(PROJCS["WGS 84 / UTM zone 50N",GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],)"
    R"(PARAMETER["latitude_of_origin",0],PARAMETER["central_meridian",117],PARAMETER["scale_factor",0.9996],)"
    R"(PARAMETER["false_easting",500000],PARAMETER["false_northing",0],UNIT["metre",1]])";

// A grid of (lon, lat) pairs over eastern China, inside UTM zone 50.
std::vector<double> SamplePoints(int count) {
    std::vector<double> xy(2 * count);
    for (int i = 0; i < count; ++i) {
        xy[2 * i] = 114.0 + 6.0 * (i % 100) / 100.0;
        xy[2 * i + 1] = 22.0 + 18.0 * (i / 100) / 100.0;
    }
    return xy;
}

bool ProjectTypicalRequest() {
    LmSmarterPtr<LmSpatialReference> source(new LmSpatialReference(kWgs84, eWKT));
    LmSmarterPtr<LmSpatialReference> target(new LmSpatialReference(kUtmZone50N, eWKT));

    const int count = 10000;
    std::vector<double> serial = SamplePoints(count);
    std::vector<double> parallel = serial;

    // The parallel switch is read when a transformation is made.
    LmSmarterPtr<LmCoordinateTransformation> serialProjection(new LmProjectCoordinateTransformation(source, target));
    LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/Parallel", "true");
    LmSmarterPtr<LmCoordinateTransformation> parallelProjection(
        new LmProjectCoordinateTransformation(source, target));

    const bool serialOk = serialProjection->Transformation(serial.data(), count, 2);
    const bool parallelOk = parallelProjection->Transformation(parallel.data(), count, 2);

    const std::vector<double> input = SamplePoints(count);
    for (int i : {0, 4550, count - 1})
        std::printf("(%.2f, %.2f) -> E %.3f  N %.3f\n", input[2 * i], input[2 * i + 1], serial[2 * i],
                    serial[2 * i + 1]);
    std::printf("every point transformed: serial %s, parallel %s\n", serialOk ? "yes" : "no",
                parallelOk ? "yes" : "no");
    std::printf("serial and parallel results agree: %s\n", serial == parallel ? "yes" : "no");
    return serialOk && parallelOk && serial == parallel;
}

// The typical request again with an EPSG-coded target, CGCS 2000 / 3-degree
// Gauss-Kruger CM 114E, read from the library's EPSG table; then EPSG() of the
// three built-in references, which the alias category identifies.
bool ProjectToEpsgCodedTarget() {
    LmSmarterPtr<LmSpatialReference> source(new LmSpatialReference(kWgs84, eWKT));
    LmSmarterPtr<LmSpatialReference> target(new LmSpatialReference(4547));
    if (target->IsNull()) {
        std::printf("\nEPSG:4547 is unknown: is the data folder installed beside the library?\n");
        return false;
    }
    std::printf("\nEPSG:4547 is \"%s\"\n", target->Name().c_str());
    const int count = 10000;
    std::vector<double> xy(2 * count);
    for (int i = 0; i < count; ++i) {
        xy[2 * i] = 112.5 + 3.0 * (i % 100) / 100.0;
        xy[2 * i + 1] = 22.0 + 18.0 * (i / 100) / 100.0;
    }
    const std::vector<double> input = xy;
    LmSmarterPtr<LmCoordinateTransformation> projection(new LmProjectCoordinateTransformation(source, target));
    const bool ok = projection->Transformation(xy.data(), count, 2);
    for (int i : {0, 4550, count - 1})
        std::printf("(%.2f, %.2f) -> E %.3f  N %.3f\n", input[2 * i], input[2 * i + 1], xy[2 * i], xy[2 * i + 1]);
    std::printf("every point transformed: %s\n", ok ? "yes" : "no");

    std::printf("EPSG() of the built-ins: WGS 84 %d, CGCS 2000 %d, Web Mercator %d\n",
                LmSpatialReference(eWGS84).EPSG(), LmSpatialReference(eCGCS2000).EPSG(),
                LmSpatialReference(eWebMercator).EPSG());
    return ok;
}

void OffsetRoundTrip() {
    LmSmarterPtr<LmCoordinateTransformation> toGcj(new LmWGS84ToGCJ02CoordinateTransformation);
    LmSmarterPtr<LmCoordinateTransformation> fromGcj(new LmGCJ02ToWGS84CoordinateTransformation(0.001));
    double x = 116.404, y = 39.915;
    toGcj->Transformation(x, y);
    std::printf("\nWGS 84 (116.404, 39.915) -> GCJ-02 (%.9f, %.9f)", x, y);
    fromGcj->Transformation(x, y);
    std::printf(" -> back (%.9f, %.9f)\n", x, y);
}

void Geodesics() {
    LmSmarterPtr<LmSpatialReference> wgs84(new LmSpatialReference(eWGS84));
    const LmGeodesic geodesic(wgs84);
    std::printf("Wellington to Salamanca: %.3f m\n", geodesic.Inverse(174.81, -41.32, -5.50, 40.96, nullptr, nullptr));

    LmGeodesicPolygon octant(wgs84, false);
    octant.AddPoint(0, 0);
    octant.AddPoint(90, 0);
    octant.AddPoint(0, 90);
    double area = 0, perimeter = 0;
    octant.Compute(false, true, &area, &perimeter);
    std::printf("octant of the ellipsoid: area %.6e m2, perimeter %.3f m\n", area, perimeter);
}

void AffineAndItsInverse() {
    // A local grid and the same three corners in Gauss-Krueger coordinates.
    const double local[6] = {0.0, 0.0, 1000.0, 0.0, 0.0, 1000.0};
    const double grid[6] = {500025.75, 3499869.5, 501025.55, 3499881.8, 500013.65, 3500869.8};
    LmSmarterPtr<LmAffineCoordinateTransformation> affine(new LmAffineCoordinateTransformation(local, grid, 6));
    const double* m = affine->Matrix();
    std::printf("\naffine: x' = %.6f x %+.6f y %+.3f, y' = %.6f x %+.6f y %+.3f\n", m[0], m[2], m[4], m[1], m[3],
                m[5]);
    double x = 250.0, y = 750.0;
    affine->Transformation(x, y);
    // Without a precision object the converse's tolerance is a squared distance.
    LmSmarterPtr<LmCoordinateTransformation> converse(new LmConverseCoordinateTransformation(affine, nullptr, 1e-12));
    converse->Transformation(x, y);
    std::printf("(250, 750) -> grid -> back by the numeric inverse: (%.6f, %.6f)\n", x, y);
}

// The EPSG-style records a reference describes itself with.
void DescriptiveRecords(LmSpatialReference& reference) {
    std::printf("\nrecords of %s\n", reference.Name().c_str());
    const LmCoordinateSystem system = reference.CoordinateSystem();
    std::printf("coordinate system %d (%s): %s\n", system.Code, system.Type.c_str(), system.Name.c_str());
    for (int i = 0; i < 2; ++i) {
        const LmCoordinateAxis axis = reference.CoordinateAxis(i);
        std::printf("  axis %d: %s (%s) %s, axis code %d, unit %d\n", axis.Order, axis.Name.c_str(),
                    axis.Abbreviation.c_str(), axis.Orientation.c_str(), axis.AxisNameCode, axis.UnitCode);
    }
    const LmEllipsoid ellipsoid = reference.EllipsoidInfo();
    std::printf("ellipsoid %d %s: a %.3f, b %.6f, 1/f %.9f, unit %d\n", ellipsoid.Code, ellipsoid.Name.c_str(),
                ellipsoid.SemiMajorAxis, ellipsoid.SemiMinorAxis, ellipsoid.InverseFlattening, ellipsoid.UnitCode);
    const LmDatum datum = reference.Datum();
    std::printf("datum %d %s (%s), prime meridian %d, TOWGS84 %s\n", datum.Code, datum.Name.c_str(),
                datum.Type.c_str(), datum.PrimeMeridianCode, datum.HasTOWGS84 ? "given" : "none");
    const LmCoordinateReferenceSystem crs = reference.GeographicCoordinateReferenceSystem();
    std::printf("geographic CRS %d %s (%s), datum %d\n", crs.Code, crs.Name.c_str(), crs.Kind.c_str(),
                crs.DatumCode[0]);
    const LmCoordinateConversionsRule rule = reference.CoordinateConversionsRule();
    std::printf("conversion %s, method %d\n", rule.Name.c_str(), rule.MethodCode);
    for (int i = 0; i < reference.CoordinateConversionsParameterCount(); ++i) {
        const LmCoordinateConversionsParameter parameter = reference.CoordinateConversionsParameter(i);
        std::printf("  %-20s code %d, value %d, unit %d\n", parameter.Name.c_str(), parameter.ParameterCode,
                    parameter.Value, static_cast<int>(parameter.Unit));
    }
}

// Bursa-Wolf seven parameters from ten control points measured in CGCS2000
// and Beijing 1954 (longitude, latitude, ellipsoidal height), one of them
// mis-measured by 50 cm in height.
void BursaFromControlPoints() {
    LmSmarterPtr<LmSpatialReference> cgcs2000(new LmSpatialReference(eCGCS2000));
    LmSmarterPtr<LmSpatialReference> beijing1954(
        new LmSpatialReference("+proj=longlat +ellps=krass +towgs84=15.8,-154.4,-82.3 +no_defs", eProj4));
    const int count = 10;
    const double cgcs[count * 3] = {116.39, 39.91, 52.1, 117.20, 39.13, 8.4,  114.30, 30.59, 35.0, 118.78,
                                    32.06,  18.9,  113.26, 23.13, 21.3, 120.15, 30.28, 12.6, 112.94, 28.23,
                                    63.0,   108.94, 34.34, 405.2, 104.07, 30.67, 505.7, 121.47, 31.23, 4.5};
    // The targets come from a known datum shift, so the demo needs no data file.
    double beijing[count * 3];
    const double truth[7] = {-15.8, 154.4, 82.3, 0.35, -0.9, 1.25, 2.7};
    LmSmarterPtr<LmCoordinateTransformation> toGeocentric(new LmGeodeticToGeocentricCoordinateTransformation(cgcs2000));
    LmSmarterPtr<LmCoordinateTransformation> bursa(new LmBursa7ParameterGeocentricCoordinateTransformation(truth));
    LmSmarterPtr<LmCoordinateTransformation> toGeodetic(
        new LmGeocentricToGeodeticCoordinateTransformation(beijing1954));
    LmSmarterPtr<LmCoordinateTransformationCombination> chain(new LmCoordinateTransformationCombination);
    chain->Add(toGeocentric);
    chain->Add(bursa);
    chain->Add(toGeodetic);
    chain->Transformation(cgcs, count, 3, beijing);
    beijing[3 * 4 + 2] += 0.50;

    LmEstimationResult fit;
    if (!LmCoordinateTransformationFactory::ComputeBursa7Parameter(cgcs2000, beijing1954, count, 3, cgcs, beijing,
                                                                   fit)) {
        std::printf("\nBursa: the control points do not determine the parameters\n");
        return;
    }
    const std::vector<double>& p = fit.parameters;
    std::printf("\nBursa CGCS2000 -> Beijing 1954 from %d points:\n", count);
    std::printf("  dX %.3f m, dY %.3f m, dZ %.3f m, ex %.4f\", ey %.4f\", ez %.4f\", m %.4f ppm\n", p[0], p[1],
                p[2], p[3], p[4], p[5], p[6]);
    const double* worst = &fit.residuals[3 * fit.worstPoint];
    std::printf("  mean error %.3f m; worst point %d, residual (%.3f, %.3f, %.3f) m\n", fit.meanError,
                fit.worstPoint, worst[0], worst[1], worst[2]);

    // Applying the fitted parameters reproduces the targets to the mean error.
    LmSmarterPtr<LmCoordinateTransformationCombination> fitted(new LmCoordinateTransformationCombination);
    fitted->Add(toGeocentric);
    fitted->Add(new LmBursa7ParameterGeocentricCoordinateTransformation(p.data()));
    fitted->Add(toGeodetic);
    double reproduced[count * 3];
    fitted->Transformation(cgcs, count, 3, reproduced);
    for (int i = 0; i < count; ++i) {
        std::printf("  point %d: target (%.8f, %.8f, %.3f), fitted (%.8f, %.8f, %.3f)\n", i, beijing[3 * i],
                    beijing[3 * i + 1], beijing[3 * i + 2], reproduced[3 * i], reproduced[3 * i + 1],
                    reproduced[3 * i + 2]);
    }
}

// Control points known in a Krassowsky Gauss-Krueger grid and in the CGCS 2000
// grid of the same zone (x, y and ellipsoidal height). Their "surveyed"
// targets are simulated with known parameters; the library estimates the
// parameters back from eight of them and applies them to the other three.
bool BursaThroughTheFactory() {
    LmSmarterPtr<LmSpatialReference> local(new LmSpatialReference(
        "+proj=tmerc +lat_0=0 +lon_0=114 +k=1 +x_0=500000 +y_0=0 +ellps=krass +units=m +no_defs", eProj4));
    LmSmarterPtr<LmSpatialReference> national(new LmSpatialReference(
        "+proj=tmerc +lat_0=0 +lon_0=114 +k=1 +x_0=500000 +y_0=0 +ellps=GRS80 +units=m +no_defs", eProj4));
    const double truth[7] = {-15.4, 118.9, 50.3, 0.81, -1.62, 2.45, 3.1};  // m, arc-seconds, ppm
    LmSmarterPtr<LmCoordinateTransformation> survey =
        LmCoordinateTransformationFactory::CreateBursa7CoordinateTransformation(local, national, truth);

    // Eight control points and three check points, spread over the zone.
    std::vector<double> source, target;
    for (int i = 0; i < 11; ++i)
        source.insert(source.end(), {300000.0 + 38000.0 * i, 3000000.0 + 60000.0 * ((i * 7) % 11), 20.0 + 90.0 * i});
    target.resize(source.size());
    if (!survey->Transformation(source.data(), 11, 3, target.data())) return false;

    double estimated[7];
    const double meanError = LmCoordinateTransformationFactory::ComputeBursa7Parameter(
        local, national, 8, 3, source.data(), target.data(), estimated);
    const char* format = "%-10s dX %.3f dY %.3f dZ %.3f m, ex %.4f ey %.4f ez %.4f arc-seconds, m %.4f ppm\n";
    std::printf("\nBursa seven parameters from 8 control points, mean error %.6f m\n", meanError);
    std::printf(format, "true", truth[0], truth[1], truth[2], truth[3], truth[4], truth[5], truth[6]);
    std::printf(format, "estimated", estimated[0], estimated[1], estimated[2], estimated[3], estimated[4],
                estimated[5], estimated[6]);

    LmSmarterPtr<LmCoordinateTransformation> bursa =
        LmCoordinateTransformationFactory::CreateBursa7CoordinateTransformation(local, national, estimated);
    std::vector<double> check(source.begin() + 24, source.end());
    if (!bursa->Transformation(check.data(), 3, 3)) return false;
    double worst = 0.0;
    for (int k = 0; k < 9; ++k)
        if (k % 3 != 2) worst = std::max(worst, std::fabs(check[k] - target[24 + k]));
    std::printf("3 check points against their surveyed targets: largest plane difference %.6f m\n", worst);
    return worst < 0.001;
}

// A Beijing 1954 Gauss-Kruger record (6-degree zone 20, central meridian
// 117 E) in the legacy comma-separated parameter text: 288 fields, of which
// the ones not set here are 0. Eastings carry the zone number in front.
void LegacyGaussKruger() {
    std::vector<std::string> fields(288, "0");
    fields[1] = "Beijing1954";
    fields[2] = "6378.245";      // semi-major axis, km
    fields[4] = "298.3";         // inverse flattening
    fields[6] = "11";            // Gauss-Kruger
    fields[7] = "Beijing1954_GK_Zone_20";
    fields[9] = "20";            // zone number
    fields[11] = "500";          // false easting, km
    fields[13] = "117";          // central meridian
    std::string text;
    for (const std::string& field : fields) text += (text.empty() ? "" : ",") + field;

    LmSmarterPtr<LmSpatialReference> gk(new LmSpatialReference(text.c_str(), eLegacyParameters));
    LmSmarterPtr<LmSpatialReference> geographic = gk->Geographic();
    LmSmarterPtr<LmCoordinateTransformation> project(new LmProjectCoordinateTransformation(geographic, gk));
    double x = 116.404, y = 39.915;
    const bool ok = project->Transformation(x, y);
    std::printf("\nlegacy record \"%s\": (116.404, 39.915) -> E %.3f  N %.3f%s\n", gk->Name().c_str(), x, y,
                ok ? "" : " (failed)");
}

// Web Mercator tiles as XYZ web maps number them: row 0 at the north edge,
// pixel y counted one-based from the tile's south edge.
void WebMercatorTiles() {
    LmSmarterPtr<LmPyramid> pyramid = LmPyramid::WellknownPyramid(eWebMercatorPyramid);
    const double x = 12957000.0, y = 4852000.0;  // Beijing, in Web Mercator metres
    std::printf("\nWeb Mercator tiles of (%.0f, %.0f):\n", x, y);
    for (int level : {0, 4, 10, 18}) {
        int row = 0, col = 0, pixelX = 0, pixelY = 0;
        double xmin = 0, ymin = 0, xmax = 0, ymax = 0;
        pyramid->TileIndex(level, x, y, &row, &col, &pixelX, &pixelY);
        pyramid->TileExtent(level, row, col, &xmin, &ymin, &xmax, &ymax);
        std::printf("  level %2d: row %6d col %6d pixel (%3d, %3d) extent x %.3f..%.3f y %.3f..%.3f\n", level, row,
                    col, pixelX, pixelY, xmin, xmax, ymin, ymax);
    }
    std::printf("best level for 1 m/pixel: %d, precisely %.3f\n", pyramid->BestLevel(1.0), pyramid->PreciseLevel(1.0));
    std::printf("%s", pyramid->ToString().c_str());
}

// ESRI .prj texts where the classic identification (the first code with the
// same numbers) and FindEPSG (the code the text means) part ways.
void IdentifyEsriTexts() {
    const std::string grs80 = "SPHEROID[\"GRS_1980\",6378137.0,298.257222101]";
    const std::string degree = "PRIMEM[\"Greenwich\",0.0],UNIT[\"Degree\",0.0174532925199433]";
    const std::string utm18 =
        "PROJCS[\"NAD_1983_UTM_Zone_18N\",GEOGCS[\"GCS_North_American_1983\",DATUM[\"D_North_American_1983\"," +
        grs80 + "]," + degree +
        "],PROJECTION[\"Transverse_Mercator\"],PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\","
        "0.0],PARAMETER[\"Central_Meridian\",-75.0],PARAMETER[\"Scale_Factor\",0.9996],PARAMETER[\"Latitude_Of_"
        "Origin\",0.0],UNIT[\"Meter\",1.0]]";
    const std::string nad83 =
        "GEOGCS[\"GCS_North_American_1983\",DATUM[\"D_North_American_1983\"," + grs80 + "]," + degree + "]";
    const std::string gk117 =
        "PROJCS[\"CGCS2000_3_Degree_GK_CM_117E\",GEOGCS[\"GCS_China_Geodetic_Coordinate_System_2000\",DATUM["
        "\"D_China_2000\"," + grs80 + "]," + degree +
        "],PROJECTION[\"Gauss_Kruger\"],PARAMETER[\"False_Easting\",500000.0],PARAMETER[\"False_Northing\",0.0],"
        "PARAMETER[\"Central_Meridian\",117.0],PARAMETER[\"Scale_Factor\",1.0],PARAMETER[\"Latitude_Of_Origin\","
        "0.0],UNIT[\"Meter\",1.0]]";
    std::printf("\n%-30s %8s %10s  confidence, name\n", "ESRI text", "EPSG()", "FindEPSG()");
    for (const auto& text : {utm18, nad83, gk117}) {
        const LmSpatialReference reference(text.c_str(), eWKT);
        std::vector<LmEPSGMatch> candidates;
        const int found = reference.FindEPSG(&candidates);
        const std::size_t quote = text.find('"');
        std::printf("%-30s %8d %10d  %d, %s\n", text.substr(quote + 1, text.find('"', quote + 1) - quote - 1).c_str(),
                    reference.EPSG(), found, candidates.empty() ? 0 : candidates.front().Confidence,
                    candidates.empty() ? "" : candidates.front().Name.c_str());
    }
}

}  // namespace

int main() {
    bool allProjected = ProjectTypicalRequest();
    allProjected = ProjectToEpsgCodedTarget() && allProjected;
    IdentifyEsriTexts();
    OffsetRoundTrip();
    Geodesics();
    AffineAndItsInverse();
    // UTM zone 50N on WGS 84 from its EPSG code.
    LmSpatialReference utm(32650);
    DescriptiveRecords(utm);
    BursaFromControlPoints();
    const bool bursaChecks = BursaThroughTheFactory();
    LegacyGaussKruger();
    WebMercatorTiles();
    return allProjected && bursaChecks ? 0 : 1;
}
