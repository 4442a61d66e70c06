#include <lmspatialreference/coordinatetransformation.h>

#include "internal/parallelbatch.h"

namespace Lumora {
namespace Kernel {

void ConverseCoordinateTransform(const double* in, double* out, void* context) {
    static_cast<LmCoordinateTransformation*>(context)->Transformation(in, 1, 2, out);
}

LmConverseCoordinateTransformation::LmConverseCoordinateTransformation(LmCoordinateTransformation* forward,
                                                                       LmCoordinatePrecision* precisionObject,
                                                                       double precision)
    : m_forward(forward), m_precisionObject(precisionObject), m_precision(precision) {}

double LmConverseCoordinateTransformation::Precision() const { return m_precision; }

void LmConverseCoordinateTransformation::Precision(double precision) { m_precision = precision; }

bool LmConverseCoordinateTransformation::Transformation(double* x, double* y, double*, int count, int step) {
    if (!m_forward) return false;
    LmCoordinateTransformation* forward = m_forward;
    LmCoordinatePrecision* precisionObject = m_precisionObject;
    const double precision = m_precision;
    ParallelPoints(count, [=](int i) {
        const std::ptrdiff_t at = PointIndex(i, step);
        const double point[2] = {x[at], y[at]};
        // A tolerance from the precision object is a distance and is squared;
        // the stored precision is taken as a squared distance as it is.
        double tolerance = precision;
        if (precisionObject) {
            tolerance = precisionObject->PointPrecision(point[0], point[1], precision);
            tolerance *= tolerance;
        }
        if (!(tolerance > 0.0)) return;
        double estimate[2] = {point[0], point[1]};
        if (!xymap_r(2, point, estimate, ConverseCoordinateTransform, tolerance, forward)) return;
        x[at] = estimate[0];
        y[at] = estimate[1];
    });
    return true;
}

}  // namespace Kernel
}  // namespace Lumora
