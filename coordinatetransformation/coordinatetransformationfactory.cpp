// The factory's creators. Each makes a new object, whatever its arguments, and
// hands it out as the only owner; an object built from unusable arguments
// reports its trouble when applied.
#include <lmspatialreference/bursa7parametertransformation.h>
#include <lmspatialreference/coordinatetransformation.h>
#include <lmspatialreference/coordinatetransformationfactory.h>
#include <lmspatialreference/fittingmodels.h>
#include <lmspatialreference/geocentricconversion.h>
#include <lmspatialreference/graphsinterpolation.h>
#include <lmspatialreference/plane4parametertransformation.h>
#include <lmspatialreference/plane7parametertransformation.h>

#include "internal/estimationsupport.h"

#include <cstddef>
#include <cstring>
#include <vector>

namespace Lumora {
namespace Kernel {

namespace {

using LmTransformationPtr = LmSmarterPtr<LmCoordinateTransformation>;

bool _IsProjected(LmSpatialReference* reference) { return reference != nullptr && reference->IsProjected(); }

bool _IsGeodetic(LmSpatialReference* reference) {
    return reference != nullptr && (reference->IsProjected() || reference->IsGeographic());
}

// reference -> its geographic reference.
LmCoordinateTransformation* _Unprojection(LmSpatialReference* reference) {
    return new LmProjectCoordinateTransformation(reference, reference->Geographic());
}

// The geographic reference of reference -> reference.
LmCoordinateTransformation* _Projection(LmSpatialReference* reference) {
    return new LmProjectCoordinateTransformation(reference->Geographic(), reference);
}

// count points of dim doubles in the geographic coordinates of their
// reference: projected points are unprojected, all others copied.
std::vector<double> _GeographicPoints(LmSpatialReference* reference, int count, int dim, const double* points) {
    std::vector<double> out;
    if (points == nullptr || count < 1 || dim < 1) return out;
    out.resize(std::size_t(count) * dim);
    _ToOwnGeographic(reference, count, dim, points, out.data());
    return out;
}

// A model of geographic coordinates between the unprojection of a projected
// source and the projection into a projected target.
LmTransformationPtr _GeographicChain(LmSpatialReference* source, LmSpatialReference* target,
                                     LmCoordinateTransformation* model) {
    LmCoordinateTransformationCombination* chain = new LmCoordinateTransformationCombination();
    LmTransformationPtr owner(chain);
    if (_IsProjected(source)) chain->Add(_Unprojection(source));
    chain->Add(model);
    if (_IsProjected(target)) chain->Add(_Projection(target));
    return owner;
}

// The chain shared by the Molodensky and cube creators: to geocentric, the
// model, back to geodetic (always, or only for a geodetic target), and back
// into the target's projection.
LmTransformationPtr _GeocentricChain(LmSpatialReference* source, LmSpatialReference* target,
                                     LmCoordinateTransformation* model, bool alwaysToGeodetic) {
    LmCoordinateTransformationCombination* chain = new LmCoordinateTransformationCombination();
    LmTransformationPtr owner(chain);
    if (_IsProjected(source)) chain->Add(_Unprojection(source));
    if (_IsGeodetic(source)) chain->Add(new LmGeodeticToGeocentricCoordinateTransformation(source));
    chain->Add(model);
    if (alwaysToGeodetic || _IsGeodetic(target)) chain->Add(new LmGeocentricToGeodeticCoordinateTransformation(target));
    if (_IsProjected(target)) chain->Add(_Projection(target));
    return owner;
}

}  // namespace

LmTransformationPtr LmCoordinateTransformationFactory::CreateProjectCoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target) {
    return LmTransformationPtr(new LmProjectCoordinateTransformation(source, target));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateParameterProjectCoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target, LmCoordinateTransformationMethod method,
    const double* parameters) {
    return LmTransformationPtr(new LmParameterProjectCoordinateTransformation(source, target, method, parameters));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateAffineCoordinateTransformation(const double* source,
                                                                                          const double* target,
                                                                                          int n) {
    // The estimating constructor needs both arrays; without them the
    // transformation is the identity, as after a failed estimation.
    if (source == nullptr || target == nullptr) {
        const double identity[6] = {1.0, 0.0, 0.0, 1.0, 0.0, 0.0};
        return LmTransformationPtr(new LmAffineCoordinateTransformation(identity));
    }
    return LmTransformationPtr(new LmAffineCoordinateTransformation(source, target, n));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateWGS84ToGCJ02CoordinateTransformation() {
    return LmTransformationPtr(new LmWGS84ToGCJ02CoordinateTransformation());
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateGCJ02ToWGS84CoordinateTransformation(double precision) {
    return LmTransformationPtr(new LmGCJ02ToWGS84CoordinateTransformation(precision));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateWGS84ToBD09CoordinateTransformation() {
    return LmTransformationPtr(new LmWGS84ToBD09CoordinateTransformation());
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateBD09ToWGS84CoordinateTransformation(double precision) {
    return LmTransformationPtr(new LmBD09ToWGS84CoordinateTransformation(precision));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateConverseCoordinateTransformation(
    LmCoordinateTransformation* forward, LmCoordinatePrecision* precisionObject, double precision) {
    return LmTransformationPtr(new LmConverseCoordinateTransformation(forward, precisionObject, precision));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateGeodeticToGeocentricCoordinateTransformation(
    LmSpatialReference* reference) {
    return LmTransformationPtr(new LmGeodeticToGeocentricCoordinateTransformation(reference));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateGeocentricToGeodeticCoordinateTransformation(
    LmSpatialReference* reference) {
    return LmTransformationPtr(new LmGeocentricToGeodeticCoordinateTransformation(reference));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateGraphsInterpolationCoordinateTransformation(
    LmSpatialReference*, LmSpatialReference*, const double* corners, const double* offsets) {
    return CreateGraphsInterpolationCoordinateTransformation(corners, offsets);
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateGraphsInterpolationCoordinateTransformation(
    const double* corners, const double* offsets) {
    return LmTransformationPtr(new LmGraphsInterpolationCoordinateTransformation(corners, offsets));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreatePlane4PatameterCoordinateTransformation(
    const double* parameters) {
    return LmTransformationPtr(new LmPlane4PatameterCoordinateTransformation(parameters));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreatePlane7PatameterCoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target, const double* parameters) {
    return _GeographicChain(source, target, new LmPlane7PatameterCoordinateTransformation(parameters, source, target));
}

LmTransformationPtr LmCoordinateTransformationFactory::Create3DPlane7PatameterCoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target, const double* parameters) {
    return _GeographicChain(source, target,
                            new LmPlane7PatameterCoordinateTransformation3D(parameters, source, target));
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateBursa7CoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target, const double* parameters) {
    return _GeocentricChain(source, target, new LmBursa7ParameterGeocentricCoordinateTransformation(parameters),
                            false);
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateMolodenskyCoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target, const double* parameters, const double* centre) {
    TransImp<LmMolodensky7Parameter>* model = new TransImp<LmMolodensky7Parameter>();
    model->Create(parameters, centre);
    // The Molodensky chain returns to geodetic coordinates even for a target
    // that is neither projected nor geographic; the cube chain does not.
    return _GeocentricChain(source, target, model, true);
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateCube4PatameterCoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target, double phi, double lambda, const double* parameters) {
    TransImp<LmCube4Parameter>* model = new TransImp<LmCube4Parameter>();
    model->Create(phi, lambda, parameters);
    return _GeocentricChain(source, target, model, false);
}

LmTransformationPtr LmCoordinateTransformationFactory::CreateGeoidFittingCoordinateTransformation(
    LmSpatialReference* source, LmSpatialReference* target, int count, int dim, const double* sourcePoints,
    const double* targetPoints) {
    const std::vector<double> sourceGeographic = _GeographicPoints(source, count, dim, sourcePoints);
    const std::vector<double> targetGeographic = _GeographicPoints(target, count, dim, targetPoints);
    TransImp<LmSquareFittingTransformation>* fit = new TransImp<LmSquareFittingTransformation>();
    fit->Create(count, dim, sourceGeographic.empty() ? nullptr : sourceGeographic.data(),
                targetGeographic.empty() ? nullptr : targetGeographic.data());
    return _GeographicChain(source, target, fit);
}

LmTransformationPtr LmCoordinateTransformationFactory::CreatePlaneFittingCoordinateTransformation(
    int count, int dim, const double* sourcePoints, const double* targetPoints) {
    TransImp<LmSquareFittingTransformation>* fit = new TransImp<LmSquareFittingTransformation>();
    fit->Create(count, dim, sourcePoints, targetPoints);
    return LmTransformationPtr(fit);
}

}  // namespace Kernel
}  // namespace Lumora
