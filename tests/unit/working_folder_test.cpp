// Tests of the working-folder rule.
#include "shell/working_folder.h"

#include <filesystem>

#include "shell_test_support.h"

namespace tl::test {
namespace {

namespace fs = std::filesystem;
using shell::AppSettings;
using shell::choose_working_folder;

class WorkingFolderTest : public ::testing::Test {
protected:
    ScratchDir dir;
    std::string documents = dir / "Documents";
    std::string program = dir / "bin";
    AppSettings settings;

    void SetUp() override {
        fs::create_directory(documents);
        fs::create_directory(program);
    }
};

TEST_F(WorkingFolderTest, ExistingWorkPathIsUsedAndKept) {
    settings.work_path = dir / "mine";
    fs::create_directory(settings.work_path);
    EXPECT_EQ(choose_working_folder(settings, documents, program), dir / "mine");
    EXPECT_EQ(settings.work_path, dir / "mine");
    EXPECT_FALSE(fs::exists(documents + "/Tessaline"));
}

TEST_F(WorkingFolderTest, WorkPathNamingAFileFallsToTheDocumentsFolder) {
    settings.work_path = dir / "notes.txt";
    write_file(settings.work_path, "x");
    EXPECT_EQ(choose_working_folder(settings, documents, program), documents + "/Tessaline");
    EXPECT_TRUE(fs::is_directory(documents + "/Tessaline"));
    EXPECT_EQ(settings.work_path, "");
}

TEST_F(WorkingFolderTest, MissingDocumentsFolderIsCreated) {
    settings.work_path = dir / "gone";
    const std::string deeper = dir / "home/Documents/";
    EXPECT_EQ(choose_working_folder(settings, deeper, program), deeper + "Tessaline");
    EXPECT_TRUE(fs::is_directory(deeper + "Tessaline"));
    EXPECT_EQ(settings.work_path, "");
}

TEST_F(WorkingFolderTest, UncreatableDocumentsFolderFallsToPrograms) {
    const std::string blocked = dir / "a-file";
    write_file(blocked, "x");
    for (const std::string& docs : {blocked, std::string()}) {
        fs::remove_all(program + "/programs");
        EXPECT_EQ(choose_working_folder(settings, docs, program), program + "/programs");
        EXPECT_TRUE(fs::is_directory(program + "/programs"));
    }
}

TEST_F(WorkingFolderTest, LastChoiceIsTheProgramFolder) {
    write_file(program + "/programs", "a file in the way");
    write_file(dir / "a-file", "x");
    EXPECT_EQ(choose_working_folder(settings, dir / "a-file/Documents", program), program);
}

TEST_F(WorkingFolderTest, EnteringChangesTheCurrentFolder) {
    const fs::path before = fs::current_path();
    EXPECT_TRUE(shell::enter_working_folder(documents));
    EXPECT_EQ(fs::current_path(), fs::path(documents));
    EXPECT_FALSE(shell::enter_working_folder(dir / "nowhere"));
    fs::current_path(before);
}

}  // namespace
}  // namespace tl::test
