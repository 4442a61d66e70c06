// The two values of pi and the conversions between the published units of
// transformation parameters (seconds of arc, parts per million) and the
// working units of the models (radians, ratios).
//
// Parameter sets in circulation were computed with both values of pi, each
// model with its own, and every model converts in its own order of
// operations. Both are part of the published numbers: a model that changed
// its pi, or the order in which it multiplies and divides, would give other
// parameters for the same control points in the last bits. So each model
// names the pi it was published with and the conversion whose order it has.
#ifndef LMSPATIALREFERENCE_INTERNAL_PUBLISHEDUNITS_H
#define LMSPATIALREFERENCE_INTERNAL_PUBLISHEDUNITS_H

namespace Lumora {
namespace Kernel {

// The double nearest pi: the geodetic-geocentric conversions, Bursa and
// Molodensky, the angle of the plane four-parameter transformation, the
// rotation of the affine transformation and the GCJ-02 and BD-09 offsets.
constexpr double _truePi = 3.141592653589793;

// 22 units in the last place below the double nearest pi, kept because
// parameter sets were published with it: the plane four-parameter estimator,
// plane seven-parameter and cube four-parameter both ways, the grid offsets
// and the reverse parameters.
constexpr double _keptPi = 3.1415926535897833;

// A ratio times this is parts per million.
constexpr double _partsPerMillion = 1000000.0;

// Radians to seconds of arc as radians * 3600 * 180 / pi, rounded after each
// step.
constexpr double _SecondsFromRadians(double radians, double pi) { return radians * 3600.0 * 180.0 / pi; }

// The factor 3600 * 180 / pi by which the models that convert with a single
// product take radians to seconds of arc.
constexpr double _SecondsPerRadian(double pi) { return 3600.0 * 180.0 / pi; }

// Seconds of arc to radians through degrees: seconds / 3600 * pi / 180.
constexpr double _RadiansFromSeconds(double seconds, double pi) { return seconds / 3600.0 * pi / 180.0; }

// Seconds of arc to radians through half turns: seconds / 3600 / 180 * pi.
constexpr double _RadiansFromSecondsByHalfTurns(double seconds, double pi) { return seconds / 3600.0 / 180.0 * pi; }

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_INTERNAL_PUBLISHEDUNITS_H
