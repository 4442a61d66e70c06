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

using Float64Array = py::array_t<double, py::array::c_style>;

// What an array argument must be, beyond float64 values.
struct ArrayRule {
    enum Columns { vector, pairs, points, records } columns;  // 1-D, (n, 2), (n, 2) / (n, 3), (n, d >= 2)
    py::ssize_t length = -1;                         // the rows (or elements) required; -1 for any
    bool contiguous = false;                         // read in place through a raw pointer
    bool written = false;                            // written in place: contiguous and writable too
};

// The one check of a NumPy array argument: TypeError unless values is a
// float64 ndarray in native byte order, ValueError unless it has the shape
// (and, where asked, the order and writability) of rule; nothing has been
// touched when either is raised. Returns the array itself, or a C-contiguous
// copy where rule lets the values be read from one.
Float64Array CheckArray(py::handle values, const char* what, const ArrayRule& rule);

// The number of datum-shift parameters method takes: 3 for the geocentric
// translation, 7 otherwise.
inline std::size_t MethodParameterCount(LmCoordinateTransformationMethod method) {
    return method == eGeocentricTranslation3Parameter ? 3 : 7;
}

// A borrowed view of a checked array of points: count points of dimension
// doubles each, packed.
struct PointArray {
    double* data = nullptr;
    py::ssize_t count = 0;
    int dimension = 0;
    py::array keep;  // holds the array while the GIL is released
};

// Points transformed in place: a writable, C-contiguous float64 ndarray of
// shape (n, 2) or (n, 3), checked by CheckArray.
PointArray CheckPoints(py::handle points, const char* what = "points");

// Control points: two float64 arrays of one shape, (n, 2) or (n, 3) (or
// only (n, 2) for columns pairs); read-only and non-contiguous arrays are
// fine, nothing is written to them.
struct ControlPoints {
    Float64Array source, target;
    int count = 0, dimension = 0;
};
ControlPoints CheckControlPoints(py::handle source, py::handle target, ArrayRule::Columns columns = ArrayRule::points,
                                 const char* sourceName = "source_points", const char* targetName = "target_points");

// Runs one transformation over the whole array with the GIL released,
// splitting arrays too long for the library's int count into several calls.
// True when every point succeeded.
bool TransformInPlace(LmCoordinateTransformation& transformation, const PointArray& points, bool reverse);

// Reads exactly count doubles for a C++ parameter array from anything NumPy
// reads as numbers, of any shape, in C order (corners as 8 floats, 4 pairs or
// a (4, 2) array, say).
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
