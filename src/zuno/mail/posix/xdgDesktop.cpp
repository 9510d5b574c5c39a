#include "mail/posix/xdgDesktop.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <pwd.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace zuno::posix {

namespace {

const char* const MailtoType = "x-scheme-handler/mailto";
// Bounds what is read of a desktop entry or list: real ones are a few KiB.
const std::streamsize MaxFileSize = 1 << 20;

std::string environmentText(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string homeFolder() {
    const std::string home = environmentText("HOME");
    if (!home.empty()) return home;
    const passwd* user = getpwuid(getuid());
    return user && user->pw_dir ? user->pw_dir : "";
}

bool isAbsolute(const std::string& path) {
    return !path.empty() && path[0] == '/';
}

bool isRegularFile(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

// `home` (or `fallbackHome` below HOME), then the absolute entries of the list variable.
std::vector<std::string> baseFolders(const char* homeVariable, const char* fallbackHome, const char* listVariable,
                                     const char* fallbackList) {
    const std::string home = environmentText(homeVariable);
    std::vector<std::string> folders{isAbsolute(home) ? home : homeFolder() + fallbackHome};
    std::string list = environmentText(listVariable);
    if (list.empty()) list = fallbackList;
    for (const std::string& folder : split(list, ':'))
        if (isAbsolute(folder)) folders.push_back(folder);
    return folders;
}

// The buffer takes the file's size, up to the bound: these files take a few KiB, and
// zero-filling the bound's megabyte for each would cost more than the rest of the run.
std::string readFile(const std::string& path) {
    struct stat info;
    if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return "";
    std::ifstream file(path, std::ios::binary);
    std::string text(size_t(std::min<std::streamsize>(info.st_size, MaxFileSize)), '\0');
    file.read(text.data(), std::streamsize(text.size()));
    text.resize(size_t(file.gcount()));
    return text;
}

// The desktop ids listed for mailto links in one group of one list file.
std::vector<std::string> mailtoHandlers(const std::string& listFile, const char* group) {
    std::vector<std::string> ids;
    if (const auto value = groupValue(readFile(listFile), group, MailtoType))
        for (const std::string& id : split(*value, ';'))
            if (!trimmed(id).empty()) ids.push_back(trimmed(id));
    return ids;
}

std::vector<std::string> dataFiles(const char* name) {
    std::vector<std::string> files;
    for (const std::string& folder : xdgDataFolders()) files.push_back(folder + "/applications/" + name);
    return files;
}

std::optional<DesktopEntry> firstInstalled(const std::vector<std::string>& ids,
                                           const std::vector<std::string>& removed = {}) {
    for (const std::string& id : ids) {
        if (std::find(removed.begin(), removed.end(), id) != removed.end()) continue;
        if (auto entry = installedApplication(id)) return entry;
    }
    return std::nullopt;
}

} // namespace

std::string xdgDataHome() {
    return xdgDataFolders().front();
}

std::vector<std::string> xdgDataFolders() {
    return baseFolders("XDG_DATA_HOME", "/.local/share", "XDG_DATA_DIRS", "/usr/local/share:/usr/share");
}

std::vector<std::string> xdgConfigFolders() {
    return baseFolders("XDG_CONFIG_HOME", "/.config", "XDG_CONFIG_DIRS", "/etc/xdg");
}

std::vector<std::string> mimeAppsLists() {
    std::vector<std::string> desktops;
    for (std::string desktop : split(environmentText("XDG_CURRENT_DESKTOP"), ':')) {
        for (char& c : desktop) c = char(std::tolower(static_cast<unsigned char>(c)));
        if (!desktop.empty() && desktop.find('/') == std::string::npos) desktops.push_back(desktop);
    }
    std::vector<std::string> folders = xdgConfigFolders();
    for (const std::string& folder : xdgDataFolders()) folders.push_back(folder + "/applications");
    std::vector<std::string> lists;
    for (const std::string& folder : folders) {
        for (const std::string& desktop : desktops) lists.push_back(folder + "/" + desktop + "-mimeapps.list");
        lists.push_back(folder + "/mimeapps.list");
    }
    return lists;
}

std::optional<std::string> groupValue(const std::string& text, const std::string& group, const std::string& key) {
    std::istringstream lines(text);
    bool inGroup = false;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty() && line[0] == '[') {
            inGroup = line == "[" + group + "]";
            continue;
        }
        const size_t equals = line.find('=');
        if (inGroup && equals != std::string::npos && trimmed(line.substr(0, equals)) == key)
            return trimmed(line.substr(equals + 1));
    }
    return std::nullopt;
}

std::string unescapeValue(const std::string& value) {
    std::string text;
    for (size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i]) {
        case 's': text += ' '; break;
        case 'n': text += '\n'; break;
        case 't': text += '\t'; break;
        case 'r': text += '\r'; break;
        case '\\': text += '\\'; break;
        default: text += '\\'; text += value[i]; break;
        }
    }
    return text;
}

std::string findDesktopEntry(const std::string& desktopId) {
    const std::string suffix = ".desktop";
    const bool plainName = desktopId.size() > suffix.size() && desktopId.find('/') == std::string::npos &&
                           desktopId.compare(desktopId.size() - suffix.size(), suffix.size(), suffix) == 0;
    if (!plainName) return "";
    for (const std::string& path : dataFiles(desktopId.c_str()))
        if (isRegularFile(path)) return path;
    return "";
}

std::optional<DesktopEntry> installedApplication(const std::string& desktopId) {
    const std::string path = findDesktopEntry(desktopId);
    if (path.empty()) return std::nullopt;
    const std::string text = readFile(path);
    const char* const group = "Desktop Entry";
    const auto exec = groupValue(text, group, "Exec");
    if (!exec || exec->empty() || groupValue(text, group, "Hidden") == "true") return std::nullopt;
    return DesktopEntry{path, unescapeValue(*exec), unescapeValue(groupValue(text, group, "Name").value_or("")),
                        unescapeValue(groupValue(text, group, "Icon").value_or(""))};
}

std::optional<DesktopEntry> defaultMailtoHandler() {
    std::vector<std::string> lists = mimeAppsLists();
    std::vector<std::string> withLegacy = lists;
    for (const std::string& file : dataFiles("defaults.list")) withLegacy.push_back(file);
    for (const std::string& list : withLegacy)
        if (auto entry = firstInstalled(mailtoHandlers(list, "Default Applications"))) return entry;

    std::vector<std::string> removed;
    for (const std::string& list : lists)
        for (const std::string& id : mailtoHandlers(list, "Removed Associations")) removed.push_back(id);
    for (const std::string& list : lists)
        if (auto entry = firstInstalled(mailtoHandlers(list, "Added Associations"), removed)) return entry;
    for (const std::string& cache : dataFiles("mimeinfo.cache"))
        if (auto entry = firstInstalled(mailtoHandlers(cache, "MIME Cache"), removed)) return entry;
    return std::nullopt;
}

} // namespace zuno::posix
