// Block mode must be invisible except in speed: every coordinate, the count
// and the result equal the per-point mode's, bit for bit, failures included.
#include "projection_fixtures.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

using namespace ProjectionTests;

namespace {

// Builds a transformation with both switches set as given.
template <class Make>
LmSmarterPtr<LmCoordinateTransformation> WithSwitches(bool parallel, bool blocks, Make make) {
    LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/Parallel", parallel ? "true" : "false");
    LmGlobeConfig::Set("SpatialReference/ProjectCoordinateTransformation/BlockCalls", blocks ? "true" : "false");
    LmSmarterPtr<LmCoordinateTransformation> made = make();
    LmGlobeConfig::Clear("SpatialReference/ProjectCoordinateTransformation/Parallel");
    LmGlobeConfig::Clear("SpatialReference/ProjectCoordinateTransformation/BlockCalls");
    return made;
}

// Points over China and zone 50, with refused ones of every kind a batch
// meets: beyond the pole, NaN, an infinity (GDAL writes infinities into all
// three) and a coordinate too far out to hand to PROJ at all.
double Lon(int i) { return i % 7 == 3 ? std::numeric_limits<double>::quiet_NaN() : i % 7 == 5 ? 1e13 : 100.0 + 0.37 * (i % 97); }
double Lat(int i) { return i % 14 == 13 ? 95.0 : i % 7 == 6 ? -std::numeric_limits<double>::infinity() : 15.0 + 0.29 * (i % 131); }

// One batch laid out in separate arrays (each with `step` values per point)
// or interleaved (x, y[, z] at the start of each group of `step` values).
struct Batch {
    Batch(int count, int step, bool withZ, bool interleaved) : count(count), step(step) {
        const std::size_t size = static_cast<std::size_t>(count) * step;
        data.assign(interleaved ? size : 3 * size, -1.5);
        y = interleaved ? 1 : size;
        z = !withZ ? -1 : interleaved ? 2 : 2 * size;
        for (int i = 0; i < count; ++i) {
            X()[i * step] = Lon(i);
            data[y + i * step] = Lat(i);
            if (withZ) data[z + i * step] = 25.0 * (i % 11);
        }
    }
    double* X() { return data.data(); }
    bool Run(LmCoordinateTransformation& transformation) {
        return transformation.Transformation(X(), X() + y, z < 0 ? nullptr : X() + z, count, step);
    }
    bool SameBits(const Batch& other) const {
        return data.size() == other.data.size() &&
               std::memcmp(data.data(), other.data.data(), data.size() * sizeof(double)) == 0;
    }
    int count, step;
    std::vector<double> data;
    std::ptrdiff_t y, z;  // where the y and z arrays start in data; z < 0: none
};

struct Maker {
    const char* name;
    LmSmarterPtr<LmCoordinateTransformation> (*make)();
};

const Maker kMakers[] = {
    {"WGS 84 to UTM 50N",
     [] { return LmSmarterPtr<LmCoordinateTransformation>(new LmProjectCoordinateTransformation(
              Reference(eWGS84), Reference(EpsgWkt(32650).c_str()))); }},
    {"EPSG 4214 to UTM 50N, EPSG's datum shift",
     [] { return LmSmarterPtr<LmCoordinateTransformation>(new LmProjectCoordinateTransformation(
              Reference(EpsgWkt(4214).c_str()), Reference(EpsgWkt(32650).c_str()))); }},
    {"Beijing 1954 to UTM 50N, seven parameters",
     [] { return LmSmarterPtr<LmCoordinateTransformation>(new LmParameterProjectCoordinateTransformation(
              Reference(kBeijing1954), Reference(EpsgWkt(32650).c_str()), ePositionVector7Parameter, kShift)); }},
    {"UTM 50N to Beijing 1954, three parameters",
     [] { return LmSmarterPtr<LmCoordinateTransformation>(new LmParameterProjectCoordinateTransformation(
              Reference(EpsgWkt(32650).c_str()), Reference(kBeijing1954), eGeocentricTranslation3Parameter, kShift)); }},
};

TEST(ProjectionBlocks, EqualPointByPointBitForBit) {
    for (const Maker& maker : kMakers) {
        for (bool parallel : {false, true}) {
            TeamSize team(parallel ? 3 : 1);
            auto pointByPoint = WithSwitches(parallel, false, maker.make);
            auto blocks = WithSwitches(parallel, true, maker.make);
            // 9000 points cross the block size of 4096 on every thread of the serial run.
            for (int count : {1, 14, 9000}) {
                for (int step = 1; step <= 4; ++step) {
                    for (bool withZ : {false, true}) {
                        for (bool interleaved : {false, true}) {
                            if (interleaved && step < (withZ ? 3 : 2)) continue;
                            SCOPED_TRACE(testing::Message() << maker.name << (parallel ? ", parallel" : ", serial")
                                                            << ", " << count << " points, step " << step
                                                            << (withZ ? ", z" : "") << (interleaved ? ", interleaved" : ""));
                            Batch expected(count, step, withZ, interleaved), actual = expected;
                            testing::internal::CaptureStderr();
                            const bool expectedOk = expected.Run(*pointByPoint);
                            const bool actualOk = actual.Run(*blocks);
                            EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
                            EXPECT_EQ(expectedOk, count == 1);
                            EXPECT_EQ(actualOk, expectedOk);
                            EXPECT_TRUE(actual.SameBits(expected));
                        }
                    }
                }
            }
        }
    }
}

// The comparison above would pass if both modes did nothing: check a block
// against GDAL's own call on the same valid point.
TEST(ProjectionBlocks, ValidPointsMoveAsGdalMovesThem) {
    auto blocks = WithSwitches(false, true, kMakers[0].make);
    Batch batch(14, 2, false, true);
    EXPECT_FALSE(batch.Run(*blocks));
    OGRSpatialReference wgs84, utm;
    wgs84.SetWellKnownGeogCS("WGS84");
    utm.importFromEPSG(32650);
    wgs84.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    utm.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    OGRCoordinateTransformation* gdal = OGRCreateCoordinateTransformation(&wgs84, &utm);
    double x = Lon(1), y = Lat(1);
    ASSERT_TRUE(gdal->Transform(1, &x, &y));
    OGRCoordinateTransformation::DestroyCT(gdal);
    EXPECT_EQ(batch.X()[2], x);
    EXPECT_EQ(batch.X()[3], y);
    EXPECT_EQ(batch.X()[2 * 5], 1e13);  // never handed to PROJ
}

}  // namespace
