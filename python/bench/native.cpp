// The C++ side of the Python benchmark: the same batch call the module makes,
// timed in C++, so the binding's own cost shows as the difference.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <lmspatialreference/lmspatialreference.h>

#include <chrono>

namespace py = pybind11;
using namespace Lumora::Kernel;

PYBIND11_DECLARE_HOLDER_TYPE(T, Lumora::Utility::LmSmarterPtr<T>, true)
namespace pybind11 {
namespace detail {
template <typename T>
struct holder_helper<Lumora::Utility::LmSmarterPtr<T>> {
    static T* get(const Lumora::Utility::LmSmarterPtr<T>& p) { return p; }
};
}  // namespace detail
}  // namespace pybind11

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
