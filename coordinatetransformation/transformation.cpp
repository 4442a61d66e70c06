#include <lmspatialreference/coordinatetransformation.h>

#include <climits>
#include <cstdint>
#include <cstring>

namespace Lumora {
namespace Kernel {

bool LmCoordinateTransformation::Transformation(double* x, double* y, int count, int step) {
    return Transformation(x, y, nullptr, count, step);
}

bool LmCoordinateTransformation::Transformation(double* xy, int count, int dimension) {
    if (dimension == 2) return Transformation(xy, xy + 1, nullptr, count, 2);
    if (dimension == 3) return Transformation(xy, xy + 1, xy + 2, count, 3);
    return false;
}

bool LmCoordinateTransformation::Transformation(double& x, double& y) {
    return Transformation(&x, &y, nullptr, 1, 1);
}

bool LmCoordinateTransformation::Transformation(double& x, double& y, double& z) {
    return Transformation(&x, &y, &z, 1, 1);
}

bool LmCoordinateTransformation::Transformation(const double* source, int count, int dimension, double* target) {
    return _CopyAndApply(&LmCoordinateTransformation::Transformation, source, count, dimension, target);
}

bool LmCoordinateTransformation::ReverseTransformation(double*, double*, double*, int, int) { return false; }

bool LmCoordinateTransformation::ReverseTransformation(const double* source, int count, int dimension,
                                                       double* target) {
    return _CopyAndApply(&LmCoordinateTransformation::ReverseTransformation, source, count, dimension, target);
}

bool LmCoordinateTransformation::_CopyAndApply(Primitive primitive, const double* source, int count, int dimension,
                                               double* target) {
    if (target == nullptr || source == nullptr || count < 1 || dimension < 2) return false;
    // The number of doubles must fit the 32-bit count the batch is addressed
    // with; a larger product could only come from corrupt arguments.
    const std::int64_t values = static_cast<std::int64_t>(count) * dimension;
    if (values > INT_MAX) return false;
    std::memmove(target, source, static_cast<std::size_t>(values) * sizeof(double));
    if (dimension == 2) return (this->*primitive)(target, target + 1, nullptr, count, 2);
    return (this->*primitive)(target, target + 1, target + 2, count, 3);
}

}  // namespace Kernel
}  // namespace Lumora
