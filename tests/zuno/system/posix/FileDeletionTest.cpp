#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <zuno/CError.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/IPathes.h>
#include "system/posix/freedesktopTrash.h"
#include "text/percentEncoding.h"

#include <gtest/gtest.h>

#include <cstring>
#include <regex>

using namespace zuno;
namespace fs = std::filesystem;

namespace {

// Deleting files for good or into the home trash, which lies in the test's folder.
class FileDeletionTest : public testing::Test {
protected:
    void SetUp() override { m_environment.set("XDG_DATA_HOME", m_folder / "data"); }

    std::string trashed(const std::string& name) const { return m_folder / ("data/Trash/files/" + name); }
    std::string info(const std::string& name) const { return m_folder / ("data/Trash/info/" + name + ".trashinfo"); }
    P<IURI> uriOf(const std::string& path) const { return getPathes()->pathToURI(String::fromUTF8ToWide(path)); }

    // The message of the CError that deleting raises.
    std::string errorOf(const std::string& path, bool toRecycleBin) {
        try {
            m_files.deleteFile(uriOf(path), toRecycleBin);
        } catch (const CError& error) {
            return error.getMessage().toStdString();
        }
        return "no error";
    }

    TemporaryFolder m_folder;
    ScopedEnvironment m_environment;
    CLocalFileSystem m_files;
};

} // namespace

// The folder's permissions decide on POSIX, so a read-only file goes too.
TEST_F(FileDeletionTest, DeleteRemovesTheFileAndAnswersFalseWhenItIsGone) {
    for (const bool toRecycleBin : {false, true}) {
        const std::string file = m_folder.write("read-only #1.txt", "x", 0444);
        EXPECT_TRUE(m_files.deleteFile(uriOf(file), toRecycleBin));
        EXPECT_FALSE(fs::exists(file));
        EXPECT_EQ(fs::exists(trashed("read-only #1.txt")), toRecycleBin);
        EXPECT_FALSE(m_files.deleteFile(uriOf(file), toRecycleBin)) << "gone already";
        EXPECT_FALSE(m_files.deleteFile(uriOf(m_folder.write("plain", "") + "/below"), toRecycleBin));
    }
}

TEST_F(FileDeletionTest, FailureRaisesErrorWithSystemTextAndKeepsTheFile) {
    const std::string folder = m_folder / "folder", file = m_folder.write("kept.txt", "x");
    fs::create_directories(folder);
    EXPECT_EQ(errorOf(folder, false), "Error deleting the file '" + uriOf(folder)->toString().toStdString() + "' (" +
                                          strerror(EISDIR) + ").");
    m_folder.write("data/Trash/files", "a file where the folder belongs");
    EXPECT_EQ(errorOf(file, true),
              "Error deleting file '" + uriOf(file)->toString().toStdString() + "' (" + strerror(ENOTDIR) + ").");
    EXPECT_TRUE(fs::exists(folder) && fs::exists(file));
    EXPECT_FALSE(fs::exists(info("kept.txt")));
}

// The home trash may lie on another file system than the file (a tmpfs /dev/shm, say): the
// file is then copied, with its permissions, and removed.
TEST_F(FileDeletionTest, TrashedFileKeepsItsNameAndPermissionsAndGetsItsInfo) {
    EXPECT_EQ(posix::homeTrashFolder(), m_folder / "data/Trash");
    const std::regex layout("\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
    const std::pair<std::string, std::string> files[] = {{m_folder / "docs", "r\xC3\xA9sum\xC3\xA9 #1, 100%.txt"},
                                                         {"/dev/shm", "zuno-trash-test-" + std::to_string(getpid())}};
    for (const auto& [folder, name] : files) {
        const std::string file = TemporaryFolder::writeFile(folder + "/" + name, "content", 0640);
        ASSERT_EQ(posix::moveToTrash(file), 0) << file;
        EXPECT_FALSE(fs::exists(file));
        EXPECT_EQ(TemporaryFolder::read(trashed(name)), "content");
        EXPECT_EQ(fs::status(trashed(name)).permissions(), fs::perms(0640));
        const std::string text = TemporaryFolder::read(info(name));
        std::smatch match;
        ASSERT_TRUE(std::regex_match(text, match, layout)) << text;
        EXPECT_EQ(match[1].str(), percentEncode(file, "/"));
    }
    EXPECT_EQ(fs::status(m_folder / "data/Trash/files").permissions(), fs::perms::owner_all);

    m_folder.write("dir/inner.txt", "x");
    ASSERT_EQ(posix::moveToTrash(m_folder / "dir/"), 0) << "a folder moves whole, its trailing slash does not matter";
    EXPECT_EQ(TemporaryFolder::read(trashed("dir/inner.txt")), "x");
    EXPECT_TRUE(fs::exists(info("dir")));
}

// A file in files/ without its info (left by another program) keeps its place too.
TEST_F(FileDeletionTest, TakenTrashNamesGetANumberBeforeTheExtension) {
    m_folder.write("data/Trash/files/orphan.txt", "orphan");
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"report.txt", {"report.txt", "report.2.txt", "report.3.txt"}},
        {"archive.tar.gz", {"archive.tar.gz", "archive.tar.2.gz"}},
        {".hidden", {".hidden", ".hidden.2"}},
        {"plain", {"plain", "plain.2"}},
        {"orphan.txt", {"orphan.2.txt"}},
    };
    for (const auto& [name, expected] : cases) {
        for (size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(posix::moveToTrash(m_folder.write(std::to_string(i) + "/" + name, std::to_string(i))), 0);
            EXPECT_EQ(TemporaryFolder::read(trashed(expected[i])), std::to_string(i)) << expected[i];
            EXPECT_TRUE(fs::exists(info(expected[i]))) << expected[i];
        }
    }
    EXPECT_EQ(TemporaryFolder::read(trashed("orphan.txt")), "orphan");
}
