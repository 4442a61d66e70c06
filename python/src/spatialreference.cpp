// LmSpatialReference and its enumerations.
#include "binding.h"

namespace LmPython {

namespace {

// A reference travels as its WKT and its name, so it rebuilds in a process
// that shares nothing with this one (a Dask worker, say).
py::tuple ReferenceState(const LmSpatialReference& reference) {
    if (reference.IsNull()) return py::make_tuple(std::string(), py::none());
    return py::make_tuple(Text(reference.ExportToWKT(false)), Text(reference.Name()));
}

LmSmarterPtr<LmSpatialReference> ReferenceFromState(const py::tuple& state) {
    if (state.size() != 2) throw std::runtime_error("invalid LmSpatialReference state");
    const auto wkt = state[0].cast<std::string>();
    LmSmarterPtr<LmSpatialReference> reference(new LmSpatialReference(wkt.c_str(), eWKT));
    if (!state[1].is_none()) reference->Name(state[1].cast<std::string>().c_str());
    return reference;
}

}  // namespace

void BindSpatialReference(py::module_& m) {
    py::enum_<LmWellKnownSpatialReference>(m, "LmWellKnownSpatialReference",
                                           "The definitions the library carries with it.")
        .value("eWGS84", eWGS84)
        .value("eCGCS2000", eCGCS2000)
        .value("eWebMercator", eWebMercator)
        .export_values();
    py::enum_<LmSpatialReferenceFormat>(m, "LmSpatialReferenceFormat", "How a definition text is read.")
        .value("eAutoDetect", eAutoDetect)
        .value("eWKT", eWKT)
        .value("eXML", eXML)
        .value("eProj4", eProj4)
        .value("eWKTOther", eWKTOther)
        .value("eLegacyParameters", eLegacyParameters)
        .export_values();
    py::enum_<LmUnits>(m, "LmUnits", "Units of measure, by their EPSG unit-of-measure codes.")
        .value("eMeter", eMeter)
        .value("eDegree", eDegree)
        .value("eKM", eKM)
        .value("eCM", eCM)
        .value("eMM", eMM)
        .value("eInch", eInch)
        .value("eSexagesimalDMS", eSexagesimalDMS)
        .value("eUnity", eUnity)
        .export_values();

    py::class_<LmSpatialReference, LmSmarterPtr<LmSpatialReference>>(
        m, "LmSpatialReference",
        "A coordinate reference system. A definition that cannot be read gives a null reference "
        "(is_null is True), whose queries answer False, 0.0 or an empty text.")
        // Before the code overload: an enumerator also converts to int.
        .def(py::init<LmWellKnownSpatialReference>(), py::arg("well_known"), "One of the built-in definitions.")
        .def(py::init<int>(), py::arg("epsg_code"),
             "The reference of an EPSG code, from the library's EPSG table (else GDAL's EPSG support "
             "when the table lacks the code); null when the code cannot be resolved or the table "
             "cannot be loaded.")
        .def(py::init([](const std::string& text, LmSpatialReferenceFormat format) {
                 return new LmSpatialReference(text.c_str(), format);
             }),
             py::arg("text"), py::arg("format") = eWKT,
             "A reference read from WKT (default), GDAL's XML form, a PROJ.4 string or the legacy "
             "parameter text, as format says.")
        .def_property_readonly("is_null", &LmSpatialReference::IsNull, "True when the definition could not be read.")
        .def_property_readonly("is_geographic", &LmSpatialReference::IsGeographic)
        .def_property_readonly("is_projected", &LmSpatialReference::IsProjected)
        .def_property_readonly("is_local_cs", &LmSpatialReference::IsLocalCS)
        .def_property(
            "name", [](const LmSpatialReference& r) { return Text(r.Name()); },
            [](LmSpatialReference& r, const std::string& name) { r.Name(name.c_str()); },
            "The name given here, else the definition's; renaming leaves the exports alone.")
        .def_property_readonly("ellipsoid", [](const LmSpatialReference& r) { return Text(r.Ellipsoid()); })
        .def_property_readonly("projection", [](const LmSpatialReference& r) { return Text(r.Projection()); },
                               "The projection method's name; empty when not projected.")
        .def_property_readonly("equatorial_radius_a", &LmSpatialReference::EquatorialRadiusA, "Metres.")
        .def_property_readonly("polar_radius_b", &LmSpatialReference::PolarRadiusB, "Metres.")
        .def_property_readonly("flatten_inverse_f", &LmSpatialReference::FlattenInverseF, "0 for a sphere.")
        .def_property_readonly("mean_radius", &LmSpatialReference::MeanRadius, "Metres.")
        .def_property_readonly("units", &LmSpatialReference::Units)
        .def_property_readonly("epsg", &LmSpatialReference::EPSG,
                               "The EPSG code (GDAL's authority code, else identified, else searched in the "
                               "library's EPSG table); 0 when none is found or the reference is null.")
        .def(
            "find_epsg",
            [](const LmSpatialReference& r) {
                py::gil_scoped_release release;
                return r.FindEPSG();
            },
            "The EPSG code the text means, judged by its numbers and then its datum and CS names (ESRI "
            "spellings included); 0 when no code reaches confidence 70.")
        .def(
            "epsg_candidates",
            [](const LmSpatialReference& r) {
                std::vector<LmEPSGMatch> candidates;
                {
                    py::gil_scoped_release release;
                    r.FindEPSG(&candidates);
                }
                py::list ranked;
                for (const LmEPSGMatch& match : candidates)
                    ranked.append(py::make_tuple(match.Code, match.Confidence, Text(match.Name)));
                return ranked;
            },
            "Every EPSG code whose numbers agree, best first, as (code, confidence 0..100, name).")
        .def(
            "export_to_wkt", [](const LmSpatialReference& r, bool pretty) { return Text(r.ExportToWKT(pretty)); },
            py::arg("pretty") = false, "The WKT form; empty for a null reference.")
        .def(
            "export_to_xml", [](const LmSpatialReference& r) { return Text(r.ExportToXml()); },
            "GDAL's XML form; empty for a null reference.")
        .def(
            "export_to_proj4", [](const LmSpatialReference& r) { return Text(r.ExportToProj4()); },
            "The PROJ.4 form; empty for a null reference.")
        .def("geographic", &LmSpatialReference::Geographic,
             "Itself when geographic, else its geographic reference; None when there is none.")
        .def("clone", &LmSpatialReference::Clone, "A new reference read from this one's WKT.")
        .def("is_same", &LmSpatialReference::IsSame, py::arg("other"))
        .def("is_same_proj_cs", &LmSpatialReference::IsSameProjCS, py::arg("other"))
        .def("is_same_geog_cs", &LmSpatialReference::IsSameGeogCS, py::arg("other"))
        .def("is_same_parameter", &LmSpatialReference::IsSameParameter, py::arg("other"))
        .def("__repr__",
             [](const LmSpatialReference& r) {
                 return r.IsNull() ? std::string("<LmSpatialReference null>")
                                   : "<LmSpatialReference '" + Text(r.Name()) + "'>";
             })
        // The package pickles a reference as this state (see __init__.py).
        .def("_state", &ReferenceState)
        .def_static("_from_state", &ReferenceFromState);
}

}  // namespace LmPython
