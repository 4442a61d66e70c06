/// @file
/// A device rectangle.
#ifndef LMSPATIALREFERENCE_RECT_H
#define LMSPATIALREFERENCE_RECT_H

#include <lmspatialreference/export.h>

#include <cstdint>

namespace Lumora {
namespace Utility {

/// Four 32-bit integers in the order left, right, top, bottom (device units).
struct LM_API LmRect {
    ///@{
    /// The edges, in device units; 0 until set.
    std::int32_t left = 0;
    std::int32_t right = 0;
    std::int32_t top = 0;
    std::int32_t bottom = 0;
    ///@}
};

}  // namespace Utility
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_RECT_H
