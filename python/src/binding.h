// What every part of the Python module shares: the intrusive holder, text
// conversion and the checks on NumPy point arrays.
#ifndef LMSPATIALREFERENCE_PYTHON_BINDING_H
#define LMSPATIALREFERENCE_PYTHON_BINDING_H

#include <lmspatialreference/lmspatialreference.h>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <string>

// The library's objects count their own references, so Python shares them
// with C++ through LmSmarterPtr: a raw pointer handed back from C++ gains a
// reference instead of being adopted a second time.
PYBIND11_DECLARE_HOLDER_TYPE(T, Lumora::Utility::LmSmarterPtr<T>, true)

namespace pybind11 {
namespace detail {
template <typename T>
struct holder_helper<Lumora::Utility::LmSmarterPtr<T>> {
    static T* get(const Lumora::Utility::LmSmarterPtr<T>& p) { return p; }
};
}  // namespace detail
}  // namespace pybind11

namespace LmPython {

namespace py = pybind11;
using namespace Lumora::Kernel;

inline std::string Text(const Lumora::Utility::LmString& text) { return text; }

// True for a float64 array in native byte order. The dtype is compared by
// value: an unpickled array carries its own dtype object, not NumPy's own.
inline bool IsFloat64(const py::array& array) { return py::array_t<double>::check_(array); }

// A borrowed view of a checked array of points: count points of dimension
// doubles each, packed.
struct PointArray {
    double* data = nullptr;
    py::ssize_t count = 0;
    int dimension = 0;
    py::array keep;  // holds the array while the GIL is released
};

// Accepts only a writable, C-contiguous float64 ndarray of shape (n, 2) or
// (n, 3); anything else raises TypeError (not an array, wrong dtype) or
// ValueError (shape, order, read-only) before a single value is touched.
PointArray CheckPoints(py::handle points, const char* what = "points");

// Runs one transformation over the whole array with the GIL released,
// splitting arrays too long for the library's int count into several calls.
// True when every point succeeded.
bool TransformInPlace(LmCoordinateTransformation& transformation, const PointArray& points, bool reverse);

// Reads a sequence of exactly count floats for a C++ parameter array.
std::vector<double> CheckParameters(py::handle values, std::size_t count, const char* what);

void BindSpatialReference(py::module_& m);
void BindTransformations(py::module_& m);
void BindGeodesics(py::module_& m);
void BindFactory(py::module_& m);
void BindPyramids(py::module_& m);
void BindOutcomes(py::module_& m);
void BindConfiguration(py::module_& m);

}  // namespace LmPython

#endif  // LMSPATIALREFERENCE_PYTHON_BINDING_H
