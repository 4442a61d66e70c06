// Coordinate transformations: the interface every transformation implements,
// and the transformation classes of the library.
//
// A transformation works in place on arrays of doubles. Point i of a batch lies
// at index i*step of the x, y and (optional) z arrays: step 1 means separate
// packed arrays, step 2 or 3 one interleaved array addressed as x = a,
// y = a + 1, z = a + 2. Geographic coordinates are decimal degrees with
// x = longitude and y = latitude.
#ifndef LMSPATIALREFERENCE_COORDINATETRANSFORMATION_H
#define LMSPATIALREFERENCE_COORDINATETRANSFORMATION_H

#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/utility.h>

#include <cstdint>
#include <mutex>
#include <vector>

class OGRCoordinateTransformation;

namespace Lumora {
namespace Kernel {

using Utility::LmRefObject;
using Utility::LmSmarterPtr;
using Utility::LmString;

// Base of every transformation. A concrete class implements the five-argument
// primitive and inherits the other calling forms, which all reduce to it.
// A derived class that overrides the primitive (or the reverse) brings the
// inherited overloads back into scope with
// `using LmCoordinateTransformation::Transformation;` (and `::ReverseTransformation`).
class LmCoordinateTransformation : public LmRefObject {
public:
    // The primitive. z may be null; transformations without heights leave z alone.
    virtual bool Transformation(double* x, double* y, double* z, int count, int step) = 0;
    virtual bool Transformation(double* x, double* y, int count, int step);
    // One interleaved array of 2 or 3 doubles per point; other dimensions are refused.
    virtual bool Transformation(double* xy, int count, int dimension);
    virtual bool Transformation(double& x, double& y);
    virtual bool Transformation(double& x, double& y, double& z);
    // Copies count*dimension doubles from source to target, then transforms the
    // target in place: with step 2 for dimension 2 and step 3 for every other
    // dimension, so records wider than three doubles are not handled per record.
    // The target keeps the copy even when the transformation fails.
    virtual bool Transformation(const double* source, int count, int dimension, double* target);
    // Only classes that know their inverse override this; by default it fails.
    virtual bool ReverseTransformation(double* x, double* y, double* z, int count, int step);
    // The copying form of the reverse, with the same checks and step choice.
    virtual bool ReverseTransformation(const double* source, int count, int dimension, double* target);

private:
    using Primitive = bool (LmCoordinateTransformation::*)(double*, double*, double*, int, int);
    bool _CopyAndApply(Primitive primitive, const double* source, int count, int dimension, double* target);
};

// Supplies the tolerance, in the units of the output coordinates, that an
// iterative inverse is to reach at a point. Callers implement it.
class LmCoordinatePrecision : public LmRefObject {
public:
    virtual double PointPrecision(double x, double y, double defaultTolerance) = 0;
};

// Moves coordinates from one spatial reference to another (projection,
// unprojection, datum change) through a GDAL coordinate transformation built
// from the two references. Batches run point by point, serially or, when the
// configuration switch SpatialReference/ProjectCoordinateTransformation/
// Parallel is on at construction, in contiguous blocks on several threads.
class LmProjectCoordinateTransformation : public LmCoordinateTransformation {
public:
    LmProjectCoordinateTransformation(LmSpatialReference* source, LmSpatialReference* target);
    ~LmProjectCoordinateTransformation() override;
    LmProjectCoordinateTransformation(const LmProjectCoordinateTransformation&) = delete;
    LmProjectCoordinateTransformation& operator=(const LmProjectCoordinateTransformation&) = delete;

    LmSpatialReference* Source() const;
    LmSpatialReference* Target() const;
    // Each setter rebuilds the GDAL transformation at once, as a plain one:
    // datum-shift parameters of a derived class are dropped until set again.
    void Source(LmSpatialReference* source);
    void Target(LmSpatialReference* target);
    void CreateHandle();

    using LmCoordinateTransformation::Transformation;
    // True exactly when every point succeeded (so a batch of 0 points is true
    // and a negative count false). A point GDAL refuses is left as GDAL left
    // it; the others are still transformed. Nothing is printed.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

protected:
    // Destroys the current GDAL transformation and takes ownership of another.
    void ResetHandle(OGRCoordinateTransformation* handle);

    OGRCoordinateTransformation* m_pHandle;
    bool m_bParallel;
    LmSmarterPtr<LmSpatialReference> m_pSource;
    LmSmarterPtr<LmSpatialReference> m_pTarget;

private:
    // Serialises the use of m_pHandle by callers that share this object.
    std::mutex m_handleTurn;
};

// How datum-shift parameters are applied. Translations are in metres,
// rotations in arc-seconds and the scale change in parts per million.
enum LmCoordinateTransformationMethod : std::int32_t {
    ePositionVector7Parameter = 0,         // dx, dy, dz, rx, ry, rz, scale
    eCoordinateFrame7Parameter = 1,        // the same with the rotations' signs reversed
    eGeocentricTranslation3Parameter = 2,  // dx, dy, dz
};

// A projection transformation with explicit datum-shift parameters (in the
// TOWGS84 form) applied to the source reference. An unknown method or a null
// parameter array leaves the plain projection transformation in place.
class LmParameterProjectCoordinateTransformation : public LmProjectCoordinateTransformation {
public:
    LmParameterProjectCoordinateTransformation(LmSpatialReference* source, LmSpatialReference* target,
                                               LmCoordinateTransformationMethod method, const double* parameters);

    LmCoordinateTransformationMethod Method() const;
    // Reads 7 values for the seven-parameter methods and 3 for the
    // three-parameter one, and rebuilds the GDAL transformation with them.
    void Parameter(LmCoordinateTransformationMethod method, const double* parameters);

private:
    std::vector<double> m_vecParameters;
    LmCoordinateTransformationMethod m_eMethod;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_COORDINATETRANSFORMATION_H
