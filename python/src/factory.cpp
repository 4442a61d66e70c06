// The transformation factory's estimators, in their checked form only, so
// that no control points can end the Python process.
#include "binding.h"

#include <lmspatialreference/coordinatetransformationfactory.h>

#include <cmath>

namespace LmPython {

namespace {

using Factory = LmCoordinateTransformationFactory;
using Made = LmSmarterPtr<LmCoordinateTransformation>;

// Control points: two float64 arrays of one shape (n, 2) or (n, 3); read-only
// arrays are fine, nothing is written to them.
struct ControlPoints {
    py::array_t<double, py::array::c_style> source, target;
    int count = 0, dimension = 0;
};

py::array_t<double, py::array::c_style> PointsArgument(py::handle points, const char* what) {
    if (!py::isinstance<py::array>(points)) throw py::type_error(std::string(what) + " must be a numpy.ndarray");
    auto array = py::reinterpret_borrow<py::array>(points);
    if (!array.dtype().is(py::dtype::of<double>())) throw py::type_error(std::string(what) + " must have dtype float64");
    if (array.ndim() != 2 || (array.shape(1) != 2 && array.shape(1) != 3)) {
        throw py::value_error(std::string(what) + " must have shape (n, 2) or (n, 3)");
    }
    return py::array_t<double, py::array::c_style>::ensure(array);
}

ControlPoints CheckControlPoints(py::handle source, py::handle target) {
    ControlPoints points{PointsArgument(source, "source_points"), PointsArgument(target, "target_points")};
    if (points.source.shape(0) != points.target.shape(0) || points.source.shape(1) != points.target.shape(1)) {
        throw py::value_error("source_points and target_points must have the same shape");
    }
    if (points.source.shape(0) > INT_MAX / 3) throw py::value_error("too many control points");
    points.count = static_cast<int>(points.source.shape(0));
    points.dimension = static_cast<int>(points.source.shape(1));
    return points;
}

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
            [](LmSpatialReference* s, LmSpatialReference* t, py::handle source, py::handle target) {
                auto p = CheckControlPoints(source, target);
                return Estimated([&](LmEstimationResult& r) {
                    return Factory::ComputeBursa7Parameter(s, t, p.count, p.dimension, p.source.data(),
                                                           p.target.data(), r);
                });
            },
            py::arg("source"), py::arg("target"), py::arg("source_points"), py::arg("target_points"),
            "The seven Bursa-Wolf parameters from (n, 3) points with heights.")
        .def_static(
            "compute_plane7_parameter",
            [](LmSpatialReference* s, LmSpatialReference* t, py::handle source, py::handle target) {
                auto p = CheckControlPoints(source, target);
                return Estimated([&](LmEstimationResult& r) {
                    return Factory::ComputePlane7Parameter(s, t, p.count, p.dimension, p.source.data(),
                                                           p.target.data(), r);
                });
            },
            py::arg("source"), py::arg("target"), py::arg("source_points"), py::arg("target_points"))
        .def_static(
            "compute_plane7_parameter_3d",
            [](LmSpatialReference* s, LmSpatialReference* t, py::handle source, py::handle target) {
                auto p = CheckControlPoints(source, target);
                return Estimated([&](LmEstimationResult& r) {
                    return Factory::ComputePlane7Parameter3D(s, t, p.count, p.dimension, p.source.data(),
                                                             p.target.data(), r);
                });
            },
            py::arg("source"), py::arg("target"), py::arg("source_points"), py::arg("target_points"));
}

}  // namespace LmPython
