// Writes untrusted bytes as the EPSG category of a catalogue folder and reads
// it through the catalogue: its count, the first and last entries with their
// queries, and the entries just out of range.
#include <lmspatialreference/spatialreferencemanager.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace Lumora::Kernel;

namespace {

// One scratch folder per fuzzing process, removed when the process ends.
struct ScratchFolder {
    std::string folder = "/tmp/fuzz_category_" + std::to_string(getpid());
    std::string file = folder + "/EPSG.txt";
    ScratchFolder() { mkdir(folder.c_str(), 0700); }
    ~ScratchFolder() {
        std::remove(file.c_str());
        rmdir(folder.c_str());
    }
};

void _Query(const LmSmarterPtr<LmSpatialReference>& reference) {
    if (!reference) return;
    reference->Name();
    reference->IsGeographic();
    reference->IsProjected();
    reference->EquatorialRadiusA();
    reference->FlattenInverseF();
    reference->Units();
    reference->ExportToProj4();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const ScratchFolder scratch;
    if (FILE* file = std::fopen(scratch.file.c_str(), "wb")) {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    LmSpatialReferenceManager catalogue(scratch.folder.c_str());
    if (catalogue.CategoryCount() != 1) return 0;
    LmSpatialReferenceManager::LmSpatialReferenceCategory* category =
        catalogue.SpecialCategory(LmSpatialReferenceManager::eEPSGCategory);
    if (category == nullptr) __builtin_trap();  // the file is named EPSG.txt
    category->Name();
    const int count = category->Count();
    for (int i : {-1, 0, count - 1, count}) _Query(category->SpatialReference(i));
    return 0;
}
