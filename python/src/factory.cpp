// The transformation factory: its creators, and its estimators in their
// checked form only, so that no control points can end the Python process.
#include "binding.h"

#include <lmspatialreference/coordinatetransformationfactory.h>

#include <array>
#include <cmath>

namespace LmPython {

namespace {

using Factory = LmCoordinateTransformationFactory;
using Made = LmSmarterPtr<LmCoordinateTransformation>;

// Runs a checked estimator without the GIL; a refusal is a ValueError, since
// the points cannot determine the parameters.
template <class Estimate>
LmEstimationResult Estimated(Estimate estimate) {
    LmEstimationResult result;
    bool ok;
    {
        py::gil_scoped_release release;
        ok = estimate(result);
    }
    if (!ok) throw py::value_error("the control points cannot determine the parameters");
    return result;
}

// The estimators between two references that take nothing but the control
// points.
using EstimatorBetween = bool (*)(LmSpatialReference*, LmSpatialReference*, int, int, const double*, const double*,
                                  LmEstimationResult&);

template <EstimatorBetween estimator>
LmEstimationResult EstimatedBetween(LmSpatialReference* s, LmSpatialReference* t, py::handle source,
                                    py::handle target) {
    auto p = CheckControlPoints(source, target);
    return Estimated([&](LmEstimationResult& r) {
        return estimator(s, t, p.count, p.dimension, p.source.data(), p.target.data(), r);
    });
}

// The same, or no array at all for None.
std::vector<double> OptionalValues(py::handle values, std::size_t count, const char* what) {
    return values.is_none() ? std::vector<double>() : CheckParameters(values, count, what);
}

const double* DataOrNull(const std::vector<double>& values) { return values.empty() ? nullptr : values.data(); }

// Hands a new transformation to Python under its most derived bound class.
// The cast happens while made still holds the object, so Python's holder
// takes the second reference before made lets go of the first.
py::object Handed(const Made& made) {
    return py::cast(static_cast<LmCoordinateTransformation*>(made), py::return_value_policy::take_ownership);
}

// The Python side of each creator signature: arguments passed straight on,
// seven parameters and control points checked first.
auto Bound(Made (*create)()) {
    return [create]() { return Handed(create()); };
}
auto Bound(Made (*create)(double)) {
    return [create](double precision) { return Handed(create(precision)); };
}
auto Bound(Made (*create)(LmSpatialReference*)) {
    return [create](LmSpatialReference* r) { return Handed(create(r)); };
}
auto Bound(Made (*create)(LmSpatialReference*, LmSpatialReference*, const double*)) {
    return [create](LmSpatialReference* s, LmSpatialReference* t, py::handle parameters) {
        return Handed(create(s, t, CheckParameters(parameters, 7, "parameters").data()));
    };
}
auto Bound(Made (*create)(int, int, const double*, const double*)) {
    return [create](py::handle source, py::handle target) {
        auto p = CheckControlPoints(source, target);
        return Handed(create(p.count, p.dimension, p.source.data(), p.target.data()));
    };
}
auto Bound(Made (*create)(LmSpatialReference*, LmSpatialReference*, int, int, const double*, const double*)) {
    return [create](LmSpatialReference* s, LmSpatialReference* t, py::handle source, py::handle target) {
        auto p = CheckControlPoints(source, target);
        return Handed(create(s, t, p.count, p.dimension, p.source.data(), p.target.data()));
    };
}

// A creator of one signature under its Python name, with its docstring.
template <class Create>
struct NamedCreator {
    const char* name;
    Create create;
    const char* doc;
};

// Binds every creator of the table with the same argument names.
template <class Create, std::size_t N, class... Arguments>
void DefineCreators(py::class_<Factory>& factory, const NamedCreator<Create> (&creators)[N],
                    const Arguments&... arguments) {
    for (const NamedCreator<Create>& creator : creators)
        factory.def_static(creator.name, Bound(creator.create), arguments..., creator.doc);
}

std::size_t ParameterCount(LmParameterType type) {
    return type == ePlane4Parameter || type == eCube4Parameter ? 4 : 7;
}

// Parameters the C++ reverse would refuse (it writes nothing) or that would
// end the process: an inversion through LUPDecomp exits on a zero pivot,
// which a scale factor 1 + m / 1e6 at or near zero gives.
bool HasReverse(LmParameterType type, const std::vector<double>& parameters, const std::vector<double>& axis) {
    if (type != eLinear7Parameter && type != ePlane4Parameter && type != eBursa7Parameter && type != eCube4Parameter)
        return false;
    for (double value : parameters)
        if (!std::isfinite(value)) return false;
    for (double value : axis)
        if (!std::isfinite(value)) return false;
    if (type == eCube4Parameter) return true;  // I + theta [u]x is never singular
    return std::fabs(1.0 + parameters.back() / 1000000.0) >= 1e-6;
}

}  // namespace

void BindFactory(py::module_& m) {
    py::class_<LmEstimationResult>(m, "LmEstimationResult", "Estimated parameters with the residual report.")
        .def_property_readonly(
            "parameters", [](const LmEstimationResult& r) { return py::array_t<double>(r.parameters.size(), r.parameters.data()); },
            "4 or 7 values: shifts in metres, rotations in seconds of arc, scale change in ppm.")
        .def_readonly("mean_error", &LmEstimationResult::meanError)
        .def_readonly("dimension", &LmEstimationResult::dimension, "Axes per residual: 2 or 3.")
        .def_property_readonly(
            "residuals",
            [](const LmEstimationResult& r) {
                const py::ssize_t dimension = r.dimension > 0 ? r.dimension : 1;
                py::array_t<double> residuals({static_cast<py::ssize_t>(r.residuals.size()) / dimension, dimension});
                std::copy(r.residuals.begin(), r.residuals.end(), residuals.mutable_data());
                return residuals;
            },
            "(count, dimension): target minus fitted, per point and axis.")
        .def_readonly("worst_point", &LmEstimationResult::worstPoint, "The point of the longest residual.")
        .def("__repr__", [](const LmEstimationResult& r) {
            return "<LmEstimationResult mean_error=" + std::to_string(r.meanError) +
                   " worst_point=" + std::to_string(r.worstPoint) + ">";
        });

    py::enum_<LmParameterType>(m, "LmParameterType", "The parameter layout of compute_reverse_parameter.")
        .value("eLinear7Parameter", eLinear7Parameter)
        .value("ePlane4Parameter", ePlane4Parameter)
        .value("eBursa7Parameter", eBursa7Parameter)
        .value("eCube4Parameter", eCube4Parameter)
        .export_values();

    py::class_<Factory> factory(m, "LmCoordinateTransformationFactory",
                                "Creates every transformation and estimates parameters from control points "
                                "(static methods only). Estimators raise ValueError when the control points "
                                "cannot determine the parameters.");

    // ---- Estimators -----------------------------------------------------
    factory
        .def_static(
            "compute_plane4_parameter",
            [](py::handle source, py::handle target) {
                auto p = CheckControlPoints(source, target);
                return Estimated([&](LmEstimationResult& r) {
                    return Factory::ComputePlane4Parameter(p.count, p.dimension, p.source.data(), p.target.data(), r);
                });
            },
            py::arg("source_points"), py::arg("target_points"), "dX, dY, theta, m from plane control points.")
        .def_static(
            "compute_bursa7_parameter",
            &EstimatedBetween<&Factory::ComputeBursa7Parameter>,
            py::arg("source"), py::arg("target"), py::arg("source_points"), py::arg("target_points"),
            "The seven Bursa-Wolf parameters from (n, 3) points with heights.")
        .def_static(
            "compute_plane7_parameter",
            &EstimatedBetween<&Factory::ComputePlane7Parameter>,
            py::arg("source"), py::arg("target"), py::arg("source_points"), py::arg("target_points"))
        .def_static(
            "compute_plane7_parameter_3d",
            &EstimatedBetween<&Factory::ComputePlane7Parameter3D>,
            py::arg("source"), py::arg("target"), py::arg("source_points"), py::arg("target_points"))
        .def_static(
            "compute_cube4_parameter",
            [](LmSpatialReference* s, LmSpatialReference* t, double phi, double lambda, py::handle source,
               py::handle target) {
                auto p = CheckControlPoints(source, target);
                return Estimated([&](LmEstimationResult& r) {
                    return Factory::ComputeCube4Parameter(s, t, phi, lambda, p.count, p.dimension, p.source.data(),
                                                          p.target.data(), r);
                });
            },
            py::arg("source"), py::arg("target"), py::arg("phi"), py::arg("lambda_"), py::arg("source_points"),
            py::arg("target_points"),
            "p0, p1, p2 (metres) and theta (seconds of arc) of a rotation about the axis of latitude phi "
            "and longitude lambda_ (radians), from (n, 3) points with heights; residuals are geocentric.")
        .def_static(
            "compute_molodensky_parameter",
            [](LmSpatialReference* s, LmSpatialReference* t, py::handle source, py::handle target,
               py::object centre) {
                auto p = CheckControlPoints(source, target);
                const auto c = OptionalValues(centre, 3, "centre");
                return Estimated([&](LmEstimationResult& r) {
                    return Factory::ComputeMolodenskyParameter(s, t, p.count, p.dimension, p.source.data(),
                                                               p.target.data(), r, DataOrNull(c));
                });
            },
            py::arg("source"), py::arg("target"), py::arg("source_points"), py::arg("target_points"),
            py::arg("centre") = py::none(),
            "The seven Molodensky parameters about centre (X0, Y0, Z0 metres; None for the origin) from "
            "(n, 3) points with heights; residuals are geocentric.")
        .def_static(
            "compute_grid_coordinates_offset",
            [](LmSpatialReference* s, LmSpatialReference* t, py::handle shift, py::handle corners) -> py::object {
                const auto d = CheckParameters(shift, 3, "shift");
                const auto c = CheckParameters(corners, 8, "corners");
                std::array<double, 8> offsets{};
                if (!Factory::ComputeGridCoordinatesOffset(s, t, d.data(), c.data(), offsets.data())) {
                    return py::none();
                }
                py::array_t<double> result({static_cast<py::ssize_t>(4), static_cast<py::ssize_t>(2)});
                std::copy(offsets.begin(), offsets.end(), result.mutable_data());
                return std::move(result);
            },
            py::arg("source"), py::arg("target"), py::arg("shift"), py::arg("corners"),
            "Offsets (4, 2) of four map-sheet corners (4 x, y pairs in source) for the geocentric shift "
            "dX, dY, dZ (metres) and the change of ellipsoid: radians of longitude and latitude for a "
            "geographic target, projected differences for a projected one. None when a reference is "
            "None or null.")
        .def_static(
            "compute_reverse_parameter",
            [](LmParameterType type, py::handle parameters, py::object axis) -> py::object {
                const auto p = CheckParameters(parameters, ParameterCount(type), "parameters");
                std::vector<double> a;
                if (type == eCube4Parameter) {
                    if (axis.is_none()) throw py::type_error("eCube4Parameter needs axis (latitude, longitude in degrees)");
                    a = CheckParameters(axis, 2, "axis");
                }
                if (!HasReverse(type, p, a)) return py::none();
                std::vector<double> reverse(p.size());
                Factory::ComputeReverseParameter(type, p.data(), reverse.data(), DataOrNull(a));
                return py::array_t<double>(reverse.size(), reverse.data());
            },
            py::arg("type"), py::arg("parameters"), py::arg("axis") = py::none(),
            "The parameters of the reverse transformation in the layout of type. None when a value is "
            "not finite or the scale factor 1 + m / 1e6 is (nearly) zero, so no reverse exists.");

    // ---- Creators -------------------------------------------------------
    // Each makes a new transformation whatever its arguments; trouble shows
    // when it is applied. The package records the arguments for pickling.
    factory
        .def_static(
            "create_project_coordinate_transformation",
            [](LmSpatialReference* s, LmSpatialReference* t) {
                return Handed(Factory::CreateProjectCoordinateTransformation(s, t));
            },
            py::arg("source"), py::arg("target"), "Projection, unprojection or datum change through GDAL.")
        .def_static(
            "create_parameter_project_coordinate_transformation",
            [](LmSpatialReference* s, LmSpatialReference* t, LmCoordinateTransformationMethod method,
               py::object parameters) {
                const auto p = OptionalValues(parameters, MethodParameterCount(method),
                                              "parameters");
                return Handed(Factory::CreateParameterProjectCoordinateTransformation(s, t, method, DataOrNull(p)));
            },
            py::arg("source"), py::arg("target"), py::arg("method"), py::arg("parameters") = py::none(),
            "As create_project_coordinate_transformation with datum-shift parameters (7, or 3 for the "
            "translation method; None for none) applied to source.")
        .def_static(
            "create_affine_coordinate_transformation",
            [](py::handle source, py::handle target) {
                auto p = CheckControlPoints(source, target);
                if (p.dimension != 2) throw py::value_error("affine control points must have shape (n, 2)");
                return Handed(Factory::CreateAffineCoordinateTransformation(p.source.data(), p.target.data(),
                                                                            2 * p.count));
            },
            py::arg("source_points"), py::arg("target_points"),
            "Affine, estimated from (n, 2) point pairs; the identity when they do not determine it.")
        .def_static(
            "create_converse_coordinate_transformation",
            [](LmCoordinateTransformation* forward, double precision) {
                return Handed(Factory::CreateConverseCoordinateTransformation(forward, nullptr, precision));
            },
            py::arg("forward"), py::arg("precision"),
            "The numeric inverse of forward; precision is a squared distance in the output units.");

    // The China offsets and their numeric inverses.
    const NamedCreator<Made (*)()> offsets[] = {
        {"create_wgs84_to_gcj02_coordinate_transformation", &Factory::CreateWGS84ToGCJ02CoordinateTransformation,
         nullptr},
        {"create_wgs84_to_bd09_coordinate_transformation", &Factory::CreateWGS84ToBD09CoordinateTransformation,
         nullptr}};
    DefineCreators(factory, offsets);
    const char* const precisionDoc = "Metres; a value that is not positive stores 0.001.";
    const NamedCreator<Made (*)(double)> inverseOffsets[] = {
        {"create_gcj02_to_wgs84_coordinate_transformation", &Factory::CreateGCJ02ToWGS84CoordinateTransformation,
         precisionDoc},
        {"create_bd09_to_wgs84_coordinate_transformation", &Factory::CreateBD09ToWGS84CoordinateTransformation,
         precisionDoc}};
    DefineCreators(factory, inverseOffsets, py::arg("precision") = 0.001);

    const NamedCreator<Made (*)(LmSpatialReference*)> geocentricConversions[] = {
        {"create_geodetic_to_geocentric_coordinate_transformation",
         &Factory::CreateGeodeticToGeocentricCoordinateTransformation,
         "Degrees and height to geocentric metres on the ellipsoid of reference."},
        {"create_geocentric_to_geodetic_coordinate_transformation",
         &Factory::CreateGeocentricToGeodeticCoordinateTransformation,
         "Geocentric metres to degrees and height on the ellipsoid of reference."}};
    DefineCreators(factory, geocentricConversions, py::arg("reference"));

    const NamedCreator<Made (*)(LmSpatialReference*, LmSpatialReference*, const double*)> sevenParameters[] = {
        {"create_plane7_patameter_coordinate_transformation", &Factory::CreatePlane7PatameterCoordinateTransformation,
         "Unprojection of a projected source, the plane seven-parameter correction, projection into a "
         "projected target."},
        {"create_3d_plane7_patameter_coordinate_transformation",
         &Factory::Create3DPlane7PatameterCoordinateTransformation, "The same with heights in z."},
        {"create_bursa7_coordinate_transformation", &Factory::CreateBursa7CoordinateTransformation,
         "Through geocentric coordinates with the Bursa-Wolf parameters; a None or local source is "
         "taken as geocentric, a None or local target receives geocentric coordinates."}};
    DefineCreators(factory, sevenParameters, py::arg("source"), py::arg("target"), py::arg("parameters"));

    factory
        .def_static(
            "create_graphs_interpolation_coordinate_transformation",
            [](py::handle corners, py::handle offsets) {
                const auto c = CheckParameters(corners, 8, "corners");
                const auto o = CheckParameters(offsets, 8, "offsets");
                return Handed(Factory::CreateGraphsInterpolationCoordinateTransformation(c.data(), o.data()));
            },
            py::arg("corners"), py::arg("offsets"),
            "Four-corner interpolation of plane offsets: 4 corner (x, y) pairs and their 4 offset pairs.")
        .def_static(
            "create_graphs_interpolation_coordinate_transformation",
            [](LmSpatialReference* s, LmSpatialReference* t, py::handle corners, py::handle offsets) {
                const auto c = CheckParameters(corners, 8, "corners");
                const auto o = CheckParameters(offsets, 8, "offsets");
                return Handed(Factory::CreateGraphsInterpolationCoordinateTransformation(s, t, c.data(), o.data()));
            },
            py::arg("source"), py::arg("target"), py::arg("corners"), py::arg("offsets"),
            "The same; the two references are not used.")
        .def_static(
            "create_plane4_patameter_coordinate_transformation",
            [](py::handle parameters) {
                const auto p = CheckParameters(parameters, 4, "parameters");
                return Handed(Factory::CreatePlane4PatameterCoordinateTransformation(p.data()));
            },
            py::arg("parameters"), "Plane four-parameter from dX, dY (metres), theta (seconds), m (ppm).")
        .def_static(
            "create_molodensky_coordinate_transformation",
            [](LmSpatialReference* s, LmSpatialReference* t, py::handle parameters, py::object centre) {
                const auto p = CheckParameters(parameters, 7, "parameters");
                const auto c = OptionalValues(centre, 3, "centre");
                return Handed(Factory::CreateMolodenskyCoordinateTransformation(s, t, p.data(), DataOrNull(c)));
            },
            py::arg("source"), py::arg("target"), py::arg("parameters"), py::arg("centre") = py::none(),
            "Through geocentric coordinates with the Molodensky parameters about centre (metres, or None).")
        .def_static(
            "create_cube4_patameter_coordinate_transformation",
            [](LmSpatialReference* s, LmSpatialReference* t, double phi, double lambda, py::handle parameters) {
                const auto p = CheckParameters(parameters, 4, "parameters");
                return Handed(Factory::CreateCube4PatameterCoordinateTransformation(s, t, phi, lambda, p.data()));
            },
            py::arg("source"), py::arg("target"), py::arg("phi"), py::arg("lambda_"), py::arg("parameters"),
            "Through geocentric coordinates with the cube four parameters about the axis of latitude phi "
            "and longitude lambda_ (radians).")
        .def_static(
            "create_geoid_fitting_coordinate_transformation",
            Bound(&Factory::CreateGeoidFittingCoordinateTransformation),
            py::arg("source"), py::arg("target"), py::arg("source_points"), py::arg("target_points"),
            "A second-order polynomial fitted to the control points in geographic degrees, between the "
            "unprojection of a projected source and the projection into a projected target.")
        .def_static(
            "create_plane_fitting_coordinate_transformation",
            Bound(&Factory::CreatePlaneFittingCoordinateTransformation),
            py::arg("source_points"), py::arg("target_points"),
            "A second-order polynomial fitted to the plane control points as given; fewer than six points "
            "leave the undetermined coefficients at 0.");
}

}  // namespace LmPython
