// The extension module behind the lmspatialreference package, and the checks
// every array-taking call shares.
#include "binding.h"

#include <algorithm>
#include <climits>

namespace LmPython {

PointArray CheckPoints(py::handle points, const char* what) {
    if (!py::isinstance<py::array>(points)) {
        throw py::type_error(std::string(what) + " must be a numpy.ndarray of float64, not " +
                             std::string(py::str(py::type::handle_of(points).attr("__name__"))));
    }
    auto array = py::reinterpret_borrow<py::array>(points);
    if (!IsFloat64(array)) {
        throw py::type_error(std::string(what) + " must have dtype float64, not " +
                             std::string(py::str(array.dtype())));
    }
    if (array.ndim() != 2 || (array.shape(1) != 2 && array.shape(1) != 3)) {
        throw py::value_error(std::string(what) + " must have shape (n, 2) or (n, 3), not " +
                              std::string(py::str(array.attr("shape"))));
    }
    if (!(array.flags() & py::array::c_style)) {
        throw py::value_error(std::string(what) + " must be C-contiguous (use numpy.ascontiguousarray)");
    }
    if (!array.writeable()) {
        throw py::value_error(std::string(what) + " is read-only; points are transformed in place");
    }
    PointArray result;
    result.data = static_cast<double*>(array.mutable_data());
    result.count = array.shape(0);
    result.dimension = static_cast<int>(array.shape(1));
    result.keep = array;
    return result;
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
    std::vector<double> result;
    try {
        result = values.cast<std::vector<double>>();
    } catch (const py::cast_error&) {
        throw py::type_error(std::string(what) + " must be a sequence of " + std::to_string(count) + " floats");
    }
    if (result.size() != count) {
        throw py::value_error(std::string(what) + " must hold " + std::to_string(count) + " values, not " +
                              std::to_string(result.size()));
    }
    return result;
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
