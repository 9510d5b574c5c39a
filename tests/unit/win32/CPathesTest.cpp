#include "TempFolder.h"

#include <zuno/CPathes.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

using namespace zuno;

namespace {

String uriText(const std::wstring& path) {
    return CPathes().pathToURI(String::fromWide(path))->toString();
}

String pathOf(const wchar_t* uri, bool asFolder = false) {
    return CPathes().uriToPath(make<CURI>(String(uri)), asFolder);
}

// Restores the current directory at the end of a test that changes it.
class CurrentDirectory {
public:
    explicit CurrentDirectory(const std::wstring& path) : m_saved(MAX_PATH, L'\0') {
        m_saved.resize(GetCurrentDirectoryW(DWORD(m_saved.size()), m_saved.data()));
        SetCurrentDirectoryW(path.c_str());
    }
    ~CurrentDirectory() { SetCurrentDirectoryW(m_saved.c_str()); }

private:
    std::wstring m_saved;
};

} // namespace

TEST(CPathes, turnsDriveAndUNCPathsIntoFileURIs) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"C:\\dir\\file.txt", L"file:///C:/dir/file.txt"},
        {L"C:\\", L"file:///C:/"},
        {L"C:/dir/../other/./file.txt", L"file:///C:/other/file.txt"},
        {L"C:\\my dir\\100%#1;x.txt", L"file:///C:/my%20dir/100%25%231;x.txt"},
        {L"C:\\Grüße\\ü.txt", L"file:///C:/Grüße/ü.txt"},
        {L"\\\\host\\share\\dir\\file.txt", L"file://host/share/dir/file.txt"},
        {L"\\\\server@SSL\\DavWWWRoot\\file.txt", L"file://server%40SSL/DavWWWRoot/file.txt"},
        {L"\\\\?\\C:\\long\\file.txt", L"file:///C:/long/file.txt"},
        {L"\\\\?\\UNC\\host\\share\\file.txt", L"file://host/share/file.txt"},
    };
    for (const auto& [path, uri] : cases) EXPECT_EQ(uriText(path), String(uri)) << String(path);
}

TEST(CPathes, turnsFileURIsIntoFullLocalPaths) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"file:///C:/dir/file.txt", L"C:\\dir\\file.txt"},
        {L"FILE:///C:/dir/", L"C:\\dir\\"},
        {L"file:///C:/my%20dir/100%25%231.txt", L"C:\\my dir\\100%#1.txt"},
        {L"file://localhost/C:/file.txt", L"C:\\file.txt"},
        {L"file://host/share/dir/file.txt", L"\\\\host\\share\\dir\\file.txt"},
        {L"file://server%40SSL/DavWWWRoot/file.txt", L"\\\\server@SSL\\DavWWWRoot\\file.txt"},
        // An escaped NUL must not cut the path short and so name another file.
        {L"file:///C:/mail.xml%00.txt", L"C:\\mail.xml%00.txt"},
    };
    for (const auto& [uri, path] : cases) EXPECT_EQ(pathOf(uri), String(path)) << String(uri);

    EXPECT_EQ(pathOf(L"file:///C:/dir", true), String(L"C:\\dir\\"));
    EXPECT_EQ(pathOf(L"file:///C:/dir/", true), String(L"C:\\dir\\"));
}

TEST(CPathes, bringsEveryPathBackFromItsURI) {
    for (const wchar_t* path : {L"C:\\dir\\file.txt", L"C:\\a b\\%41 #x ;,=+$&@'[]{}.txt", L"D:\\Grüße\\ü.txt",
                                L"\\\\host\\share\\f.txt"}) {
        CPathes pathes;
        EXPECT_EQ(pathes.uriToPath(pathes.pathToURI(path), false), String(path)) << uriText(path);
    }
}

TEST(CPathes, takesRelativePathsAgainstTheCurrentDirectory) {
    TempFolder folder;
    const CurrentDirectory current(folder.path());

    EXPECT_EQ(uriText(L"mail.xml"), uriText(folder.file(L"mail.xml")));
    EXPECT_EQ(uriText(L"..\\mail.xml"), uriText(folder.file(L"..\\mail.xml")));
    EXPECT_EQ(CPathes().uriToPath(CPathes().pathToURI(L"sub\\mail.xml"), false), String::fromWide(folder.file(L"sub\\mail.xml")));
}

TEST(CPathes, refusesWhatIsNoLocalFile) {
    CPathes pathes;
    for (const wchar_t* uri : {L"http://example.org/file.txt", L"mailto:ann@example.org", L"relative/file.txt"})
        EXPECT_THROW(pathes.uriToPath(make<CURI>(String(uri)), false), CURITypeNotSupportedError) << String(uri);
    EXPECT_THROW(pathes.uriToPath(nullptr, false), CURITypeNotSupportedError);
    EXPECT_THROW(pathes.pathToURI(String::empty()), CError);
}
