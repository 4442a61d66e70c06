// The configuration file is read from wherever LUMORA_CONFIG points, so its
// reader meets whatever bytes a user or an attacker left there.
#include <lmspatialreference/lmspatialreference.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using Lumora::Utility::LmGlobeConfig;
    // One scratch file per fuzzing process, removed when the process ends.
    struct ScratchFile {
        std::string path = "/tmp/fuzz_config_" + std::to_string(getpid()) + ".xml";
        ~ScratchFile() { std::remove(path.c_str()); }
    };
    static const ScratchFile scratch;
    const std::string& path = scratch.path;
    if (FILE* file = std::fopen(path.c_str(), "wb")) {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    LmGlobeConfig::Load(path.c_str());
    // Read back what the file may have set, then start the next input afresh.
    LmGlobeConfig::Instance()["Kernel/SpatialReference/ProjectCoordinateTransformation/Parallel"].BoolValue(false);
    LmGlobeConfig::Instance()["Kernel"]["SpatialReference"].StringValue("");
    LmGlobeConfig::Clear("");
    return 0;
}
