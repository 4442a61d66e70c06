/// @file
/// Chains of transformations.
#ifndef LMSPATIALREFERENCE_TRANSFORMATIONCOMBINATION_H
#define LMSPATIALREFERENCE_TRANSFORMATIONCOMBINATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/transformation.h>

#include <vector>

namespace Lumora {
namespace Kernel {

/// Applies its members one after the other, in the order they were added.
class LM_API LmCoordinateTransformationCombination : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    /// An empty chain.
    LmCoordinateTransformationCombination();

    /// Appends t and holds a reference to it. A null member makes every later
    /// Transformation fail when the chain reaches it.
    void Add(LmCoordinateTransformation* t);

    /// False at the first member that fails: later members are not applied and
    /// the arrays keep what the earlier ones produced. True for an empty chain.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    /// The number of members, null ones included.
    int MemberCount() const;
    /// Member i in the order added, still held by the chain; null when i is
    /// out of range (or the member itself was null).
    LmCoordinateTransformation* Member(int i) const;

private:
    std::vector<LmSmarterPtr<LmCoordinateTransformation>> m_members;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_TRANSFORMATIONCOMBINATION_H
