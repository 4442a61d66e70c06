// Shared by the projection tests: the parallel switch and a datum shift from
// Beijing 1954.
#ifndef LMSPATIALREFERENCE_TESTS_PROJECTION_FIXTURES_H
#define LMSPATIALREFERENCE_TESTS_PROJECTION_FIXTURES_H

#include "tests/fixtures.h"

namespace ProjectionTests {

using namespace Fixtures;
using Lumora::Utility::LmGlobeConfig;

// The shift's values are known answers in tests/data/projections.known.
inline const char* const kBeijing1954 =
    R"(GEOGCS["Beijing 1954",DATUM["D_Beijing_1954",SPHEROID["Krassowsky_1940",6378245,298.3]],)"
    R"(PRIMEM["Greenwich",0],UNIT["degree",0.0174532925199433]])";

// Seven parameters in the position vector convention.
inline const double kShift[7] = {-12.3, -118.6, -35.4, 0.8, -1.2, 2.1, 3.5};

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
