// The transformation interface and the transformations that need no factory.
#include "binding.h"

#include <array>

namespace LmPython {

namespace {

py::object PointResult(bool ok, double x, double y) {
    return ok ? py::object(py::make_tuple(x, y)) : py::object(py::none());
}

std::array<double, 6> Elements(const LmAffineCoordinateTransformation& affine) {
    const double* m = affine.Matrix();
    return {m[0], m[1], m[2], m[3], m[4], m[5]};
}

// transform and reverse_transform.
template <bool reverse>
bool InPlace(LmCoordinateTransformation& transformation, py::handle points) {
    return TransformInPlace(transformation, CheckPoints(points), reverse);
}

py::object PointsCopy(const double* values, int count) {
    if (!values) return py::none();
    py::array_t<double> copy({static_cast<py::ssize_t>(count / 2), static_cast<py::ssize_t>(2)});
    std::copy(values, values + 2 * (count / 2), copy.mutable_data());
    return std::move(copy);
}

}  // namespace

void BindTransformations(py::module_& m) {
    py::class_<LmCoordinateTransformation, LmSmarterPtr<LmCoordinateTransformation>>(
        m, "LmCoordinateTransformation", py::dynamic_attr(),
        "Base of every transformation. Points are float64 arrays of shape (n, 2) or (n, 3), "
        "C-contiguous, transformed in place with the GIL released; geographic coordinates are "
        "degrees with x = longitude.")
        .def(
            "transform",
            &InPlace<false>,
            py::arg("points"),
            "Transforms points in place; True when every point succeeded (a failed point keeps "
            "whatever the transformation left in it).")
        .def(
            "reverse_transform",
            &InPlace<true>,
            py::arg("points"), "The reverse, for transformations that know it; False otherwise.")
        .def(
            "transform_point",
            [](LmCoordinateTransformation& t, double x, double y, py::object z) -> py::object {
                if (z.is_none()) {
                    bool ok;
                    {
                        py::gil_scoped_release release;
                        ok = t.Transformation(x, y);
                    }
                    return PointResult(ok, x, y);
                }
                double zz = z.cast<double>();
                bool ok;
                {
                    py::gil_scoped_release release;
                    ok = t.Transformation(x, y, zz);
                }
                return ok ? py::object(py::make_tuple(x, y, zz)) : py::object(py::none());
            },
            py::arg("x"), py::arg("y"), py::arg("z") = py::none(),
            "One point: the transformed (x, y) or (x, y, z), or None when it fails.");

    py::class_<LmCoordinatePrecision, LmSmarterPtr<LmCoordinatePrecision>>(
        m, "LmCoordinatePrecision", "A per-point tolerance for iterative inverses (implemented in C++ only).");

    py::class_<LmProjectCoordinateTransformation, LmCoordinateTransformation,
               LmSmarterPtr<LmProjectCoordinateTransformation>>(
        m, "LmProjectCoordinateTransformation",
        "From one spatial reference to another through GDAL; every batch fails when either is "
        "None or null or GDAL refuses the pair.")
        .def(py::init<LmSpatialReference*, LmSpatialReference*>(), py::arg("source"), py::arg("target"))
        .def_property(
            "source", [](const LmProjectCoordinateTransformation& t) { return t.Source(); },
            [](LmProjectCoordinateTransformation& t, LmSpatialReference* s) { t.Source(s); },
            "Setting it rebuilds the transformation without datum-shift parameters.")
        .def_property(
            "target", [](const LmProjectCoordinateTransformation& t) { return t.Target(); },
            [](LmProjectCoordinateTransformation& t, LmSpatialReference* s) { t.Target(s); },
            "Setting it rebuilds the transformation without datum-shift parameters.")
        .def("create_handle", &LmProjectCoordinateTransformation::CreateHandle,
             "Rebuilds the plain GDAL transformation from source and target.")
        .def_property(
            "parallel", [](const LmProjectCoordinateTransformation& t) { return t.Parallel(); },
            [](LmProjectCoordinateTransformation& t, bool on) { t.Parallel(on); },
            "Whether batches are split among threads (the configuration's switch at construction); "
            "the results are the same.")
        .def_property(
            "block_calls", [](const LmProjectCoordinateTransformation& t) { return t.BlockCalls(); },
            [](LmProjectCoordinateTransformation& t, bool on) { t.BlockCalls(on); },
            "Whether GDAL gets the points in blocks rather than one per call (the configuration's "
            "switch at construction); the results are the same.");

    py::enum_<LmCoordinateTransformationMethod>(m, "LmCoordinateTransformationMethod",
                                                "How datum-shift parameters are applied.")
        .value("ePositionVector7Parameter", ePositionVector7Parameter)
        .value("eCoordinateFrame7Parameter", eCoordinateFrame7Parameter)
        .value("eGeocentricTranslation3Parameter", eGeocentricTranslation3Parameter)
        .export_values();

    py::class_<LmParameterProjectCoordinateTransformation, LmProjectCoordinateTransformation,
               LmSmarterPtr<LmParameterProjectCoordinateTransformation>>(
        m, "LmParameterProjectCoordinateTransformation",
        "A projection transformation with datum-shift parameters on the source: metres, "
        "arc-seconds and parts per million; 7 values (3 for the translation method), or None "
        "for none.")
        .def(py::init([](LmSpatialReference* source, LmSpatialReference* target,
                                       LmCoordinateTransformationMethod method, py::object parameters) {
                 if (parameters.is_none()) {
                     return new LmParameterProjectCoordinateTransformation(source, target, method, nullptr);
                 }
                 const auto values = CheckParameters(parameters, MethodParameterCount(method), "parameters");
                 return new LmParameterProjectCoordinateTransformation(source, target, method, values.data());
             }),
             py::arg("source"), py::arg("target"), py::arg("method"), py::arg("parameters"))
        .def_property_readonly("method", &LmParameterProjectCoordinateTransformation::Method)
        .def(
            "set_parameter",
            [](LmParameterProjectCoordinateTransformation& t, LmCoordinateTransformationMethod method,
                             py::handle parameters) {
                const auto values = CheckParameters(parameters, MethodParameterCount(method), "parameters");
                t.Parameter(method, values.data());
            },
            py::arg("method"), py::arg("parameters"), "Replaces the datum-shift parameters.");

    m.def("out_of_china", &outOfChina, py::arg("lon"), py::arg("lat"),
          "True outside the box in which the GCJ-02 offset applies.");
    py::class_<LmWGS84ToGCJ02CoordinateTransformation, LmCoordinateTransformation,
               LmSmarterPtr<LmWGS84ToGCJ02CoordinateTransformation>>(
        m, "LmWGS84ToGCJ02CoordinateTransformation", "WGS 84 to GCJ-02 inside China; other points stay.")
        .def(py::init<>());
    py::class_<LmWGS84ToBD09CoordinateTransformation, LmWGS84ToGCJ02CoordinateTransformation,
               LmSmarterPtr<LmWGS84ToBD09CoordinateTransformation>>(m, "LmWGS84ToBD09CoordinateTransformation",
                                                                     "WGS 84 to BD-09, everywhere.")
        .def(py::init<>());
    py::class_<LmGCJ02ToWGS84CoordinateTransformation, LmCoordinateTransformation,
               LmSmarterPtr<LmGCJ02ToWGS84CoordinateTransformation>>(
        m, "LmGCJ02ToWGS84CoordinateTransformation", "GCJ-02 back to WGS 84 by iteration, to precision metres.")
        .def(py::init<double>(), py::arg("precision") = 0.001)
        .def_property(
            "precision", [](const LmGCJ02ToWGS84CoordinateTransformation& t) { return t.Precision(); },
            [](LmGCJ02ToWGS84CoordinateTransformation& t, double p) { t.Precision(p); },
            "Metres; a value that is not positive stores 0.001.");
    py::class_<LmBD09ToWGS84CoordinateTransformation, LmGCJ02ToWGS84CoordinateTransformation,
               LmSmarterPtr<LmBD09ToWGS84CoordinateTransformation>>(
        m, "LmBD09ToWGS84CoordinateTransformation", "BD-09 back to WGS 84 by iteration, to precision metres.")
        .def(py::init<double>(), py::arg("precision") = 0.001);

    py::class_<LmAffineCoordinateTransformation, LmCoordinateTransformation,
               LmSmarterPtr<LmAffineCoordinateTransformation>>(
        m, "LmAffineCoordinateTransformation",
        "x' = m0 x + m2 y + m4, y' = m1 x + m3 y + m5, given by its six elements or estimated.")
        .def(py::init([](py::handle elements) {
                 const auto values = CheckParameters(elements, 6, "elements");
                 return new LmAffineCoordinateTransformation(values.data());
             }),
             py::arg("elements"))
        .def_static(
            "from_points",
            [](py::handle source, py::handle target) {
                const auto p = CheckControlPoints(source, target, ArrayRule::pairs, "source", "target");
                return LmSmarterPtr<LmAffineCoordinateTransformation>(
                    new LmAffineCoordinateTransformation(p.source.data(), p.target.data(), 2 * p.count));
            },
            py::arg("source"), py::arg("target"),
            "Least squares from (n, 2) point pairs; the identity when they do not determine it.")
        .def_static(
            "translation",
            [](double dx, double dy) {
                return LmSmarterPtr<LmAffineCoordinateTransformation>(new LmAffineCoordinateTransformation(dx, dy));
            },
            py::arg("dx"), py::arg("dy"))
        .def_static(
            "rotation",
            [](double cx, double cy, double angle) {
                return LmSmarterPtr<LmAffineCoordinateTransformation>(
                    new LmAffineCoordinateTransformation(cx, cy, angle));
            },
            py::arg("cx"), py::arg("cy"), py::arg("angle"), "Counter-clockwise by angle degrees about (cx, cy).")
        .def(
            "estimate",
            [](LmAffineCoordinateTransformation& a, py::handle source, py::handle target) {
                const auto p = CheckControlPoints(source, target, ArrayRule::pairs, "source", "target");
                return a.Parameter(p.source.data(), p.target.data(), 2 * p.count);
            },
            py::arg("source"), py::arg("target"),
            "Re-estimates the elements; False for fewer than three points or a degenerate set.")
        .def_property_readonly("elements", &Elements, "The six elements m0 ... m5.")
        .def_property_readonly(
            "identical_point_count",
            [](const LmAffineCoordinateTransformation& a) { return a.IdenticalPointCount() / 2; },
            "Points of the last estimation; 0 when built from elements.")
        .def_property_readonly(
            "source_points",
            [](const LmAffineCoordinateTransformation& a) { return PointsCopy(a.SourcePoint(), a.IdenticalPointCount()); },
            "A copy of the last estimation's source points, or None.")
        .def_property_readonly(
            "target_points",
            [](const LmAffineCoordinateTransformation& a) { return PointsCopy(a.TargetPoint(), a.IdenticalPointCount()); },
            "A copy of the last estimation's target points, or None.");

    py::class_<LmConverseCoordinateTransformation, LmCoordinateTransformation,
               LmSmarterPtr<LmConverseCoordinateTransformation>>(
        m, "LmConverseCoordinateTransformation",
        "The numeric inverse of forward. precision is a squared distance in the output units.")
        .def(py::init([](LmCoordinateTransformation* forward, double precision) {
                 return new LmConverseCoordinateTransformation(forward, nullptr, precision);
             }),
             py::arg("forward"), py::arg("precision"))
        .def_property(
            "precision", [](const LmConverseCoordinateTransformation& t) { return t.Precision(); },
            [](LmConverseCoordinateTransformation& t, double p) { t.Precision(p); });

    py::class_<LmCoordinateTransformationCombination, LmCoordinateTransformation,
               LmSmarterPtr<LmCoordinateTransformationCombination>>(
        m, "LmCoordinateTransformationCombination",
        "Applies its members in order; stops at the first that fails.")
        .def(py::init([](const std::vector<LmCoordinateTransformation*>& members) {
                 auto* chain = new LmCoordinateTransformationCombination;
                 for (auto* member : members) chain->Add(member);
                 return chain;
             }),
             py::arg("members") = std::vector<LmCoordinateTransformation*>())
        .def("add", &LmCoordinateTransformationCombination::Add, py::arg("member"))
        .def_property_readonly(
            "members",
            [](const LmCoordinateTransformationCombination& chain) {
                std::vector<LmCoordinateTransformation*> members;
                for (int i = 0; i < chain.MemberCount(); ++i) members.push_back(chain.Member(i));
                return members;
            },
            "The members in order (None for a null one).");
}

}  // namespace LmPython
