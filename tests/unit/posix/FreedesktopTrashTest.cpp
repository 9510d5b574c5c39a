#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <zuno/posix/freedesktopTrash.h>
#include <zuno/posix/percentEncoding.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <regex>

using namespace zuno::posix;
namespace fs = std::filesystem;

namespace {

class FreedesktopTrashTest : public testing::Test {
protected:
    void SetUp() override { m_environment.set("XDG_DATA_HOME", m_folder / "data"); }

    std::string trashed(const std::string& name) const { return m_folder / ("data/Trash/files/" + name); }
    std::string info(const std::string& name) const { return m_folder / ("data/Trash/info/" + name + ".trashinfo"); }

    TemporaryFolder m_folder;
    ScopedEnvironment m_environment;
};

} // namespace

TEST_F(FreedesktopTrashTest, FileMovesToTheTrashWithItsInfo) {
    const std::string file = m_folder.write("docs/r\xC3\xA9sum\xC3\xA9 #1, 100%.txt", "content", 0400);
    EXPECT_EQ(homeTrashFolder(), m_folder / "data/Trash");
    ASSERT_EQ(moveToTrash(file), 0);

    EXPECT_FALSE(fs::exists(file));
    const std::string name = "r\xC3\xA9sum\xC3\xA9 #1, 100%.txt";
    EXPECT_EQ(TemporaryFolder::read(trashed(name)), "content");
    std::smatch match;
    const std::string text = TemporaryFolder::read(info(name));
    const std::regex layout("\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
    ASSERT_TRUE(std::regex_match(text, match, layout)) << text;
    EXPECT_EQ(match[1].str(), percentEncode(file, "/"));
    EXPECT_EQ(percentDecode(match[1].str()), file);
    EXPECT_EQ(fs::status(m_folder / "data/Trash/files").permissions(), fs::perms::owner_all);
}

TEST_F(FreedesktopTrashTest, TakenNamesGetANumberBeforeTheExtension) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"report.txt", {"report.txt", "report.2.txt", "report.3.txt"}},
        {"archive.tar.gz", {"archive.tar.gz", "archive.tar.2.gz"}},
        {".hidden", {".hidden", ".hidden.2"}},
        {"plain", {"plain", "plain.2"}},
    };
    for (const auto& [name, expected] : cases) {
        for (size_t i = 0; i < expected.size(); ++i) {
            const std::string file = m_folder.write("from" + std::to_string(i) + "/" + name, std::to_string(i));
            ASSERT_EQ(moveToTrash(file), 0) << file;
            EXPECT_EQ(TemporaryFolder::read(trashed(expected[i])), std::to_string(i)) << expected[i];
            EXPECT_TRUE(fs::exists(info(expected[i]))) << expected[i];
        }
    }
}

// A file in files/ without its info (left by another program) keeps its place too.
TEST_F(FreedesktopTrashTest, OrphanedTrashFileIsNotOverwritten) {
    m_folder.write("data/Trash/files/a.txt", "orphan");
    fs::create_directories(m_folder / "data/Trash/info");
    ASSERT_EQ(moveToTrash(m_folder.write("a.txt", "new")), 0);
    EXPECT_EQ(TemporaryFolder::read(trashed("a.txt")), "orphan");
    EXPECT_FALSE(fs::exists(info("a.txt")));
    EXPECT_EQ(TemporaryFolder::read(trashed("a.2.txt")), "new");
}

TEST_F(FreedesktopTrashTest, FoldersMoveWholeAndTrailingSlashesDoNotMatter) {
    m_folder.write("dir/inner.txt", "x");
    ASSERT_EQ(moveToTrash(m_folder / "dir/"), 0);
    EXPECT_EQ(TemporaryFolder::read(trashed("dir/inner.txt")), "x");
    EXPECT_TRUE(fs::exists(info("dir")));
}

TEST_F(FreedesktopTrashTest, FailuresAnswerTheErrorAndLeaveTheFile) {
    EXPECT_EQ(moveToTrash(m_folder / "missing.txt"), ENOENT);
    EXPECT_EQ(moveToTrash(m_folder.write("file.txt", "") + "/below"), ENOENT);

    // A trash that cannot be made: its files folder is taken by a file.
    const std::string file = m_folder.write("kept.txt", "kept");
    m_folder.write("data/Trash/files", "not a folder");
    EXPECT_EQ(moveToTrash(file), ENOTDIR);
    EXPECT_EQ(TemporaryFolder::read(file), "kept");
    EXPECT_FALSE(fs::exists(m_folder / "data/Trash/info/kept.txt.trashinfo"));
}

// The home trash may live on another file system than the file (a tmpfs /dev/shm, say).
TEST_F(FreedesktopTrashTest, FileOnAnotherFileSystemIsCopiedAndRemoved) {
    struct stat shm, home;
    if (stat("/dev/shm", &shm) != 0 || stat(m_folder.path().c_str(), &home) != 0 || shm.st_dev == home.st_dev)
        GTEST_SKIP() << "/dev/shm is not a file system of its own here";
    const std::string file = "/dev/shm/zuno-trash-test-" + std::to_string(getpid()) + ".txt";
    std::ofstream(file) << "far away";
    chmod(file.c_str(), 0640);
    ASSERT_EQ(moveToTrash(file), 0);
    EXPECT_FALSE(fs::exists(file));
    const std::string name = file.substr(file.rfind('/') + 1);
    EXPECT_EQ(TemporaryFolder::read(trashed(name)), "far away");
    EXPECT_EQ(fs::status(trashed(name)).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}
