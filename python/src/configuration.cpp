// The process-wide configuration, for the package's config module.
#include "binding.h"

namespace LmPython {

void BindConfiguration(py::module_& m) {
    using Lumora::Utility::LmGlobeConfig;
    m.def(
        "_config_get",
        [](const std::string& path) -> py::object {
            const std::string value = Text(LmGlobeConfig::Instance()[path.c_str()].StringValue(""));
            return value.empty() ? py::object(py::none()) : py::object(py::str(value));
        },
        py::arg("path"), "The text at a '/'-separated path; None when missing or empty.");
    m.def(
        "_config_set", [](const std::string& path, const std::string& value) { LmGlobeConfig::Set(path.c_str(), value.c_str()); },
        py::arg("path"), py::arg("value"));
    m.def(
        "_config_clear", [](const std::string& path) { LmGlobeConfig::Clear(path.c_str()); }, py::arg("path"));
    m.def(
        "_config_load", [](const std::string& path) { return LmGlobeConfig::Load(path.c_str()); }, py::arg("path"));
}

}  // namespace LmPython
