#pragma once

#include <zuno/win32/windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

// A fresh folder under the temporary folder, named after the running test and removed
// with its content at the end.
class TempFolder {
public:
    TempFolder() {
        m_path = std::filesystem::temp_directory_path()
                 / ("zuno-" + std::to_string(GetCurrentProcessId()) + "-"
                    + testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }

    ~TempFolder() {
        std::error_code ignored;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_path, ignored))
            SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
        std::filesystem::remove_all(m_path, ignored);
    }

    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::wstring path() const { return m_path.wstring(); }
    std::wstring file(const std::wstring& name) const { return (m_path / name).wstring(); }

    std::wstring createFile(const std::wstring& name, const std::string& content = "text") const {
        const std::filesystem::path file = m_path / name;
        std::ofstream(file, std::ios::binary) << content;
        return file.wstring();
    }

private:
    std::filesystem::path m_path;
};

inline bool exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}
