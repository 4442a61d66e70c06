#include <lmspatialreference/utility.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <unistd.h>

using namespace Lumora::Utility;
namespace fs = std::filesystem;

namespace {

class FolderTest : public testing::Test {
protected:
    void SetUp() override {
        // ctest runs every case as its own process, in parallel: one folder each.
        m_folder = fs::path(testing::TempDir()) /
                   (std::string("lm_folder_") + testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(m_folder);
        fs::create_directories(m_folder / "nested.txt");  // a folder that matches the pattern
        for (const char* name : {"b.txt", "A.TXT", "c.csv", "readme"}) std::ofstream(m_folder / name) << "x";
    }
    void TearDown() override { fs::remove_all(m_folder); }

    fs::path m_folder;
};

TEST_F(FolderTest, FilesMatchThePatternIgnoringCaseSortedAndWithoutFolders) {
    const auto files = LmDir(m_folder.c_str()).Files("*.txt");
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].Name(true), "A.TXT");
    EXPECT_EQ(files[1].Name(true), "b.txt");
    EXPECT_EQ(files[1].FullPath(), (m_folder / "b.txt").string());
    EXPECT_TRUE(files[1].Exists());
}

TEST_F(FolderTest, MissingFoldersListNothing) {
    EXPECT_FALSE(LmDir((m_folder / "absent").c_str()).Exists());
    EXPECT_TRUE(LmDir((m_folder / "absent").c_str()).Files("*").empty());
    EXPECT_TRUE(LmDir(nullptr).Files("*.txt").empty());
    EXPECT_FALSE(LmDir((m_folder / "b.txt").c_str()).Exists());  // a file is no folder
}

TEST_F(FolderTest, FileNamesParentsAndFullPaths) {
    const LmFile file((m_folder / "b.txt").c_str());
    EXPECT_EQ(file.Name(true), "b.txt");
    EXPECT_EQ(file.Name(false), "b");
    EXPECT_EQ(file.Path(), (m_folder / "b.txt").string());
    EXPECT_EQ(file.Parent().FullPath(), m_folder.string());
    EXPECT_FALSE(LmFile((m_folder / "nested.txt").c_str()).Exists());

    const fs::path previous = fs::current_path();
    fs::current_path(m_folder);
    EXPECT_EQ(LmFile("./sub/../b.txt").FullPath(), (m_folder / "b.txt").string());
    EXPECT_EQ(LmFileSystem::WorkingFolder(), m_folder.string());
    fs::current_path(previous);
}

TEST(LmFileSystem, CombineJoinsWithExactlyOneSeparator) {
    EXPECT_EQ(LmFileSystem::Combine("/usr/lib", "data"), "/usr/lib/data");
    EXPECT_EQ(LmFileSystem::Combine("/usr/lib/", "data"), "/usr/lib/data");
    EXPECT_EQ(LmFileSystem::Combine("/usr/lib/", "/data"), "/usr/lib/data");
    EXPECT_EQ(LmFileSystem::Combine("", "data"), "data");
    EXPECT_EQ(LmFileSystem::Combine("/usr", nullptr), "/usr");
}

TEST(LmFileSystem, RootedPathsAndExistence) {
    EXPECT_TRUE(LmFileSystem::IsPathRooted("/etc"));
    EXPECT_FALSE(LmFileSystem::IsPathRooted("etc"));
    EXPECT_FALSE(LmFileSystem::IsPathRooted(nullptr));
    EXPECT_TRUE(LmFileSystem::Exists("/"));
    EXPECT_FALSE(LmFileSystem::Exists("/no/such/path"));
    EXPECT_FALSE(LmFileSystem::Exists(""));
    EXPECT_FALSE(LmFileSystem::Exists(nullptr));
}

TEST(LmFileSystem, ModuleFileNameIsTheUtilityLibrary) {
    const LmString module = LmFileSystem::ModuleFileName();
    EXPECT_TRUE(LmFileSystem::IsPathRooted(module.c_str()));
    EXPECT_TRUE(LmFileSystem::Exists(module.c_str()));
    EXPECT_NE(LmFile(module.c_str()).Name(true).find("liblmutility.so"), std::string::npos) << module;
}

}  // namespace
