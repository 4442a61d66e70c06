// One allocation for a kit routine: a matrix copy in the leading double-sized
// slots, followed by an index table or row pointers in the trailing slots.
#ifndef LMSPATIALREFERENCE_INTERNAL_SCRATCHBLOCK_H
#define LMSPATIALREFERENCE_INTERNAL_SCRATCHBLOCK_H

#include <cstddef>
#include <memory>

class _ScratchBlock {
public:
    explicit _ScratchBlock(std::size_t slots) : bytes_(new unsigned char[slots * sizeof(double)]) {}

    double* Doubles() { return reinterpret_cast<double*>(bytes_.get()); }

    // The trailing area, starting at double-sized slot `slot`.
    template <typename T>
    T* Tail(std::size_t slot) {
        static_assert(alignof(T) <= alignof(double), "tail must fit double alignment");
        return reinterpret_cast<T*>(bytes_.get() + slot * sizeof(double));
    }

private:
    std::unique_ptr<unsigned char[]> bytes_;
};

#endif  // LMSPATIALREFERENCE_INTERNAL_SCRATCHBLOCK_H
