#include "TempFolder.h"

#include <zuno/CError.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/IPathes.h>
#include <zuno/IStringLocalizer.h>
#include <zuno/systemError.h>

#include <gtest/gtest.h>

using namespace zuno;

namespace {

P<IURI> uriOf(const std::wstring& path) {
    return getPathes()->pathToURI(String::fromWide(path));
}

// The error DeleteFileW itself meets for `path` (0 when it succeeds).
DWORD plainDeleteError(const std::wstring& path) {
    if (DeleteFileW(path.c_str())) return 0;
    return GetLastError();
}

HANDLE openExclusively(const std::wstring& path) {
    return CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

TEST(CLocalFileSystem, deletesAFileEvenWhenItIsReadOnly) {
    TempFolder folder;
    const std::wstring plain = folder.createFile(L"plain.txt");
    const std::wstring readOnly = folder.createFile(L"read only.txt");
    ASSERT_TRUE(SetFileAttributesW(readOnly.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN));
    CLocalFileSystem fileSystem;

    EXPECT_TRUE(fileSystem.deleteFile(uriOf(plain), false));
    EXPECT_TRUE(fileSystem.deleteFile(uriOf(readOnly), false));
    EXPECT_FALSE(exists(plain));
    EXPECT_FALSE(exists(readOnly));
}

TEST(CLocalFileSystem, answersFalseForAFileThatIsAlreadyGone) {
    TempFolder folder;
    CLocalFileSystem fileSystem;

    EXPECT_FALSE(fileSystem.deleteFile(uriOf(folder.file(L"never.txt")), false));
    EXPECT_FALSE(fileSystem.deleteFile(uriOf(folder.file(L"no folder\\never.txt")), false));
}

TEST(CLocalFileSystem, raisesAnErrorNamingTheFileAndTheSystemsReasonWhenTheDeleteFails) {
    TempFolder folder;
    const std::wstring locked = folder.createFile(L"locked.txt");
    ASSERT_TRUE(SetFileAttributesW(locked.c_str(), FILE_ATTRIBUTE_READONLY));
    const HANDLE handle = openExclusively(locked);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    CreateDirectoryW(folder.file(L"a folder").c_str(), nullptr);
    CLocalFileSystem fileSystem;

    for (const std::wstring& target : {locked, folder.file(L"a folder")}) {
        SCOPED_TRACE(String::fromWide(target));
        const P<IURI> uri = uriOf(target);
        const DWORD attributes = GetFileAttributesW(target.c_str());
        SetFileAttributesW(target.c_str(), attributes & ~FILE_ATTRIBUTE_READONLY);
        const String reason = getSystemErrorText(plainDeleteError(target));
        SetFileAttributesW(target.c_str(), attributes);
        try {
            fileSystem.deleteFile(uri, false);
            ADD_FAILURE() << "no error";
        } catch (const CError& error) {
            EXPECT_EQ(error.getMessage(), String(L"Error deleting the file '") + uri->toString() + L"' (" + reason + L").");
        }
        EXPECT_EQ(GetFileAttributesW(target.c_str()), attributes) << "the attributes come back";
    }
    CloseHandle(handle);
}

TEST(CLocalFileSystem, looksItsDeleteMessagesUpByKey) {
    TempFolder folder;
    const std::wstring locked = folder.createFile(L"locked.txt");
    const HANDLE handle = openExclusively(locked);
    const P<IStringLocalizer> localizer = getStringLocalizer();
    localizer->setText(L"zuno.CFileSystem.DeleteFileFailed", L"Cannot delete %FILE%");
    localizer->setText(L"zuno.CFileSystem.shellDeleteUndoable", L"Cannot recycle %FILE%: %MSG%");
    CLocalFileSystem fileSystem;
    const P<IURI> lockedURI = uriOf(locked);
    const P<IURI> missingURI = uriOf(folder.file(L"missing.txt"));

    String permanent, recycled;
    try { fileSystem.deleteFile(lockedURI, false); } catch (const CError& error) { permanent = error.getMessage(); }
    try { fileSystem.deleteFile(missingURI, true); } catch (const CError& error) { recycled = error.getMessage(); }
    localizer->clear();
    CloseHandle(handle);

    EXPECT_EQ(permanent, String(L"Cannot delete ") + lockedURI->toString());
    EXPECT_TRUE(recycled.startsWith(String(L"Cannot recycle ") + missingURI->toString() + L": shell error ")) << recycled;
}

TEST(CLocalFileSystem, movesAFileToTheRecycleBin) {
    TempFolder folder;
    const std::wstring file = folder.createFile(L"old mail.xml");

    EXPECT_TRUE(CLocalFileSystem().deleteFile(uriOf(file), true));
    EXPECT_FALSE(exists(file));
}

TEST(CLocalFileSystem, raisesAShellErrorWhenTheRecycleBinCannotTakeTheFile) {
    TempFolder folder;
    const P<IURI> uri = uriOf(folder.file(L"missing.txt"));
    CLocalFileSystem fileSystem;

    try {
        fileSystem.deleteFile(uri, true);
        ADD_FAILURE() << "no error";
    } catch (const CError& error) {
        const String prefix = String(L"Error deleting file '") + uri->toString() + L"' (shell error ";
        EXPECT_TRUE(error.getMessage().startsWith(prefix)) << error.getMessage();
        EXPECT_TRUE(error.getMessage().endsWith(L").")) << error.getMessage();
    }
}
