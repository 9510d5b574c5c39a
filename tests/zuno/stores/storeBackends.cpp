#include "storeBackends.h"

#include <zuno/CURI.h>
#include <zuno/IPathes.h>
#include <zuno/IValueStoreManager.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <random>

using namespace zuno;

namespace {

std::filesystem::path uniqueFolder() {
    static std::atomic<unsigned> counter{0};
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string("zuno-stores-") + (test ? test->name() : "run") + "-" +
                       std::to_string(std::random_device()()) + "-" + std::to_string(++counter);
    std::replace(name.begin(), name.end(), '/', '-');
    return std::filesystem::temp_directory_path() / name;
}

} // namespace

ScratchFolder::ScratchFolder() : m_path(uniqueFolder()) {
    std::filesystem::create_directories(m_path);
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string fileURIText(const std::filesystem::path& path) {
    return getPathes()->pathToURI(String::fromWide(path.wstring()))->toString().toStdString();
}

P<IValueStore> openStore(const std::string& uriText, ValueStoreAccess access) {
    return getValueStoreManager()->openValueStoreWith(make<CURI>(String::fromUTF8ToWide(uriText)), access);
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void writeFile(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::vector<std::string> filesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<StoreBackend> storeBackends() {
    // One folder for the whole run, removed at its end; each test's stores are told apart
    // by their place.
    static const ScratchFolder scratch;
    static const std::filesystem::path folder = scratch.path();
    const auto fileBackend = [](const std::string& extension) {
        return StoreBackend{extension,
                            [extension](const std::string& place) { return fileURIText(folder / (place + "." + extension)); },
                            [] {
                                std::error_code ignored;
                                for (const auto& entry : std::filesystem::directory_iterator(folder, ignored))
                                    std::filesystem::remove_all(entry.path(), ignored);
                            }};
    };
    std::vector<StoreBackend> backends{fileBackend("xml"), fileBackend("json")};
    for (StoreBackend& backend : platformStoreBackends()) backends.push_back(std::move(backend));
    return backends;
}
