#include <lmspatialreference/coordinatetransformation.h>

#include <cstddef>

namespace Lumora {
namespace Kernel {

LmCoordinateTransformationCombination::LmCoordinateTransformationCombination() = default;

void LmCoordinateTransformationCombination::Add(LmCoordinateTransformation* t) { m_members.emplace_back(t); }

bool LmCoordinateTransformationCombination::Transformation(double* x, double* y, double* z, int count, int step) {
    for (const LmSmarterPtr<LmCoordinateTransformation>& member : m_members) {
        if (!member || !member->Transformation(x, y, z, count, step)) return false;
    }
    return true;
}

int LmCoordinateTransformationCombination::MemberCount() const { return static_cast<int>(m_members.size()); }

LmCoordinateTransformation* LmCoordinateTransformationCombination::Member(int i) const {
    if (i < 0 || i >= MemberCount()) return nullptr;
    return m_members[static_cast<std::size_t>(i)];
}

}  // namespace Kernel
}  // namespace Lumora
