#include <lmspatialreference/coordinatetransformation.h>

#include "internal/ogrsupport.h"

namespace Lumora {
namespace Kernel {

namespace {

int _ParameterCount(LmCoordinateTransformationMethod method) {
    switch (method) {
        case ePositionVector7Parameter:
        case eCoordinateFrame7Parameter: return 7;
        case eGeocentricTranslation3Parameter: return 3;
    }
    return 0;
}

// A copy of a reference for GDAL to keep: the caller's references are never
// modified.
LmOwnedSpatialReference _CloneForShift(const OGRSpatialReference* srs) {
    return LmOwnedSpatialReference(WithGisAxisOrder(srs->Clone()));
}

}  // namespace

LmParameterProjectCoordinateTransformation::LmParameterProjectCoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target, LmCoordinateTransformationMethod method,
    const double* parameters)
    : LmProjectCoordinateTransformation(source, target), m_eMethod(method) {
    Parameter(method, parameters);
}

LmCoordinateTransformationMethod LmParameterProjectCoordinateTransformation::Method() const { return m_eMethod; }

void LmParameterProjectCoordinateTransformation::Parameter(LmCoordinateTransformationMethod method,
                                                           const double* parameters) {
    if (parameters == nullptr) return;
    m_eMethod = method;
    m_vecParameters.assign(parameters, parameters + _ParameterCount(method));
    if (!m_pSource || !m_pTarget || m_vecParameters.empty()) return;

    ResetHandle(nullptr);
    OGRSpatialReference* sourceHandle = m_pSource->Handle();
    OGRSpatialReference* targetHandle = m_pTarget->Handle();
    if (sourceHandle == nullptr || targetHandle == nullptr) return;

    LmQuietGdalErrors quiet;
    const LmOwnedSpatialReference source = _CloneForShift(sourceHandle);
    const LmOwnedSpatialReference target = _CloneForShift(targetHandle);
    if (!source || !target) return;
    const std::vector<double>& p = m_vecParameters;
    if (p.size() == 7) {
        const double sign = m_eMethod == eCoordinateFrame7Parameter ? -1.0 : 1.0;
        source->SetTOWGS84(p[0], p[1], p[2], p[3] * sign, p[4] * sign, p[5] * sign, p[6]);
    } else {
        source->SetTOWGS84(p[0], p[1], p[2], 0, 0, 0, 0);
    }
    target->SetTOWGS84(0, 0, 0, 0, 0, 0, 0);

    // Since GDAL 3.4 a reference carrying an EPSG code is replaced by its
    // official definition when a transformation is built, which would drop
    // the shift set above.
    LmThreadLocalGdalOption keepDefinitions("OGR_CT_PREFER_OFFICIAL_SRS_DEF", "NO");
    ResetHandle(OGRCreateCoordinateTransformation(source.get(), target.get()));
}

}  // namespace Kernel
}  // namespace Lumora
