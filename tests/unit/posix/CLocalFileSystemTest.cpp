#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <zuno/CError.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/IPathes.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

using namespace zuno;
namespace fs = std::filesystem;

namespace {

class CLocalFileSystemTest : public testing::Test {
protected:
    void SetUp() override { m_environment.set("XDG_DATA_HOME", m_folder / "data"); }

    P<IURI> uriOf(const std::string& path) const { return getPathes()->pathToURI(String::fromUTF8ToWide(path)); }

    // The message of the CError that deleting raises, or what went wrong instead.
    std::string errorOf(const std::string& path, bool toRecycleBin) {
        try {
            m_files.deleteFile(uriOf(path), toRecycleBin);
            return "no error";
        } catch (const CError& error) {
            return error.getMessage().toStdString();
        }
    }

    TemporaryFolder m_folder;
    ScopedEnvironment m_environment;
    CLocalFileSystem m_files;
};

} // namespace

TEST_F(CLocalFileSystemTest, DeleteRemovesTheFileAndAnswersFalseWhenItIsGone) {
    const std::string file = m_folder.write("a file #1.txt", "x");
    EXPECT_TRUE(m_files.deleteFile(uriOf(file), false));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_FALSE(m_files.deleteFile(uriOf(file), false));
    EXPECT_FALSE(m_files.deleteFile(uriOf(m_folder.write("plain", "") + "/below"), false));
    EXPECT_FALSE(fs::exists(m_folder / "data/Trash")) << "a permanent delete does not touch the trash";
}

// The folder's permissions decide on POSIX, not the file's own.
TEST_F(CLocalFileSystemTest, ReadOnlyFileIsDeletedToo) {
    const std::string file = m_folder.write("read-only.txt", "x", 0444);
    EXPECT_TRUE(m_files.deleteFile(uriOf(file), false));
    EXPECT_FALSE(fs::exists(file));
}

TEST_F(CLocalFileSystemTest, FailureRaisesErrorWithFileAndSystemText) {
    fs::create_directories(m_folder / "folder");
    const std::string uri = uriOf(m_folder / "folder")->toString().toStdString();
    EXPECT_EQ(errorOf(m_folder / "folder", false),
              "Error deleting the file '" + uri + "' (" + std::strerror(EISDIR) + ").");
    EXPECT_TRUE(fs::exists(m_folder / "folder"));
}

TEST_F(CLocalFileSystemTest, RecycleMovesTheFileToTheTrash) {
    const std::string file = m_folder.write("old report.txt", "x");
    EXPECT_TRUE(m_files.deleteFile(uriOf(file), true));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(TemporaryFolder::read(m_folder / "data/Trash/files/old report.txt"), "x");
    EXPECT_TRUE(fs::exists(m_folder / "data/Trash/info/old report.txt.trashinfo"));
    EXPECT_FALSE(m_files.deleteFile(uriOf(file), true)) << "gone already";
}

TEST_F(CLocalFileSystemTest, RecycleFailureRaisesErrorAndKeepsTheFile) {
    const std::string file = m_folder.write("kept.txt", "x");
    m_folder.write("data/Trash/files", "a file where the folder belongs");
    EXPECT_EQ(errorOf(file, true), "Error deleting file '" + uriOf(file)->toString().toStdString() + "' (" +
                                       std::strerror(ENOTDIR) + ").");
    EXPECT_TRUE(fs::exists(file));
}
