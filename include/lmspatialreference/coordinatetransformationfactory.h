/// @file
/// The transformation factory: the one class through which callers obtain
/// transformations and estimate their parameters from control points.
///
/// Control points are two parallel arrays of count points of dim consecutive
/// doubles (x, y[, z]): point i of the source array and point i of the target
/// array are the same physical point. Parameter arrays are the caller's, in
/// published units: shifts in the coordinate unit (metres), rotations in
/// seconds of arc, scale change in parts per million.
///
/// - plane four-parameter: dX, dY, theta, m;
/// - seven-parameter forms: dX, dY, dZ, ex, ey, ez, m.
#ifndef LMSPATIALREFERENCE_COORDINATETRANSFORMATIONFACTORY_H
#define LMSPATIALREFERENCE_COORDINATETRANSFORMATIONFACTORY_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/graphsinterpolation.h>
#include <lmspatialreference/projecttransformation.h>
#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/transformation.h>

#include <vector>

namespace Lumora {
namespace Kernel {

/// What a checked estimation reports.
struct LM_API LmEstimationResult {
    /// 4 or 7 values in the published units (see above).
    std::vector<double> parameters;
    /// The estimator's mean error, as its unchecked overload reports it.
    double meanError = 0.0;
    /// Axes per residual: 2 or 3.
    int dimension = 0;
    /// count * dimension values: target minus fitted, axis by axis, in the
    /// space where the estimator checks its fit (stated per estimator).
    std::vector<double> residuals;
    /// The point whose residual vector is longest (the first of equals).
    int worstPoint = -1;
};

/// Static operations only.
///
/// The estimators come in three forms. The first two are the classical ones:
/// the mean error by reference or as the return value. They check nothing:
/// points that cannot determine the unknowns end the process, printing
/// "singular matrix!" and exiting with status 1, where a normal matrix is
/// inverted, and give meaningless parameters where a quadratic form is
/// minimised. Use them only on trusted control points. The third, returning
/// bool, is for untrusted input: it refuses (false, result untouched, process
/// alive) too few points, a degenerate geometry, non-finite values, a null
/// array or a dimension the model cannot read, and otherwise gives exactly the
/// parameters and mean error of the other two plus per-point residuals.
///
/// A null spatial reference never crashes an estimator: its ellipsoid counts
/// as a = f = 0, and its points as geocentric (Bursa) or as they are
/// (plane seven-parameter).
///
/// Every creator returns a new object whose only owner is the returned
/// pointer, never null, whatever the arguments: trouble shows when the
/// transformation is applied. Spatial references and parameter arrays passed
/// in stay the caller's; a created transformation holds a reference to each
/// spatial reference it keeps and copies the parameters it needs.
class LM_API LmCoordinateTransformationFactory {
public:
    /// Not constructible: every operation is static.
    LmCoordinateTransformationFactory() = delete;

    // Plane four-parameter.

    /// Estimates the plane four-parameter similarity (dX, dY, theta, m) by
    /// linear least squares on the plane coordinates (x, y) of dim 2 or 3
    /// points; z is carried along unchanged, so with dim 3 z differences count
    /// in the mean error. The mean error, written to meanError, is the sample
    /// deviation (count - 1) of the fitted points against the targets.
    /// Unchecked: use on trusted control points only.
    static void ComputePlane4Parameter(int count, int dim, const double* source, const double* target,
                                       double* parameters, double& meanError);
    /// The same estimate, returning the mean error.
    static double ComputePlane4Parameter(int count, int dim, const double* source, const double* target,
                                         double* parameters);
    /// The checked form of the same estimate. Needs at least 2 distinct
    /// points. Residuals: plane coordinates, dim axes.
    static bool ComputePlane4Parameter(int count, int dim, const double* source, const double* target,
                                       LmEstimationResult& result);

    // Bursa seven-parameter.

    /// Estimates the Bursa-Wolf parameters (dX, dY, dZ, ex, ey, ez, m): both
    /// point sets go to geocentric coordinates (projected through their
    /// geographic reference, geographic directly, others taken as geocentric)
    /// and the linearised model of
    /// LmBursa7ParameterGeocentricCoordinateTransformation is fitted there.
    /// Meant for dim 3 (x, y, height). The mean error, written to meanError,
    /// is the sample deviation (count - 1) in geocentric metres. Unchecked:
    /// use on trusted control points only.
    static void ComputeBursa7Parameter(LmSpatialReference* source, LmSpatialReference* target, int count, int dim,
                                       const double* sourcePoints, const double* targetPoints, double* parameters,
                                       double& meanError);
    /// The same estimate, returning the mean error.
    static double ComputeBursa7Parameter(LmSpatialReference* source, LmSpatialReference* target, int count,
                                         int dim, const double* sourcePoints, const double* targetPoints,
                                         double* parameters);
    /// The checked form of the same estimate. Needs dim 3 and at least 3
    /// points that are not on one line. Residuals: geocentric X, Y, Z metres.
    static bool ComputeBursa7Parameter(LmSpatialReference* source, LmSpatialReference* target, int count, int dim,
                                       const double* sourcePoints, const double* targetPoints,
                                       LmEstimationResult& result);

