// The extension module behind the lmspatialreference package, and the checks
// every array-taking call shares.
#include "binding.h"

#include <algorithm>
#include <climits>

namespace LmPython {

namespace {

std::string TypeName(py::handle value) { return py::str(py::type::handle_of(value).attr("__name__")); }

std::string ShapeText(const ArrayRule& rule) {
    const std::string rows = rule.length < 0 ? "n" : std::to_string(rule.length);
    switch (rule.columns) {
        case ArrayRule::vector: return "(" + rows + ",)";
        case ArrayRule::pairs: return "(" + rows + ", 2)";
        case ArrayRule::points: return "(" + rows + ", 2) or (" + rows + ", 3)";
        case ArrayRule::records: break;
    }
    return "(" + rows + ", d), d >= 2";
}

bool HasShape(const py::array& array, const ArrayRule& rule) {
    if (rule.length >= 0 && (array.ndim() < 1 || array.shape(0) != rule.length)) return false;
    if (rule.columns == ArrayRule::vector) return array.ndim() == 1;
    if (array.ndim() != 2) return false;
    if (rule.columns == ArrayRule::records) return array.shape(1) >= 2;
    return array.shape(1) == 2 || (rule.columns == ArrayRule::points && array.shape(1) == 3);
}

}  // namespace

Float64Array CheckArray(py::handle values, const char* what, const ArrayRule& rule) {
    if (!py::isinstance<py::array>(values)) {
        throw py::type_error(std::string(what) + " must be a numpy.ndarray of float64, not " + TypeName(values));
    }
    auto array = py::reinterpret_borrow<py::array>(values);
    if (!IsFloat64(array)) {
        throw py::type_error(std::string(what) + " must have dtype float64, not " + std::string(py::str(array.dtype())));
    }
    if (!HasShape(array, rule)) {
        throw py::value_error(std::string(what) + " must have shape " + ShapeText(rule) + ", not " +
                              std::string(py::str(array.attr("shape"))));
    }
    if (!(rule.contiguous || rule.written)) return Float64Array::ensure(array);
    if (!(array.flags() & py::array::c_style)) {
        throw py::value_error(std::string(what) + " must be C-contiguous (use numpy.ascontiguousarray)");
    }
    if (rule.written && !array.writeable()) {
        throw py::value_error(std::string(what) + " is read-only; it is written in place");
    }
    return py::reinterpret_borrow<Float64Array>(array);
}

PointArray CheckPoints(py::handle points, const char* what) {
    auto array = CheckArray(points, what, {ArrayRule::points, -1, true, true});
    PointArray result;
    result.data = array.mutable_data();
    result.count = array.shape(0);
    result.dimension = static_cast<int>(array.shape(1));
    result.keep = array;
    return result;
}

ControlPoints CheckControlPoints(py::handle source, py::handle target, ArrayRule::Columns columns,
                                 const char* sourceName, const char* targetName) {
    ControlPoints points{CheckArray(source, sourceName, {columns}), CheckArray(target, targetName, {columns})};
    if (points.source.shape(0) != points.target.shape(0) || points.source.shape(1) != points.target.shape(1)) {
        throw py::value_error(std::string(sourceName) + " and " + targetName + " must have the same shape");
    }
    if (points.source.shape(0) > INT_MAX / 3) throw py::value_error("too many control points");
    points.count = static_cast<int>(points.source.shape(0));
    points.dimension = static_cast<int>(points.source.shape(1));
    return points;
}

bool TransformInPlace(LmCoordinateTransformation& transformation, const PointArray& points, bool reverse) {
    // Whole points per call, well inside int, however long the array.
    constexpr py::ssize_t chunk = INT_MAX / 4;
    py::gil_scoped_release release;
    bool ok = true;
    for (py::ssize_t first = 0; first < points.count || (first == 0 && points.count == 0); first += chunk) {
        const int count = static_cast<int>(std::min(chunk, points.count - first));
        double* x = points.data + first * points.dimension;
        double* z = points.dimension == 3 ? x + 2 : nullptr;
        const bool done = reverse ? transformation.ReverseTransformation(x, x + 1, z, count, points.dimension)
                                  : transformation.Transformation(x, x + 1, z, count, points.dimension);
        ok = done && ok;
        if (points.count == 0) break;
    }
    return ok;
}

std::vector<double> CheckParameters(py::handle values, std::size_t count, const char* what) {
    auto array = py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(values);
    if (!array) throw py::type_error(std::string(what) + " must be " + std::to_string(count) + " numbers");
    if (static_cast<std::size_t>(array.size()) != count) {
        throw py::value_error(std::string(what) + " must hold " + std::to_string(count) + " values, not " +
                              std::to_string(array.size()));
    }
    return std::vector<double>(array.data(), array.data() + count);
}

}  // namespace LmPython

PYBIND11_MODULE(_lmspatialreference, m) {
    m.doc() = "Coordinate reference systems and coordinate transformations (liblmspatialreference).";
    LmPython::BindSpatialReference(m);
    LmPython::BindTransformations(m);
    LmPython::BindGeodesics(m);
    LmPython::BindFactory(m);
    LmPython::BindPyramids(m);
    LmPython::BindOutcomes(m);
    LmPython::BindConfiguration(m);
}
