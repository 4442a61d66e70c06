#include "projection_fixtures.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace ProjectionTests;

namespace {

// A grid of geographic points over zone 50, with one point beyond the pole
// that GDAL refuses.
std::vector<double> Points(int count, int step, int failing) {
    std::vector<double> values(static_cast<std::size_t>(count) * step, 7.0);
    for (int i = 0; i < count; ++i) {
        values[i * step] = 111.0 + 12.0 * i / count;
        values[i * step + 1] = i == failing ? 95.0 : -60.0 + 140.0 * i / count;
        if (step == 3) values[i * step + 2] = 10.0 * i;
    }
    return values;
}

// Runs one batch with the given arrangement: step 1 uses separate x, y (and z)
// arrays, steps 2 and 3 one interleaved array.
bool RunBatch(LmCoordinateTransformation& transformation, std::vector<double>& values, int count, int step) {
    if (step == 1) {
        std::vector<double> x(count), y(count);
        for (int i = 0; i < count; ++i) x[i] = values[2 * i], y[i] = values[2 * i + 1];
        const bool ok = transformation.Transformation(x.data(), y.data(), nullptr, count, 1);
        for (int i = 0; i < count; ++i) values[2 * i] = x[i], values[2 * i + 1] = y[i];
        return ok;
    }
    double* a = values.data();
    return transformation.Transformation(a, a + 1, step == 3 ? a + 2 : nullptr, count, step);
}

struct Modes {
    Modes() {
        auto source = Reference(eWGS84);
        auto target = Reference(EpsgWkt(32650).c_str());
        {
            ParallelSwitch off(false);
            serial = new LmProjectCoordinateTransformation(source, target);
        }
        ParallelSwitch on(true);
        parallel = new LmProjectCoordinateTransformation(source, target);
    }
    LmSmarterPtr<LmCoordinateTransformation> serial;
    LmSmarterPtr<LmCoordinateTransformation> parallel;
};

TEST(ProjectionParallel, EqualsSerialExactlyForEveryTeamSizeAndStep) {
    Modes modes;
    for (int threads : {1, 2, 3, 5, 8}) {
        TeamSize team(threads);
        for (int step : {1, 2, 3}) {
            for (int count : {1, 3, 1000}) {
                for (int failing : {-1, count / 2}) {
                    SCOPED_TRACE(testing::Message() << threads << " threads, step " << step << ", " << count
                                                    << " points, failing point " << failing);
                    const int stride = step == 1 ? 2 : step;
                    std::vector<double> serial = Points(count, stride, failing);
                    std::vector<double> parallel = serial;
                    const bool serialOk = RunBatch(*modes.serial, serial, count, step);
                    const bool parallelOk = RunBatch(*modes.parallel, parallel, count, step);
                    EXPECT_EQ(serialOk, failing < 0);
                    EXPECT_EQ(parallelOk, serialOk);
                    EXPECT_EQ(parallel, serial);
                }
            }
        }
    }
}

TEST(ProjectionParallel, FailuresAreCountedAndSilent) {
    Modes modes;
    TeamSize team(4);
    std::vector<double> values = Points(101, 2, 50);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(RunBatch(*modes.parallel, values, 101, 2));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_GT(values[0], 100000.0);
    EXPECT_GT(values[200], 100000.0);
}

TEST(ProjectionParallel, EmptyAndNegativeBatchesInEitherMode) {
    Modes modes;
    double xy[2] = {117.0, 30.0};
    for (LmCoordinateTransformation* mode : {modes.serial.operator->(), modes.parallel.operator->()}) {
        EXPECT_TRUE(mode->Transformation(xy, xy + 1, nullptr, 0, 2));
        EXPECT_FALSE(mode->Transformation(xy, xy + 1, nullptr, -5, 2));
    }
    EXPECT_EQ(xy[0], 117.0);
    EXPECT_EQ(xy[1], 30.0);
}

TEST(ProjectionParallel, CallersMayShareOneObjectInEitherMode) {
    Modes modes;
    TeamSize team(2);
    const int count = 2000;
    std::vector<double> expected = Points(count, 2, -1);
    ASSERT_TRUE(RunBatch(*modes.serial, expected, count, 2));
    for (LmCoordinateTransformation* shared : {static_cast<LmCoordinateTransformation*>(modes.serial),
                                               static_cast<LmCoordinateTransformation*>(modes.parallel)}) {
        std::vector<std::vector<double>> results(4, Points(count, 2, -1));
        std::vector<int> succeeded(results.size(), 0);
        std::vector<std::thread> callers;
        for (std::size_t c = 0; c < results.size(); ++c)
            callers.emplace_back([&, c] { succeeded[c] = RunBatch(*shared, results[c], count, 2); });
        for (std::thread& caller : callers) caller.join();
        for (std::size_t c = 0; c < results.size(); ++c) {
            EXPECT_TRUE(succeeded[c]);
            EXPECT_EQ(results[c], expected);
        }
    }
}

}  // namespace
