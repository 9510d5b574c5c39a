#include <zuno/CPathes.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

using namespace zuno;

namespace {

String uriText(const std::wstring& path) {
    return CPathes().pathToURI(String::fromWide(path))->toString();
}

String pathOf(const wchar_t* uri, bool asFolder) {
    return CPathes().uriToPath(make<CURI>(String(uri)), asFolder);
}

} // namespace

TEST(CPathes, turnsDriveAndUNCPathsIntoFileURIsAndBack) {
    const std::pair<const wchar_t*, const wchar_t*> bothWays[] = {
        {L"C:\\dir\\file.txt", L"file:///C:/dir/file.txt"},
        {L"C:\\", L"file:///C:/"},
        {L"C:\\a b\\%41 #x ;,=+$&@'[]{}.txt", L"file:///C:/a%20b/%2541%20%23x%20;,=+$&@'%5B%5D%7B%7D.txt"},
        {L"D:\\Grüße\\ü.txt", L"file:///D:/Grüße/ü.txt"},
        {L"\\\\host\\share\\dir\\file.txt", L"file://host/share/dir/file.txt"},
        {L"\\\\server@SSL\\DavWWWRoot\\file.txt", L"file://server%40SSL/DavWWWRoot/file.txt"},
    };
    for (const auto& [path, uri] : bothWays) {
        EXPECT_EQ(uriText(path), String(uri));
        EXPECT_EQ(pathOf(uri, false), String(path));
    }
    const std::pair<const wchar_t*, const wchar_t*> toURI[] = {
        {L"C:/dir/../other/./file.txt", L"file:///C:/other/file.txt"},
        {L"\\\\?\\C:\\long\\file.txt", L"file:///C:/long/file.txt"},
        {L"\\\\?\\UNC\\host\\share\\file.txt", L"file://host/share/file.txt"},
    };
    for (const auto& [path, uri] : toURI) EXPECT_EQ(uriText(path), String(uri));
    const std::tuple<const wchar_t*, bool, const wchar_t*> toPath[] = {
        {L"FILE:///C:/dir/", false, L"C:\\dir\\"},
        {L"file:///C:/dir", true, L"C:\\dir\\"},
        {L"file:///C:/dir/", true, L"C:\\dir\\"},
        {L"file://localhost/C:/file.txt", false, L"C:\\file.txt"},
        // An escaped NUL must not cut the path short and so name another file.
        {L"file:///C:/mail.xml%00.txt", false, L"C:\\mail.xml%00.txt"},
    };
    for (const auto& [uri, asFolder, path] : toPath) EXPECT_EQ(pathOf(uri, asFolder), String(path));
}

TEST(CPathes, takesRelativePathsAgainstTheCurrentDirectory) {
    namespace fs = std::filesystem;
    const fs::path current = fs::current_path();

    EXPECT_EQ(uriText(L"mail.xml"), uriText((current / "mail.xml").wstring()));
    EXPECT_EQ(uriText(L"..\\mail.xml"), uriText((current.parent_path() / "mail.xml").wstring()));
    // A file URI without a folder names a file in the current directory; the path is full.
    EXPECT_EQ(pathOf(L"file:att.txt", false), String::fromWide((current / "att.txt").wstring()));
    EXPECT_EQ(pathOf(L"file:sub/a%20b.txt", false), String::fromWide((current / "sub" / "a b.txt").wstring()));
}

TEST(CPathes, refusesWhatIsNoLocalFile) {
    CPathes pathes;
    for (const wchar_t* uri : {L"http://example.org/file.txt", L"mailto:ann@example.org", L"relative/file.txt"})
        EXPECT_THROW(pathes.uriToPath(make<CURI>(String(uri)), false), CURITypeNotSupportedError) << String(uri);
    EXPECT_THROW(pathes.uriToPath(nullptr, false), CURITypeNotSupportedError);
    EXPECT_THROW(pathes.pathToURI(String::empty()), CError);
}