    // Plane seven-parameter, 2D.

    /// Estimates the plane seven-parameter correction (dX, dY, dZ, ex, ey, ez,
    /// m): points are taken to geographic coordinates of their own reference
    /// (projected ones are unprojected, others copied as they are) and the
    /// differential model of LmPlane7PatameterCoordinateTransformation is
    /// fitted to the longitude and latitude differences. The mean error,
    /// written to meanError, is sqrt(minimum / count) of the least-squares
    /// minimum: 0 for an exact fit, NaN only when the normal equations are
    /// found indefinite. Unchecked: use on trusted control points only.
    static void ComputePlane7Parameter(LmSpatialReference* source, LmSpatialReference* target, int count, int dim,
                                       const double* sourcePoints, const double* targetPoints, double* parameters,
                                       double& meanError);
    /// The same estimate, returning the mean error.
    static double ComputePlane7Parameter(LmSpatialReference* source, LmSpatialReference* target, int count,
                                         int dim, const double* sourcePoints, const double* targetPoints,
                                         double* parameters);
    /// The checked form of the same estimate. Needs dim 2 or 3 and at least 4
    /// points that determine all seven parameters. Residuals: observed minus
    /// fitted corrections of x and y, 2 axes.
    static bool ComputePlane7Parameter(LmSpatialReference* source, LmSpatialReference* target, int count, int dim,
                                       const double* sourcePoints, const double* targetPoints,
                                       LmEstimationResult& result);

    // Plane seven-parameter, 3D.

    /// As ComputePlane7Parameter with heights (dim 3), fitting the model of
    /// LmPlane7PatameterCoordinateTransformation3D: the height equations carry
    /// the fixed weight 1e-10 against the horizontal ones in the normal
    /// matrix. The mean error is written to meanError. Unchecked: use on
    /// trusted control points only.
    static void ComputePlane7Parameter3D(LmSpatialReference* source, LmSpatialReference* target, int count,
                                         int dim, const double* sourcePoints, const double* targetPoints,
                                         double* parameters, double& meanError);
    /// The same estimate, returning the mean error.
    static double ComputePlane7Parameter3D(LmSpatialReference* source, LmSpatialReference* target, int count,
                                           int dim, const double* sourcePoints, const double* targetPoints,
                                           double* parameters);
    /// The checked form of the same estimate. Needs dim 3 and at least 4
    /// points that determine all seven parameters through their horizontal
    /// equations: the weighted height equations are too weak to stand in for
    /// them. Residuals: observed minus fitted corrections of x, y and height,
    /// unweighted, 3 axes.
    static bool ComputePlane7Parameter3D(LmSpatialReference* source, LmSpatialReference* target, int count,
                                         int dim, const double* sourcePoints, const double* targetPoints,
                                         LmEstimationResult& result);

    // Cube four-parameter.

    /// Estimates the cube four-parameter model: both point sets go to
    /// geocentric coordinates as for Bursa (meant for dim 3) and p0, p1, p2
    /// (metres) and theta (seconds of arc) of the rotation about the axis of
    /// latitude phi and longitude lambda (radians) are fitted there. The mean
    /// error, written to meanError, is sqrt(minimum / count) of the
    /// least-squares minimum: 0 for an exact fit, NaN only when the normal
    /// equations are found indefinite. Too few points leave undetermined
    /// parameters at 0. A null array, count < 1 or dim < 2 writes nothing.
    static void ComputeCube4Parameter(LmSpatialReference* source, LmSpatialReference* target, double phi,
                                      double lambda, int count, int dim, const double* sourcePoints,
                                      const double* targetPoints, double* parameters, double& meanError);
    /// The same estimate, returning the mean error.
    static double ComputeCube4Parameter(LmSpatialReference* source, LmSpatialReference* target, double phi,
                                        double lambda, int count, int dim, const double* sourcePoints,
                                        const double* targetPoints, double* parameters);
    /// The checked form of the same estimate. Needs dim 3 and points that
    /// determine all four parameters. Residuals: geocentric X, Y, Z metres.
    static bool ComputeCube4Parameter(LmSpatialReference* source, LmSpatialReference* target, double phi,
                                      double lambda, int count, int dim, const double* sourcePoints,
                                      const double* targetPoints, LmEstimationResult& result);

