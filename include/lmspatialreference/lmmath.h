/// @file
/// Small numeric helpers.
#ifndef LMSPATIALREFERENCE_LMMATH_H
#define LMSPATIALREFERENCE_LMMATH_H

#include <lmspatialreference/export.h>

#include <type_traits>

namespace Lumora {
namespace Utility {

/// Numeric helpers.
class LM_API LmMath {
public:
    /// pi as a double.
    static double Pi();
    /// degrees * pi / 180.
    static double ToRadian(double degrees);
    /// The natural logarithm; NaN for negative values, -infinity for 0.
    static double Log(double value);

    /// a when a > b, else b; so Max(NaN, b) is b.
    template <class A, class B>
    static std::common_type_t<A, B> Max(A a, B b) {
        using R = std::common_type_t<A, B>;
        return static_cast<R>(a) > static_cast<R>(b) ? static_cast<R>(a) : static_cast<R>(b);
    }
    /// The smaller of two values of any arithmetic types, as a double.
    template <class A, class B>
    static double Min(A a, B b) {
        const double da = static_cast<double>(a);
        const double db = static_cast<double>(b);
        return da < db ? da : db;
    }
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_LMMATH_H
