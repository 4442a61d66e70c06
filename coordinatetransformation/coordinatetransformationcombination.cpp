#include <lmspatialreference/coordinatetransformation.h>

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

}  // namespace Kernel
}  // namespace Lumora