    // Molodensky seven-parameter.

    /// As the cube estimator, for the Molodensky shifts, rotations and scale
    /// (dX, dY, dZ, ex, ey, ez, m) about the centre X0, Y0, Z0 (metres; null
    /// for the origin). The scale is fitted as the whole factor and published
    /// as m in parts per million. The mean error is written to meanError.
    static void ComputeMolodenskyParameter(LmSpatialReference* source, LmSpatialReference* target, int count,
                                           int dim, const double* sourcePoints, const double* targetPoints,
                                           double* parameters, double& meanError, const double* centre);
    /// The same estimate, returning the mean error.
    static double ComputeMolodenskyParameter(LmSpatialReference* source, LmSpatialReference* target, int count,
                                             int dim, const double* sourcePoints, const double* targetPoints,
                                             double* parameters, const double* centre);
    /// The checked form of the same estimate. Needs dim 3 and points that
    /// determine all seven parameters. Residuals: geocentric X, Y, Z metres.
    static bool ComputeMolodenskyParameter(LmSpatialReference* source, LmSpatialReference* target, int count,
                                           int dim, const double* sourcePoints, const double* targetPoints,
                                           LmEstimationResult& result, const double* centre);

    // Grid offsets and reverse parameters.

    /// Offsets of four map-sheet corners (4 x, y pairs in the coordinates of
    /// source) for the geocentric shift dX, dY, dZ (metres) and the change of
    /// ellipsoid from source to target. For a geographic target the offsets are
    /// longitude and latitude in radians. For a projected target the radians
    /// are added to the geographic corners in degrees as the numbers stand
    /// (the offsets in use were made so), projected into target, and the
    /// offsets become those projected corners minus the corners passed in.
    /// False, offsets untouched, for a null pointer or null reference.
    static bool ComputeGridCoordinatesOffset(LmSpatialReference* source, LmSpatialReference* target,
                                             const double* shift, const double* corners, double* offsets);
    /// The parameters of the reverse transformation, in the layout of type
    /// (see LmParameterType). axis, latitude and longitude in degrees, is read
    /// for eCube4Parameter only. Plane four-parameter reverses carry the first
    /// reverse shift in both shift places, as the values in circulation do.
    /// Writes nothing for an unknown type, a null array or a value that is not
    /// finite. A singular matrix (a scale change of -1 000 000 ppm) ends the
    /// process, as every inversion through LUPDecomp does.
    static void ComputeReverseParameter(LmParameterType type, const double* parameters, double* reverse,
                                        const double* axis);

    // Creators: each returns a new transformation, never null.

