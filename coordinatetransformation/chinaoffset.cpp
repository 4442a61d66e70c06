// The published GCJ-02 and BD-09 offset formulas, exported as point mappings.
// The arithmetic lives in chinaoffsetformula.h, shared with the batch loops.
#include <lmspatialreference/coordinatetransformation.h>

#include "coordinatetransformation/chinaoffsetformula.h"
#include "coordinatetransformation/chinaoffsetpolynomials.h"

namespace Lumora {
namespace Kernel {

bool outOfChina(double lon, double lat) { return ChinaOffset::OutOfChina(lon, lat); }

void _WGS84ToGCJ02(double x, double y, double& dLon, double& dLat) { ChinaOffset::Polynomials(x, y, dLon, dLat); }

namespace {

// The exported point mappings read (lon, lat) from in and write the offset
// point to out; the formulas work in place.
template <void (*offset)(double&, double&)>
void _Offset(const double* in, double* out) {
    double lon = in[0];
    double lat = in[1];
    offset(lon, lat);
    out[0] = lon;
    out[1] = lat;
}

}  // namespace

void WGS84ToGCJ02(const double* in, double* out, void* /*context*/) { _Offset<ChinaOffset::ToGCJ02>(in, out); }

void WGS84ToBD09(const double* in, double* out, void* /*context*/) { _Offset<ChinaOffset::ToBD09>(in, out); }

}  // namespace Kernel
}  // namespace Lumora
