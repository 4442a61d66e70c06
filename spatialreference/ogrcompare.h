// Comparisons of OGR objects that the spatial reference's own comparisons
// build on. Private to the library: callers compare LmSpatialReference objects.
#ifndef LMSPATIALREFERENCE_OGRCOMPARE_H
#define LMSPATIALREFERENCE_OGRCOMPARE_H

class OGRSpatialReference;

namespace Lumora {
namespace Kernel {

// Equal semi-axes and prime meridians within 0.001 and equal inverse
// flattenings within 1e-6. Both pointers must be non-null.
bool IsSameEllipsoid(const OGRSpatialReference* a, const OGRSpatialReference* b);

// The same test on the values OGR answers for the two references: semi-major
// and semi-minor axes, inverse flattening and prime meridian, in that order.
// The EPSG searches hold these values for every code without building it.
struct LmEllipsoidValues {
    double semiMajor;
    double semiMinor;
    double inverseFlattening;
    double primeMeridian;
};
bool IsSameEllipsoid(const LmEllipsoidValues& a, const LmEllipsoidValues& b);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_OGRCOMPARE_H
