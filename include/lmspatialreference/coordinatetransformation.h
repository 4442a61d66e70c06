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

// ---------------------------------------------------------------------------
// Iterative inverse of a point mapping

// A mapping of n doubles to n doubles: reads in[0..n-1], writes out[0..n-1].
// The context is whatever the caller of xymap_r passed along.
typedef void (*PointMapping)(const double* in, double* out, void* context);

// The squared distance between two vectors of n doubles.
double _dis2(int n, const double* a, const double* b);
// Fixed-point refinement x <- x + target - f(x), kept while the residual
// strictly decreases. True when the residual reaches eps (a squared distance);
// false when a step stops improving, with the last accepted estimate kept.
bool _xymap_r_1(int n, const double* target, double* estimate, PointMapping f, double eps, void* context);
// One move of a coordinate pattern search whose step starts at the residual
// distance and is halved up to ten times. False when no probe improves, with
// the estimate unchanged.
bool _xymap_r_2(int n, const double* target, double* estimate, PointMapping f, void* context);
// Finds x with f(x) within sqrt(eps) of target, starting from *estimate: the
// fixed-point refinement runs until it stalls, a pattern-search move unblocks
// it, and so on until the tolerance is met (true) or the search fails (false).
// Works for 1 <= n <= 4 and refuses other sizes.
bool xymap_r(int n, const double* target, double* estimate, PointMapping f, double eps, void* context);

// ---------------------------------------------------------------------------
// China offset transformations: WGS 84 to the GCJ-02 and BD-09 systems of web
// maps in China and back. Longitude and latitude in degrees; z is left alone.

// True outside the rough box in which the GCJ-02 offset applies. The eastern
// bound 137.8347 is compared with the latitude, so it never excludes a valid
// point: points east of it count as inside. That is kept on purpose, so that
// results agree with the offsets already in use.
bool outOfChina(double lon, double lat);
// The raw offset polynomials at (x, y), the offset from (105 E, 35 N).
void _WGS84ToGCJ02(double x, double y, double& dLon, double& dLat);
// WGS 84 to GCJ-02 as a PointMapping, without bounds test; context unused.
void WGS84ToGCJ02(const double* in, double* out, void* context);
// WGS 84 to BD-09 as a PointMapping, without bounds test; context unused.
void WGS84ToBD09(const double* in, double* out, void* context);

// Offsets points inside China from WGS 84 to GCJ-02; others stay as they are.
class LmWGS84ToGCJ02CoordinateTransformation : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;
    // Always true.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;
};

// Offsets every point from WGS 84 to BD-09; there is no bounds test.
class LmWGS84ToBD09CoordinateTransformation : public LmWGS84ToGCJ02CoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;
    bool Transformation(double* x, double* y, double* z, int count, int step) override;
};

// Takes points inside China from GCJ-02 back to WGS 84 by iterating the
// forward offset. The tolerance of a point is half the larger coordinate
// change of a move of Precision() metres due north from it.
class LmGCJ02ToWGS84CoordinateTransformation : public LmCoordinateTransformation {
public:
    explicit LmGCJ02ToWGS84CoordinateTransformation(double precision);

    using LmCoordinateTransformation::Transformation;
    // Always true; a point that does not converge is left as it was.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    // Metres.
    virtual double Precision() const;
    // Stores |value|, or 0.001 when that is not positive.
    virtual void Precision(double value);

protected:
    double m_precision = 0.001;
};

// Takes every point from BD-09 back to WGS 84 (no bounds test). The squared
// tolerance of a point is a quarter of the squared length of the northward
// move of Precision() metres.
class LmBD09ToWGS84CoordinateTransformation : public LmGCJ02ToWGS84CoordinateTransformation {
public:
    explicit LmBD09ToWGS84CoordinateTransformation(double precision);

    using LmCoordinateTransformation::Transformation;
    bool Transformation(double* x, double* y, double* z, int count, int step) override;
};

// ---------------------------------------------------------------------------
// Affine, converse and combined transformations

// Two-dimensional affine transformation
//     x' = m0 * x + m2 * y + m4,   y' = m1 * x + m3 * y + m5,
// given by its elements or estimated by least squares from pairs of identical
// points. z is never touched. Large batches run in parallel.
class LmAffineCoordinateTransformation : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    // Estimates the elements from n values of each array (n / 2 points, x and
    // y interleaved) through Parameter. When that estimation fails the
    // elements are the identity (1, 0, 0, 1, 0, 0).
    LmAffineCoordinateTransformation(const double* source, const double* target, int n);
    // Copies the six elements m0 ... m5.
    explicit LmAffineCoordinateTransformation(const double* elements);
    // Translation by (dx, dy).
    LmAffineCoordinateTransformation(double dx, double dy);
    // Rotation by angle degrees about (cx, cy), counter-clockwise for x east
    // and y north.
    LmAffineCoordinateTransformation(double cx, double cy, double angle);

    // Re-estimates the elements from n values of each array (at least three
    // points). False for fewer points or a degenerate point set; a failed x
    // row leaves every element as it was, a failed y row keeps the new x row.
    bool Parameter(const double* source, const double* target, int n);

    bool Elements(double* out);
    const double* Matrix() const;
    // Values (not points) of the last estimation; 0 when built from elements.
    int IdenticalPointCount() const;
    // The points of the last estimation, or null when there was none.
    const double* SourcePoint() const;
    const double* TargetPoint() const;

    // Always true.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

private:
    std::vector<double> m_sourcePoints;
    std::vector<double> m_targetPoints;
    double m_elements[6];
};

// The numeric inverse of another transformation: each point is replaced by the
// input whose forward image it is, found with xymap_r. z is never touched.
// Points run in parallel, so the forward transformation is called from
// several threads at once, one point per call.
class LmConverseCoordinateTransformation : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    // Holds a reference to forward and to precisionObject; either may be null.
    LmConverseCoordinateTransformation(LmCoordinateTransformation* forward, LmCoordinatePrecision* precisionObject,
                                       double precision);

    // False only without a forward transformation. A point whose inverse
    // does not converge, or whose tolerance is not positive, is left as it is.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    // The default tolerance. Without a precision object it is used as a
    // squared distance as it is; a tolerance the precision object returns is
    // a distance and is squared. A caller wanting a distance d with no
    // precision object therefore stores d * d. Stored unchanged.
    virtual double Precision() const;
    virtual void Precision(double precision);

private:
    // Released in reverse order: the precision object before the forward.
    LmSmarterPtr<LmCoordinateTransformation> m_forward;
    LmSmarterPtr<LmCoordinatePrecision> m_precisionObject;
    double m_precision;
};

// The PointMapping of the converse: context is the forward transformation,
// applied to one point of dimension 2 through its copying form.
void ConverseCoordinateTransform(const double* in, double* out, void* context);

// Applies its members one after the other, in the order they were added.
class LmCoordinateTransformationCombination : public LmCoordinateTransformation {
public:
    using LmCoordinateTransformation::Transformation;

    LmCoordinateTransformationCombination();

    // Appends t and holds a reference to it. A null member makes every later
    // Transformation fail when the chain reaches it.
    void Add(LmCoordinateTransformation* t);

    // False at the first member that fails: later members are not applied and
    // the arrays keep what the earlier ones produced. True for an empty chain.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

private:
    std::vector<LmSmarterPtr<LmCoordinateTransformation>> m_members;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_COORDINATETRANSFORMATION_H
