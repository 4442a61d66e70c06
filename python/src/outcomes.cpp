// The array call behind the package's Transformer: coordinates read from
// source arrays, written to new ones, with each point's outcome, so Python
// can mark the refused points instead of returning them as results.
#include "binding.h"

#include <algorithm>
#include <climits>

namespace LmPython {

namespace {

// A 1-D C-contiguous float64 array of length n, writable when written to.
Float64Array CheckCoordinates(py::handle values, py::ssize_t n, bool written, const char* what) {
    return CheckArray(values, what, {ArrayRule::vector, n, true, written});
}

bool TransformedInto(LmCoordinateTransformation& t, py::handle sourceX, py::handle sourceY, py::handle sourceZ,
                     py::handle x, py::handle y, py::handle z, py::handle transformed) {
    const auto sx = CheckArray(sourceX, "source_x", {ArrayRule::vector, -1, true});
    const py::ssize_t n = sx.shape(0);
    if (sourceZ.is_none() != z.is_none()) throw py::value_error("source_z and z go together");
    auto sy = CheckCoordinates(sourceY, n, false, "source_y");
    auto tx = CheckCoordinates(x, n, true, "x"), ty = CheckCoordinates(y, n, true, "y");
    Float64Array sz, tz;
    if (!z.is_none()) {
        sz = CheckCoordinates(sourceZ, n, false, "source_z");
        tz = CheckCoordinates(z, n, true, "z");
    }
    auto flags = py::array_t<unsigned char, py::array::c_style>::ensure(transformed);
    if (!flags || !py::isinstance<py::array_t<unsigned char>>(transformed) || flags.ndim() != 1 ||
        flags.shape(0) != n || !flags.writeable()) {
        throw py::value_error("transformed must be a writable 1-D uint8 array as long as source_x");
    }

    const double* a = sx.data();
    const double* b = sy.data();
    const double* c = z.is_none() ? nullptr : sz.data();
    double* u = tx.mutable_data();
    double* v = ty.mutable_data();
    double* w = z.is_none() ? nullptr : tz.mutable_data();
    unsigned char* done = flags.mutable_data();
    py::gil_scoped_release release;
    bool ok = true;
    // Whole calls well inside the library's int count, however long the arrays.
    constexpr py::ssize_t chunk = INT_MAX / 4;
    for (py::ssize_t first = 0; first < n; first += chunk) {
        const int count = static_cast<int>(std::min(chunk, n - first));
        ok = TransformWithOutcomes(t, a + first, b + first, c ? c + first : nullptr, u + first, v + first,
                                   w ? w + first : nullptr, count, 1, done + first) &&
             ok;
    }
    return ok;
}

}  // namespace

void BindOutcomes(py::module_& m) {
    m.def("_transform_with_outcomes", &TransformedInto, py::arg("transformation"), py::arg("source_x"),
          py::arg("source_y"), py::arg("source_z"), py::arg("x"), py::arg("y"), py::arg("z"), py::arg("transformed"),
          "Copies the source coordinates (1-D float64) into x, y, z, transforms them with the GIL released and "
          "sets transformed[i] to 1 or 0 per point; True when every point succeeded.");
}

}  // namespace LmPython
