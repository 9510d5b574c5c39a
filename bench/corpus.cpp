#include "corpus.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>

const std::string& corpusBytes(const std::string& relativePath) {
    static std::map<std::string, std::string> cache;
    auto found = cache.find(relativePath);
    if (found != cache.end()) return found->second;

    const char* overridden = std::getenv("ZUNO_SHARED_DATA_DIR");
    const std::string path = std::string(overridden ? overridden : ZUNO_SHARED_DATA_DIR) + "/" + relativePath;
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return cache.emplace(relativePath, std::move(bytes)).first->second;
}
