#include <zuno/CError.h>
#include <zuno/CPathes.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include "TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace zuno;

namespace {

String path(const std::string& utf8) {
    return String::fromUTF8ToWide(utf8);
}

P<IURI> uri(const std::string& text) {
    return make<CURI>(String::fromUTF8ToWide(text));
}

} // namespace

TEST(CPathesTest, PathsSurviveTheTripThroughAURIAndItsText) {
    CPathes pathes;
    for (const char* local : {"/tmp/plain.txt", "/", "/tmp/with blank/file  name.txt", "/tmp/100%25 and 100%.txt",
                              "/tmp/#hash#.txt", "/tmp/what?.txt", "/tmp/a?b#c%20d", "/tmp/semi;colon,comma&=+$@'.txt",
                              "/tmp/\xC3\xBCmlaut/\xE6\x97\xA5\xE6\x9C\xAC.txt", "/tmp/tab\there", "/tmp/dir/"}) {
        const P<IURI> asURI = pathes.pathToURI(path(local));
        const std::string text = asURI->toString().toStdString();
        EXPECT_EQ(text.rfind("file:///", 0), 0u) << text;
        EXPECT_EQ(text.find_first_of(" \t#?", 8), std::string::npos) << text;
        EXPECT_EQ(pathes.uriToPath(make<CURI>(asURI->toString()), false), path(local)) << text;
    }
    EXPECT_THROW(pathes.pathToURI(String::empty()), CError);
}

TEST(CPathesTest, OnlyLocalFileURIsHaveAPath) {
    CPathes pathes;
    const std::pair<const char*, const char*> cases[] = {
        {"file:///tmp/R%C3%A9sum%C3%A9.pdf", "/tmp/R\xC3\xA9sum\xC3\xA9.pdf"},  // UTF-8 bytes escaped
        {"file:///tmp/R\xC3\xA9sum\xC3\xA9.pdf", "/tmp/R\xC3\xA9sum\xC3\xA9.pdf"},
        {"FILE://LOCALHOST/tmp/x.txt", "/tmp/x.txt"},
        {"file:///tmp/a%20b%2Cc", "/tmp/a b,c"},
        {"file:///tmp/100%", "/tmp/100%"},
    };
    for (const auto& [text, local] : cases) EXPECT_EQ(pathes.uriToPath(uri(text), false), path(local)) << text;
    EXPECT_EQ(pathes.uriToPath(uri("file:///tmp/dir"), true), path("/tmp/dir/"));
    EXPECT_EQ(pathes.uriToPath(uri("file:///tmp/dir/"), true), path("/tmp/dir/"));
    for (const char* text : {"http://example.org/x.pdf", "mailto:someone@example.org", "file://server/share/x.txt",
                             "relative/x.txt"})
        EXPECT_THROW(pathes.uriToPath(uri(text), false), CURITypeNotSupportedError) << text;
    EXPECT_THROW(pathes.uriToPath(nullptr, false), CURITypeNotSupportedError);
    EXPECT_THROW(pathes.uriToPath(uri("file:///tmp/a%00b"), false), CURIFormatError) << "an escaped NUL";
}

// A file URI without a folder names a file in the current directory.
TEST(CPathesTest, RelativeFileURIsAreTakenAgainstTheCurrentDirectory) {
    CPathes pathes;
    const std::string current = std::filesystem::current_path().string();
    const std::pair<const char*, std::string> cases[] = {
        {"file:att.txt", current + "/att.txt"},
        {"file:sub/a%20b.txt", current + "/sub/a b.txt"},
    };
    for (const auto& [text, local] : cases) EXPECT_EQ(pathes.uriToPath(uri(text), false), path(local)) << text;
}

// The folder part is walked as the kernel walks it: ".." after a link leaves the link's
// target, not the link. The last name is kept, so a link given as the file stays the link.
TEST(CPathesTest, FolderPartOfAPathIsResolvedByTheFileSystem) {
    TemporaryFolder folder;
    std::filesystem::create_directories(folder / "elsewhere/inner");
    std::filesystem::create_directory_symlink(folder / "elsewhere/inner", folder / "link");
    std::filesystem::create_symlink(folder / "elsewhere/inner", folder / "file-link");
    CPathes pathes;
    const auto resolved = [&](const std::string& local) {
        return pathes.uriToPath(pathes.pathToURI(path(local)), false).toStdString();
    };
    const std::pair<std::string, std::string> cases[] = {
        {folder / "link/../mail.xml", folder / "elsewhere/mail.xml"},
        {folder / "link/./mail.xml", folder / "elsewhere/inner/mail.xml"},
        {folder / "file-link", folder / "file-link"},
        {folder / "link/..", folder / "elsewhere"},
    };
    for (const auto& [given, expected] : cases) EXPECT_EQ(resolved(given), expected) << given;
}
