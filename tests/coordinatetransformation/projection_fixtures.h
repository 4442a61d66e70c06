// Shared by the projection tests: the parallel switch.
#ifndef LMSPATIALREFERENCE_TESTS_PROJECTION_FIXTURES_H
#define LMSPATIALREFERENCE_TESTS_PROJECTION_FIXTURES_H

#include "tests/fixtures.h"

namespace ProjectionTests {

using namespace Fixtures;
using Lumora::Utility::LmGlobeConfig;

// Turns the parallel switch on or off for the transformations built while it lives.
class ParallelSwitch {
public:
    explicit ParallelSwitch(bool on) { LmGlobeConfig::Set(kKey, on ? "true" : "false"); }
    ~ParallelSwitch() { LmGlobeConfig::Clear(kKey); }

private:
    static constexpr const char* kKey = "SpatialReference/ProjectCoordinateTransformation/Parallel";
};

}  // namespace ProjectionTests

#endif  // LMSPATIALREFERENCE_TESTS_PROJECTION_FIXTURES_H
