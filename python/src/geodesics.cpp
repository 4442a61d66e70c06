// Geodesics on an ellipsoid, longitude first.
#include "binding.h"

namespace LmPython {

void BindGeodesics(py::module_& m) {
    py::class_<LmGeodesic>(m, "LmGeodesic",
                           "Inverse and direct problems on one ellipsoid; distances in the units of the axis, "
                           "azimuths in degrees clockwise from north, points as (longitude, latitude).")
        .def(py::init<double, double>(), py::arg("a"), py::arg("f"),
             "Semi-major axis a and flattening f (a value above 1 is an inverse flattening; 0 a sphere).")
        .def(py::init<LmSpatialReference*>(), py::arg("reference"),
             "The ellipsoid of a reference; None or a null reference gives the degenerate ellipsoid.")
        .def(
            "inverse",
            [](const LmGeodesic& g, double x1, double y1, double x2, double y2) {
                double azi1 = 0, azi2 = 0;
                const double s12 = g.Inverse(x1, y1, x2, y2, &azi1, &azi2);
                return py::make_tuple(s12, azi1, azi2);
            },
            py::arg("x1"), py::arg("y1"), py::arg("x2"), py::arg("y2"),
            "(distance, forward azimuth at point 1, forward azimuth at point 2).")
        .def(
            "direct",
            [](const LmGeodesic& g, double x1, double y1, double azi1, double s12) {
                double x2 = 0, y2 = 0, azi2 = 0;
                g.Direct(x1, y1, azi1, s12, &x2, &y2, &azi2);
                return py::make_tuple(x2, y2, azi2);
            },
            py::arg("x1"), py::arg("y1"), py::arg("azi1"), py::arg("s12"),
            "(x2, y2, azimuth there) at distance s12 from (x1, y1) along azi1.")
        .def(
            "interpolation",
            [](const LmGeodesic& g, double x1, double y1, double x2, double y2, double ratio) {
                double x = 0, y = 0, azi = 0;
                g.Interpolation(x1, y1, x2, y2, ratio, &x, &y, &azi);
                return py::make_tuple(x, y, azi);
            },
            py::arg("x1"), py::arg("y1"), py::arg("x2"), py::arg("y2"), py::arg("ratio"),
            "(x, y, azimuth) at ratio of the way from point 1 to point 2.")
        .def(
            "compute_geodesic",
            [](const LmGeodesic& g, py::handle points) {
                // Read only, so any float64 (n, >= 2) array will do once made contiguous.
                const auto packed = CheckArray(points, "points", {ArrayRule::records});
                if (packed.size() > INT_MAX) throw py::value_error("too many points");
                const double* data = packed.data();
                const int count = static_cast<int>(packed.size());
                const int dim = static_cast<int>(packed.shape(1));
                py::gil_scoped_release release;
                return g.ComputeGeodesic(data, count, dim);
            },
            py::arg("points"), "The length of the polyline through the points (longitude, latitude[, ...]).");

    py::class_<LmGeodesicLine, LmGeodesic> line(m, "LmGeodesicLine", "Positions along one geodesic.");
    py::enum_<LmGeodesicLine::GeoDMask>(line, "GeoDMask", py::arithmetic(), "What a line is set up to compute.")
        .value("eNone", LmGeodesicLine::eNone)
        .value("eLatitude", LmGeodesicLine::eLatitude)
        .value("eLongitude", LmGeodesicLine::eLongitude)
        .value("eAzimuth", LmGeodesicLine::eAzimuth)
        .value("eDistance", LmGeodesicLine::eDistance)
        .value("eDistanceIn", LmGeodesicLine::eDistanceIn)
        .value("eReducedLength", LmGeodesicLine::eReducedLength)
        .value("eGeodesicScale", LmGeodesicLine::eGeodesicScale)
        .value("eArea", LmGeodesicLine::eArea)
        .value("eAll", LmGeodesicLine::eAll)
        .export_values();
    line.def(py::init<LmSpatialReference*, double, double, double, LmGeodesicLine::GeoDMask>(), py::arg("reference"),
             py::arg("x1"), py::arg("y1"), py::arg("azi1"), py::arg("caps") = LmGeodesicLine::eNone)
        .def(py::init<double, double, double, double, double, LmGeodesicLine::GeoDMask>(), py::arg("a"), py::arg("f"),
             py::arg("x1"), py::arg("y1"), py::arg("azi1"), py::arg("caps") = LmGeodesicLine::eNone)
        .def(
            "position",
            [](const LmGeodesicLine& l, double s12) {
                double x = 0, y = 0;
                l.Position(s12, &x, &y, nullptr);
                return py::make_tuple(x, y);
            },
            py::arg("s12"), "(x, y) at distance s12 from the start.");

    py::class_<LmGeodesicPolygon, LmGeodesic>(m, "LmGeodesicPolygon",
                                              "Area and perimeter of a polygon, or length of a polyline.")
        .def(py::init<LmSpatialReference*, bool>(), py::arg("reference"), py::arg("polyline") = false)
        .def(py::init<double, double, bool>(), py::arg("a"), py::arg("f"), py::arg("polyline") = false)
        .def("reset", &LmGeodesicPolygon::Reset, "Forgets every point.")
        .def("add_point", &LmGeodesicPolygon::AddPoint, py::arg("x"), py::arg("y"))
        .def("add_edge", &LmGeodesicPolygon::AddEdge, py::arg("azi"), py::arg("s"),
             "A vertex at distance s along azimuth azi from the last one.")
        .def(
            "compute",
            [](const LmGeodesicPolygon& p, bool reverse, bool sign) {
                double area = 0, perimeter = 0;
                const unsigned count = p.Compute(reverse, sign, &area, &perimeter);
                return py::make_tuple(count, area, perimeter);
            },
            py::arg("reverse") = false, py::arg("sign") = true,
            "(number of points, area, perimeter); the area of a polyline is 0.");
}

}  // namespace LmPython
