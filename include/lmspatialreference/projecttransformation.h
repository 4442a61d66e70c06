/// @file
/// Projection transformations between two spatial references, plain or with
/// explicit datum-shift parameters.
#ifndef LMSPATIALREFERENCE_PROJECTTRANSFORMATION_H
#define LMSPATIALREFERENCE_PROJECTTRANSFORMATION_H

#include <lmspatialreference/export.h>
#include <lmspatialreference/spatialreference.h>
#include <lmspatialreference/transformation.h>

#include <cstdint>
#include <mutex>
#include <vector>

class OGRCoordinateTransformation;

namespace Lumora {
namespace Kernel {

/// Moves coordinates from one spatial reference to another (projection,
/// unprojection, datum change) through a GDAL coordinate transformation built
/// from the two references. Batches run point by point, serially or, when the
/// configuration switch SpatialReference/ProjectCoordinateTransformation/
/// Parallel is on at construction, in contiguous blocks on several threads.
/// With the switch .../BlockCalls on at construction, GDAL gets the points of
/// a batch in blocks rather than one per call: faster, with the same results.
class LM_API LmProjectCoordinateTransformation : public LmCoordinateTransformation {
public:
    /// Holds a reference to both. Null or null references give no GDAL
    /// transformation, and every batch then fails.
    LmProjectCoordinateTransformation(LmSpatialReference* source, LmSpatialReference* target);
    /// Destroys the GDAL transformation and releases both references.
    ~LmProjectCoordinateTransformation() override;
    LmProjectCoordinateTransformation(const LmProjectCoordinateTransformation&) = delete;
    LmProjectCoordinateTransformation& operator=(const LmProjectCoordinateTransformation&) = delete;

    ///@{
    /// The references the transformation was built from, still held by it;
    /// null when none.
    LmSpatialReference* Source() const;
    LmSpatialReference* Target() const;
    ///@}
    ///@{
    /// Holds a reference to the new reference and releases the old one, then
    /// rebuilds the GDAL transformation at once, as a plain one: datum-shift
    /// parameters of a derived class are dropped until set again.
    void Source(LmSpatialReference* source);
    void Target(LmSpatialReference* target);
    ///@}
    /// Rebuilds the plain GDAL transformation from Source() and Target();
    /// leaves none when either is null or GDAL refuses the pair.
    void CreateHandle();

    using LmCoordinateTransformation::Transformation;
    /// True exactly when every point succeeded (so a batch of 0 points is true
    /// and a negative count false). A point GDAL refuses is left as GDAL left
    /// it; the others are still transformed. A point with |x| or |y| beyond
    /// 1e12, far outside any reference on Earth, is refused and left as given,
    /// since PROJ can take seconds or forever to wrap such longitudes. Nothing
    /// is printed.
    bool Transformation(double* x, double* y, double* z, int count, int step) override;

    ///@{
    /// Whether a batch is split among threads in contiguous blocks. Taken from
    /// the configuration at construction and changeable per object, so that a
    /// caller can choose it for its own transformations without changing it
    /// for the whole process. It never changes a result. Change it only while
    /// no batch runs on the object.
    bool Parallel() const;
    void Parallel(bool parallel);
    ///@}
    ///@{
    /// Whether GDAL gets the points of a batch in blocks rather than one point
    /// per call; taken and changed as Parallel is, and never changes a result.
    bool BlockCalls() const;
    void BlockCalls(bool blockCalls);
    ///@}

protected:
    /// Destroys the current GDAL transformation and takes ownership of another.
    void ResetHandle(OGRCoordinateTransformation* handle);

    /// The GDAL transformation, owned; null when none could be built.
    OGRCoordinateTransformation* m_pHandle;
    /// Whether batches are split among threads, read from the configuration
    /// at construction.
    bool m_bParallel;
    ///@{
    /// The references the transformation was built from; null when none.
    LmSmarterPtr<LmSpatialReference> m_pSource;
    LmSmarterPtr<LmSpatialReference> m_pTarget;
    ///@}

private:
    // Serialises the use of m_pHandle by callers that share this object.
    std::mutex m_handleTurn;
    // Hands GDAL one call per block of points rather than per point (same
    // results); read once from the switch .../BlockCalls at construction.
    bool m_bBlockCalls;
};

/// How datum-shift parameters are applied. Translations are in metres,
/// rotations in arc-seconds and the scale change in parts per million.
enum LmCoordinateTransformationMethod : std::int32_t {
    ePositionVector7Parameter = 0,         ///< dx, dy, dz, rx, ry, rz, scale
    eCoordinateFrame7Parameter = 1,        ///< the same with the rotations' signs reversed
    eGeocentricTranslation3Parameter = 2,  ///< dx, dy, dz
};

/// A projection transformation with explicit datum-shift parameters (in the
/// TOWGS84 form) applied to the source reference. An unknown method or a null
/// parameter array leaves the plain projection transformation in place.
class LM_API LmParameterProjectCoordinateTransformation : public LmProjectCoordinateTransformation {
public:
    /// Holds a reference to both and applies the parameters as Parameter does.
    LmParameterProjectCoordinateTransformation(LmSpatialReference* source, LmSpatialReference* target,
                                               LmCoordinateTransformationMethod method, const double* parameters);

    /// The method last given.
    LmCoordinateTransformationMethod Method() const;
    /// Reads 7 values for the seven-parameter methods and 3 for the
    /// three-parameter one, and rebuilds the GDAL transformation with them.
    void Parameter(LmCoordinateTransformationMethod method, const double* parameters);

private:
    std::vector<double> m_vecParameters;
    LmCoordinateTransformationMethod m_eMethod;
};

}  // namespace Kernel
}  // namespace Lumora

#endif  // LMSPATIALREFERENCE_PROJECTTRANSFORMATION_H
