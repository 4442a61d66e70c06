// Files and folders the EPSG and catalogue tests write for themselves, and the
// names those tests use.
#ifndef LMSPATIALREFERENCE_TESTS_EPSGTESTSUPPORT_H
#define LMSPATIALREFERENCE_TESTS_EPSGTESTSUPPORT_H

#include <lmspatialreference/configuration.h>
#include <lmspatialreference/spatialreferencemanager.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace epsgtest {

using namespace Lumora::Kernel;
using Lumora::Utility::LmGlobeConfig;

// A fresh folder below the test's temporary folder.
inline std::string MakeFolder(const std::string& name) {
    const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "lmepsg" / name;
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder.string();
}

inline std::string WriteText(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

// One-line geographic WKT on the WGS 84 or Krassowsky ellipsoid, named as given.
inline std::string Geographic(const std::string& name, bool krassowsky = false) {
    return "GEOGCS[\"" + name + "\",DATUM[\"D_" + name + "\",SPHEROID[\"S\"," +
           (krassowsky ? "6378245,298.3" : "6378137,298.257223563") +
           "]],PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433]]";
}

}  // namespace epsgtest

#endif  // LMSPATIALREFERENCE_TESTS_EPSGTESTSUPPORT_H