    /// Projection, unprojection or datum change through GDAL.
    static LmSmarterPtr<LmCoordinateTransformation> CreateProjectCoordinateTransformation(LmSpatialReference* source,
                                                                                      LmSpatialReference* target);
    /// The same with explicit datum-shift parameters applied to source.
    static LmSmarterPtr<LmCoordinateTransformation> CreateParameterProjectCoordinateTransformation(
        LmSpatialReference* source, LmSpatialReference* target, LmCoordinateTransformationMethod method,
        const double* parameters);
    /// Affine, estimated from n values of each array (n / 2 interleaved
    /// points); the identity when that fails or an array is null.
    static LmSmarterPtr<LmCoordinateTransformation> CreateAffineCoordinateTransformation(const double* source,
                                                                                     const double* target, int n);
    /// WGS 84 to GCJ-02 (LmWGS84ToGCJ02CoordinateTransformation).
    static LmSmarterPtr<LmCoordinateTransformation> CreateWGS84ToGCJ02CoordinateTransformation();
    /// GCJ-02 back to WGS 84 (LmGCJ02ToWGS84CoordinateTransformation);
    /// precision in metres, stored as its magnitude (0 becomes 0.001).
    static LmSmarterPtr<LmCoordinateTransformation> CreateGCJ02ToWGS84CoordinateTransformation(
        double precision = 0.001);
    /// WGS 84 to BD-09 (LmWGS84ToBD09CoordinateTransformation).
    static LmSmarterPtr<LmCoordinateTransformation> CreateWGS84ToBD09CoordinateTransformation();
    /// BD-09 back to WGS 84 (LmBD09ToWGS84CoordinateTransformation);
    /// precision in metres, stored as its magnitude (0 becomes 0.001).
    static LmSmarterPtr<LmCoordinateTransformation> CreateBD09ToWGS84CoordinateTransformation(
        double precision = 0.001);
    /// The numeric inverse of forward (see LmConverseCoordinateTransformation
    /// for how precision is read).
    static LmSmarterPtr<LmCoordinateTransformation> CreateConverseCoordinateTransformation(
        LmCoordinateTransformation* forward, LmCoordinatePrecision* precisionObject, double precision);
    /// Geodetic (degrees, metres) to geocentric coordinates on the ellipsoid
    /// of reference, read once (LmGeodeticToGeocentricCoordinateTransformation).
    static LmSmarterPtr<LmCoordinateTransformation> CreateGeodeticToGeocentricCoordinateTransformation(
        LmSpatialReference* reference);
    /// Geocentric to geodetic coordinates on the ellipsoid of reference, read
    /// once (LmGeocentricToGeodeticCoordinateTransformation).
    static LmSmarterPtr<LmCoordinateTransformation> CreateGeocentricToGeodeticCoordinateTransformation(
        LmSpatialReference* reference);
    /// Four-corner interpolation from 8 corner values and 8 offsets, as the
    /// form without references; source and target are not used.
    static LmSmarterPtr<LmCoordinateTransformation> CreateGraphsInterpolationCoordinateTransformation(
        LmSpatialReference* source, LmSpatialReference* target, const double* corners, const double* offsets);
    /// Four-corner interpolation (LmGraphsInterpolationCoordinateTransformation)
    /// from 8 corner values and 8 offsets, both copied; a null array counts
    /// as zeros.
    static LmSmarterPtr<LmCoordinateTransformation> CreateGraphsInterpolationCoordinateTransformation(
        const double* corners, const double* offsets);
    /// Plane four-parameter from dX, dY (coordinate unit), theta (seconds of
    /// arc), m (ppm); see LmPlane4PatameterCoordinateTransformation.
    static LmSmarterPtr<LmCoordinateTransformation> CreatePlane4PatameterCoordinateTransformation(
        const double* parameters);
    /// A chain: unprojection of a projected source, the plane seven-parameter
    /// correction of geodetic coordinates, projection into a projected target.
    /// parameters: dX, dY, dZ (metres), ex, ey, ez (seconds of arc), m (ppm).
    static LmSmarterPtr<LmCoordinateTransformation> CreatePlane7PatameterCoordinateTransformation(
        LmSpatialReference* source, LmSpatialReference* target, const double* parameters);
    /// The same chain with the three-dimensional correction (heights in z).
    static LmSmarterPtr<LmCoordinateTransformation> Create3DPlane7PatameterCoordinateTransformation(
        LmSpatialReference* source, LmSpatialReference* target, const double* parameters);
    /// A chain: unprojection of a projected source, geodetic to geocentric for
    /// a projected or geographic source, the Bursa seven parameters, geocentric
    /// to geodetic for a projected or geographic target, projection into a
    /// projected target. A null or local source is taken as geocentric, and a
    /// null or local target receives geocentric coordinates. parameters: dX,
    /// dY, dZ (metres), ex, ey, ez (seconds of arc), m (ppm).
    static LmSmarterPtr<LmCoordinateTransformation> CreateBursa7CoordinateTransformation(
        LmSpatialReference* source, LmSpatialReference* target, const double* parameters);
    /// A chain as the Bursa one with the Molodensky model (centre X0, Y0, Z0 in
    /// metres, or null) in the middle, except that geocentric to geodetic is
    /// always added, whatever the target.
    static LmSmarterPtr<LmCoordinateTransformation> CreateMolodenskyCoordinateTransformation(
        LmSpatialReference* source, LmSpatialReference* target, const double* parameters, const double* centre);
    /// A chain exactly as the Bursa one with the cube model about the axis of
    /// latitude phi and longitude lambda (radians) in the middle.
    static LmSmarterPtr<LmCoordinateTransformation> CreateCube4PatameterCoordinateTransformation(
        LmSpatialReference* source, LmSpatialReference* target, double phi, double lambda, const double* parameters);
    /// A square fitting of geographic coordinates (degrees) from count pairs of
    /// dim doubles, with projected sets unprojected first: a chain of the
    /// unprojection of a projected source, the fit, and the projection into a
    /// projected target.
    static LmSmarterPtr<LmCoordinateTransformation> CreateGeoidFittingCoordinateTransformation(
        LmSpatialReference* source, LmSpatialReference* target, int count, int dim, const double* sourcePoints,
        const double* targetPoints);
    /// A square fitting of the plane coordinates as given.
    static LmSmarterPtr<LmCoordinateTransformation> CreatePlaneFittingCoordinateTransformation(
        int count, int dim, const double* sourcePoints, const double* targetPoints);
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_COORDINATETRANSFORMATIONFACTORY_H
