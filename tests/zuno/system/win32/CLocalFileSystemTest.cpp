#include <zuno/CError.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/IPathes.h>
#include <zuno/IStringLocalizer.h>
#include <zuno/systemError.h>
#include "core/win32/windows.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace zuno;
namespace fs = std::filesystem;

namespace {

// A fresh folder per test, removed at the end with everything in it.
class LocalFileSystem : public testing::Test {
protected:
    LocalFileSystem() { fs::create_directories(m_dir); }
    ~LocalFileSystem() override {
        std::error_code ignored;
        fs::remove_all(m_dir, ignored);
    }

    fs::path create(const wchar_t* name, DWORD attributes = FILE_ATTRIBUTE_NORMAL) const {
        std::ofstream(m_dir / name) << "text";
        SetFileAttributesW((m_dir / name).c_str(), attributes);
        return m_dir / name;
    }

    static P<IURI> uriOf(const fs::path& path) { return getPathes()->pathToURI(String::fromWide(path.wstring())); }

    String errorOf(const fs::path& path, bool toRecycleBin) {
        try {
            m_fileSystem.deleteFile(uriOf(path), toRecycleBin);
        } catch (const CError& error) {
            return error.getMessage();
        }
        return L"no error";
    }

    const fs::path m_dir =
        fs::temp_directory_path() / ("zuno-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
    CLocalFileSystem m_fileSystem;
};

} // namespace

TEST_F(LocalFileSystem, deletesReadOnlyFilesTooAndAnswersFalseForFilesAlreadyGone) {
    const fs::path plain = create(L"plain.txt");
    const fs::path readOnly = create(L"read only.txt", FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);

    EXPECT_TRUE(m_fileSystem.deleteFile(uriOf(plain), false));
    EXPECT_TRUE(m_fileSystem.deleteFile(uriOf(readOnly), false));
    EXPECT_FALSE(fs::exists(plain) || fs::exists(readOnly));
    EXPECT_FALSE(m_fileSystem.deleteFile(uriOf(m_dir / "never.txt"), false));
    EXPECT_FALSE(m_fileSystem.deleteFile(uriOf(m_dir / "no folder" / "never.txt"), false));
}

TEST_F(LocalFileSystem, raisesTheSystemsReasonWhenTheDeleteFailsAndKeepsTheAttributes) {
    const fs::path locked = create(L"locked.txt", FILE_ATTRIBUTE_READONLY);
    const HANDLE handle = CreateFileW(locked.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    const DWORD attributes = GetFileAttributesW(locked.c_str());
    const String uri = uriOf(locked)->toString();

    EXPECT_EQ(errorOf(locked, false), String(L"Error deleting the file '") + uri + L"' ("
                                          + getSystemErrorText(ERROR_SHARING_VIOLATION) + L").");
    EXPECT_EQ(GetFileAttributesW(locked.c_str()), attributes);
    getStringLocalizer()->setText(L"zuno.CFileSystem.DeleteFileFailed", L"Cannot delete %FILE%");
    EXPECT_EQ(errorOf(locked, false), String(L"Cannot delete ") + uri);
    getStringLocalizer()->clear();
    CloseHandle(handle);
    SetFileAttributesW(locked.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(LocalFileSystem, movesFilesToTheRecycleBinAndRaisesTheShellsErrorWhenItCannot) {
    const fs::path file = create(L"old mail.xml"), missing = m_dir / "missing.txt";
    const String uri = uriOf(missing)->toString();

    EXPECT_TRUE(m_fileSystem.deleteFile(uriOf(file), true));
    EXPECT_FALSE(fs::exists(file));
    const String message = errorOf(missing, true);
    EXPECT_TRUE(message.startsWith(String(L"Error deleting file '") + uri + L"' (shell error ") && message.endsWith(L")."))
        << message;
    getStringLocalizer()->setText(L"zuno.CFileSystem.shellDeleteUndoable", L"Cannot recycle %FILE%");
    EXPECT_EQ(errorOf(missing, true), String(L"Cannot recycle ") + uri);
    getStringLocalizer()->clear();
}
