#pragma once

#include <zuno/IValueStore.h>

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

// One kind of value store for the contract tests: where a fresh store lives and how it is
// opened through the value-store manager.
struct StoreBackend {
    std::string name;
    // The URI text of a store at a place of its own; `place` tells the places of one test apart.
    std::function<std::string(const std::string& place)> uriText;
    // Removes whatever the test's stores left (folders, registry keys).
    std::function<void()> cleanUp;
};

inline void PrintTo(const StoreBackend& backend, std::ostream* out) { *out << backend.name; }

// The file stores (XML, JSON) and the platform's own (the registry on Windows).
std::vector<StoreBackend> storeBackends();
std::vector<StoreBackend> platformStoreBackends();

// A fresh folder for one test, removed with everything in it afterwards.
class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

// A file's URI text, as the platform's path service makes it.
std::string fileURIText(const std::filesystem::path& path);
// Open a store through the manager.
zuno::P<zuno::IValueStore> openStore(const std::string& uriText,
                                     zuno::ValueStoreAccess access = zuno::ValueStoreAccess::ReadWrite);

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& bytes);
// The names of the files in a folder, sorted.
std::vector<std::string> filesIn(const std::filesystem::path& folder);
