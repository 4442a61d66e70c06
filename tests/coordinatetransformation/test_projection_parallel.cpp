// The parallel mode of the projection transformation beyond what every batch
// obeys (test_batches.cpp) and what block calls obey in both modes, failures
// included (test_projection_blocks.cpp): one object may serve several callers
// at once.
#include "projection_fixtures.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace ProjectionTests;

namespace {

// Interleaved points over zone 50.
std::vector<double> Points(int count) {
    std::vector<double> xy;
    for (int i = 0; i < count; ++i) {
        xy.push_back(111.0 + 12.0 * i / count);
        xy.push_back(-60.0 + 140.0 * i / count);
    }
    return xy;
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

TEST(ProjectionParallel, CallersMayShareOneObjectInEitherMode) {
    Modes modes;
    TeamSize team(2);
    const int count = 2000;
    std::vector<double> expected = Points(count);
    ASSERT_TRUE(modes.serial->Transformation(expected.data(), count, 2));
    for (auto* shared : {&modes.serial, &modes.parallel}) {
        std::vector<std::vector<double>> results(4, Points(count));
        std::vector<int> succeeded(results.size(), 0);
        std::vector<std::thread> callers;
        for (std::size_t c = 0; c < results.size(); ++c)
            callers.emplace_back([&, c] { succeeded[c] = (*shared)->Transformation(results[c].data(), count, 2); });
        for (std::thread& caller : callers) caller.join();
        for (std::size_t c = 0; c < results.size(); ++c) {
            EXPECT_TRUE(succeeded[c]);
            EXPECT_EQ(results[c], expected);
        }
    }
}

}  // namespace
