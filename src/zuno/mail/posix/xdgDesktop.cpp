#include "mail/posix/xdgDesktop.h"

#include "mail/posix/childProcess.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <pwd.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace zuno::posix {

namespace {

// xdg-mime normally answers within a fraction of a second; this only bounds a broken one.
const std::chrono::milliseconds XdgMimeLimit(5000);

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

// The value of a key with the escapes of the desktop-entry string types decoded.
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

// The value of the Exec key of the [Desktop Entry] group, escapes decoded.
std::string execValue(const std::string& entryText) {
    std::istringstream lines(entryText);
    std::string line;
    bool inMainGroup = false;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty() && line[0] == '[') {
            inMainGroup = line == "[Desktop Entry]";
            continue;
        }
        const size_t equals = line.find('=');
        if (!inMainGroup || equals == std::string::npos) continue;
        if (trimmed(line.substr(0, equals)) == "Exec") return unescapeValue(trimmed(line.substr(equals + 1)));
    }
    return "";
}

// The words of an Exec value: separated by blanks; inside double quotes a backslash
// protects the next '"', '`', '$' or '\'.
std::vector<std::string> execWords(const std::string& value) {
    std::vector<std::string> words;
    std::string word;
    bool inWord = false;
    bool quoted = false;
    for (size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if (quoted) {
            if (c == '\\' && i + 1 < value.size() && std::strchr("\"`$\\", value[i + 1]))
                word += value[++i];
            else if (c == '"')
                quoted = false;
            else
                word += c;
        } else if (c == ' ' || c == '\t') {
            if (inWord) words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            if (c == '"') quoted = true;
            else word += c;
            inWord = true;
        }
    }
    if (inWord) words.push_back(word);
    return words;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

std::string xdgDataHome() {
    const std::string dataHome = environmentText("XDG_DATA_HOME");
    return isAbsolute(dataHome) ? dataHome : homeFolder() + "/.local/share";
}

std::vector<std::string> xdgDataFolders() {
    std::vector<std::string> folders{xdgDataHome()};
    std::string dataDirs = environmentText("XDG_DATA_DIRS");
    if (dataDirs.empty()) dataDirs = "/usr/local/share:/usr/share";
    std::istringstream entries(dataDirs);
    std::string folder;
    while (std::getline(entries, folder, ':'))
        if (isAbsolute(folder)) folders.push_back(folder);
    return folders;
}

std::string findDesktopEntry(const std::string& desktopId) {
    const std::string suffix = ".desktop";
    const bool plainName = desktopId.size() > suffix.size() && desktopId.find('/') == std::string::npos &&
                           desktopId.compare(desktopId.size() - suffix.size(), suffix.size(), suffix) == 0;
    if (!plainName) return "";
    for (const std::string& folder : xdgDataFolders()) {
        const std::string path = folder + "/applications/" + desktopId;
        if (isRegularFile(path)) return path;
    }
    return "";
}

std::string desktopEntryProgram(const std::string& entryText) {
    const std::vector<std::string> words = execWords(execValue(entryText));
    size_t first = 0;
    if (first < words.size() && words[first].substr(words[first].rfind('/') + 1) == "env") {
        ++first;
        while (first < words.size() && words[first].find('=') != std::string::npos) ++first;
    }
    return first < words.size() ? words[first] : "";
}

std::string defaultMailtoHandler() {
    const std::optional<std::string> answer =
        runForOutput({"xdg-mime", "query", "default", "x-scheme-handler/mailto"}, XdgMimeLimit);
    if (!answer) return "";
    const std::string firstLine = answer->substr(0, answer->find('\n'));
    return trimmed(firstLine.substr(0, firstLine.find(';')));
}

std::string defaultMailtoProgram() {
    const std::string entry = findDesktopEntry(defaultMailtoHandler());
    return entry.empty() ? "" : desktopEntryProgram(readFile(entry));
}

} // namespace zuno::posix
