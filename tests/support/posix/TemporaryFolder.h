#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

// A fresh folder for one test, named after it, removed with everything in it afterwards.
class TemporaryFolder {
public:
    TemporaryFolder() {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        m_path = std::filesystem::temp_directory_path() /
                 (std::string("zuno-") + test->test_suite_name() + "-" + test->name() + "-" + std::to_string(getpid()));
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path() const { return m_path.string(); }
    std::string operator/(const std::string& name) const { return (m_path / name).string(); }

    // Writes a file below the folder (creating its folders) and answers its full path.
    std::string write(const std::string& name, const std::string& content, mode_t mode = 0644) const {
        return writeFile(*this / name, content, mode);
    }

    static std::string writeFile(const std::string& path, const std::string& content, mode_t mode = 0644) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << content;
        chmod(path.c_str(), mode);
        return path;
    }

    static std::string read(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }

private:
    std::filesystem::path m_path;
};
