// The C++ side of the Python benchmark: the same batch call the module makes,
// timed in C++, so the binding's own cost shows as the difference.

// The module's own holder declaration, so that both modules share the
// transformation types.
#include "../src/binding.h"

#include <chrono>

using namespace LmPython;

PYBIND11_MODULE(_lmbench, m) {
    py::module_::import("lmspatialreference");  // registers the transformation types
    m.def("native_seconds", [](LmCoordinateTransformation& t, py::array_t<double, py::array::c_style> points) {
        double* x = points.mutable_data();
        const int count = static_cast<int>(points.shape(0));
        const int dimension = static_cast<int>(points.shape(1));
        py::gil_scoped_release release;
        const auto start = std::chrono::steady_clock::now();
        t.Transformation(x, x + 1, dimension == 3 ? x + 2 : nullptr, count, dimension);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    });
}
