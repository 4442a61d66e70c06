#include <lmspatialreference/coordinatetransformation.h>

#include "coordinatetransformation/blockprojection.h"
#include "internal/parallelbatch.h"
#include "internal/ogrsupport.h"

#include <mutex>

namespace Lumora {
namespace Kernel {

namespace {

Utility::LmConfig _Switches() {
    return Utility::LmGlobeConfig::Instance()["SpatialReference"]["ProjectCoordinateTransformation"];
}

}  // namespace

LmProjectCoordinateTransformation::LmProjectCoordinateTransformation(LmSpatialReference* source,
                                                                     LmSpatialReference* target)
    : m_pHandle(nullptr),
      m_bParallel(_Switches()["Parallel"].BoolValue(false)),
      m_pSource(source),
      m_pTarget(target),
      m_bBlockCalls(_Switches()["BlockCalls"].BoolValue(false)) {
    CreateHandle();
}

LmProjectCoordinateTransformation::~LmProjectCoordinateTransformation() { ResetHandle(nullptr); }

LmSpatialReference* LmProjectCoordinateTransformation::Source() const { return m_pSource; }

LmSpatialReference* LmProjectCoordinateTransformation::Target() const { return m_pTarget; }

void LmProjectCoordinateTransformation::Source(LmSpatialReference* source) {
    m_pSource = source;
    CreateHandle();
}

void LmProjectCoordinateTransformation::Target(LmSpatialReference* target) {
    m_pTarget = target;
    CreateHandle();
}

void LmProjectCoordinateTransformation::ResetHandle(OGRCoordinateTransformation* handle) {
    if (m_pHandle != nullptr) OGRCoordinateTransformation::DestroyCT(m_pHandle);
    m_pHandle = handle;
}

void LmProjectCoordinateTransformation::CreateHandle() {
    ResetHandle(nullptr);
    if (!m_pSource || !m_pTarget) return;
    OGRSpatialReference* source = m_pSource->Handle();
    OGRSpatialReference* target = m_pTarget->Handle();
    if (source == nullptr || target == nullptr) return;
    LmQuietGdalErrors quiet;
    ResetHandle(OGRCreateCoordinateTransformation(source, target));
}

// A GDAL 3 transformation must not be used by several threads at once. The
// threads of a parallel batch each work on their own copy; callers sharing
// one object take turns on the handle, for whole serial batches and for the
// copies.
//
// Block mode only changes how many points go into one GDAL call; both modes
// give the same coordinates and count (see blockprojection.h).
bool LmProjectCoordinateTransformation::Transformation(double* x, double* y, double* z, int count, int step) {
    if (m_pHandle == nullptr) return false;
    const auto transform = m_bBlockCalls ? TransformInBlocks : TransformPointByPoint;
    if (!m_bParallel || count <= 1) {
        std::lock_guard<std::mutex> turn(m_handleTurn);
        return transform(m_pHandle, x, y, z, 0, count, step) == count;
    }

    const int successes = ParallelSum<int>(count, [this, transform, x, y, z, step](int begin, int end) {
        LmOwnedCoordinateTransformation own;
        {
            std::lock_guard<std::mutex> turn(m_handleTurn);
            LmQuietGdalErrors quiet;
            own.reset(m_pHandle->Clone());
        }
        return own ? transform(own.get(), x, y, z, begin, end, step) : 0;
    });
    return successes == count;
}

}  // namespace Kernel
}  // namespace Lumora
