// The raw GCJ-02 offset polynomials, private to the offset formulas.
#ifndef LMSPATIALREFERENCE_CHINAOFFSETPOLYNOMIALS_H
#define LMSPATIALREFERENCE_CHINAOFFSETPOLYNOMIALS_H

namespace Lumora {
namespace Kernel {

// The raw offset polynomials at (x, y), the offset in degrees from (105 E, 35 N).
void _WGS84ToGCJ02(double x, double y, double& dLon, double& dLat);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_CHINAOFFSETPOLYNOMIALS_H
