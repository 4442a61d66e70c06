/// @file
/// The numeric inverse of a transformation.
#ifndef LMSPATIALREFERENCE_CONVERSETRANSFORMATION_H
#define LMSPATIALREFERENCE_CONVERSETRANSFORMATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/iterativeinverse.h>
#include <lmspatialreference/transformation.h>

namespace Lumora {
namespace Kernel {

/// The numeric inverse of another transformation: each point is replaced by the
/// input whose forward image it is, found with xymap_r. z is never touched.
/// Points run in parallel, so the forward transformation is called from
/// several threads at once, one point per call.
class LM_API LmConverseCoordinateTransformation : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    /// Holds a reference to forward and to precisionObject; either may be null.
    LmConverseCoordinateTransformation(LmCoordinateTransformation* forward, LmCoordinatePrecision* precisionObject,
                                       double precision);

    /// False only without a forward transformation. A point whose inverse
    /// does not converge, or whose tolerance is not positive, is left as it is.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    ///@{
    /// The default tolerance. Without a precision object it is used as a
    /// squared distance as it is; a tolerance the precision object returns is
    /// a distance and is squared. A caller wanting a distance d with no
    /// precision object therefore stores d * d. Stored unchanged.
    virtual double Precision() const;
    virtual void Precision(double precision);
    ///@}

private:
    // Released in reverse order: the precision object before the forward.
    LmSmarterPtr<LmCoordinateTransformation> m_forward;
    LmSmarterPtr<LmCoordinatePrecision> m_precisionObject;
    double m_precision;
};

/// The PointMapping of the converse: context is the forward transformation,
/// applied to one point of dimension 2 through its copying form.
LM_API void ConverseCoordinateTransform(const double* in, double* out, void* context);

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_CONVERSETRANSFORMATION_H
