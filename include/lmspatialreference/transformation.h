/// @file
/// The interface every coordinate transformation implements.
///
/// A transformation works in place on arrays of doubles. Point i of a batch lies
/// at index i*step of the x, y and (optional) z arrays: step 1 means separate
/// packed arrays, step 2 or 3 one interleaved array addressed as x = a,
/// y = a + 1, z = a + 2. Geographic coordinates are decimal degrees with
/// x = longitude and y = latitude.
#ifndef LMSPATIALREFERENCE_TRANSFORMATION_H
#define LMSPATIALREFERENCE_TRANSFORMATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/lmstring.h>
#include <lmspatialreference/refobject.h>

namespace Lumora {
namespace Kernel {

using Utility::LmRefObject;
using Utility::LmSmarterPtr;
using Utility::LmString;

/// Base of every transformation. A concrete class implements the five-argument
/// primitive and inherits the other calling forms, which all reduce to it.
/// A derived class that overrides the primitive (or the reverse) brings the
/// inherited overloads back into scope with
/// `using LmCoordinateTransformation::Transformation;` (and likewise
/// `using LmCoordinateTransformation::ReverseTransformation;`).
class LM_API LmCoordinateTransformation : public LmRefObject {
public:
    /// The primitive. z may be null; transformations without heights leave z alone.
    virtual bool Transformation(double* x, double* y, double* z, int count, int step) = 0;
    /// The primitive without heights.
    virtual bool Transformation(double* x, double* y, int count, int step);
    /// One interleaved array of 2 or 3 doubles per point; other dimensions are refused.
    virtual bool Transformation(double* xy, int count, int dimension);
    /// One point (x, y), through the primitive with count 1 and no height.
    virtual bool Transformation(double& x, double& y);
    /// One point (x, y, z), through the primitive with count 1; transformations
    /// without heights leave z alone.
    virtual bool Transformation(double& x, double& y, double& z);
    /// Copies count*dimension doubles from source to target, then transforms the
    /// target in place: with step 2 for dimension 2 and step 3 for every other
    /// dimension, so records wider than three doubles are not handled per record.
    /// The target keeps the copy even when the transformation fails. False for
    /// null arrays, count < 1 or dimension < 2.
    virtual bool Transformation(const double* source, int count, int dimension, double* target);
    /// Only classes that know their inverse override this; by default it fails.
    virtual bool ReverseTransformation(double* x, double* y, double* z, int count, int step);
    /// The copying form of the reverse, with the same checks and step choice:
    /// false for null arrays, count < 1 or dimension < 2.
    virtual bool ReverseTransformation(const double* source, int count, int dimension, double* target);

private:
    using Primitive = bool (LmCoordinateTransformation::*)(double*, double*, double*, int, int);
    bool _CopyAndApply(Primitive primitive, const double* source, int count, int dimension, double* target);
};

/// Supplies the tolerance, in the units of the output coordinates, that an
/// iterative inverse is to reach at a point. Callers implement it.
class LM_API LmCoordinatePrecision : public LmRefObject {
public:
    /// The tolerance at (x, y); defaultTolerance is the transformation's own.
    virtual double PointPrecision(double x, double y, double defaultTolerance) = 0;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_TRANSFORMATION_H
