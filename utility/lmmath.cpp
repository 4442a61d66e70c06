#include <lmspatialreference/utility.h>

#include <cmath>

namespace Lumora {
namespace Utility {

double LmMath::Pi() { return 3.141592653589793; }

double LmMath::ToRadian(double degrees) { return degrees * Pi() / 180.0; }

double LmMath::Log(double value) { return std::log(value); }

}  // namespace Utility
}  // namespace Lumora
