#include <lmspatialreference/projecttransformation.h>

namespace Lumora {
namespace Kernel {

bool LmProjectCoordinateTransformation::Parallel() const { return m_bParallel; }

void LmProjectCoordinateTransformation::Parallel(bool parallel) { m_bParallel = parallel; }

bool LmProjectCoordinateTransformation::BlockCalls() const { return m_bBlockCalls; }

void LmProjectCoordinateTransformation::BlockCalls(bool blockCalls) { m_bBlockCalls = blockCalls; }

}  // namespace Kernel
}  // namespace Lumora
