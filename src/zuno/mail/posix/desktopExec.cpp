#include "mail/posix/desktopExec.h"

#include <cstring>

namespace zuno::posix {

namespace {

std::string baseName(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

// A Snap application is called "snap.app"; the snap's name tells the client.
std::string snapName(const std::string& name) {
    return name.substr(0, name.find('.'));
}

bool isOption(const std::string& word) {
    return !word.empty() && word[0] == '-';
}

// Options of env(1) that take the next word as their value.
bool takesValue(const std::string& envOption) {
    return envOption == "-u" || envOption == "--unset" || envOption == "-C" || envOption == "--chdir" ||
           envOption == "-S" || envOption == "--split-string";
}

bool isFileCode(const std::string& word) {
    return word == "%u" || word == "%U" || word == "%f" || word == "%F";
}

bool isForwardingMark(const std::string& word) {
    return word == "@@" || word == "@@u" || word == "@@f";
}

// A word with its field codes filled in; false when it was nothing but a code that stands
// for nothing here (a deprecated one, or a second file code).
bool expandWord(const std::string& word, const DesktopEntry& entry, std::string& expanded) {
    expanded.clear();
    bool onlyCodes = true;
    for (size_t i = 0; i < word.size(); ++i) {
        if (word[i] != '%' || i + 1 == word.size()) {
            expanded += word[i];
            onlyCodes = false;
            continue;
        }
        switch (word[++i]) {
        case '%': expanded += '%'; onlyCodes = false; break;
        case 'c': expanded += entry.name; onlyCodes = false; break;
        case 'k': expanded += entry.path; onlyCodes = false; break;
        default: break;  // %u %f %d %n %v %m ... stand for nothing inside a word
        }
    }
    return !onlyCodes || word.empty();
}

} // namespace

std::vector<std::string> ExecCommand::commandLine(const std::vector<std::string>& arguments) const {
    std::vector<std::string> line = before;
    line.insert(line.end(), arguments.begin(), arguments.end());
    line.insert(line.end(), after.begin(), after.end());
    return line;
}

std::optional<std::vector<std::string>> execWords(const std::string& exec) {
    std::vector<std::string> words;
    std::string word;
    bool inWord = false;
    bool quoted = false;
    for (size_t i = 0; i < exec.size(); ++i) {
        const char c = exec[i];
        if (quoted) {
            if (c == '\\' && i + 1 < exec.size() && std::strchr("\"`$\\", exec[i + 1]))
                word += exec[++i];
            else if (c == '"')
                quoted = false;
            else
                word += c;
        } else if (c == ' ' || c == '\t' || c == '\n') {
            if (inWord) words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            if (c == '"') quoted = true;
            else word += c;
            inWord = true;
        }
    }
    if (quoted) return std::nullopt;
    if (inWord) words.push_back(word);
    return words;
}

std::string execClient(const std::vector<std::string>& words) {
    size_t i = 0;
    if (i < words.size() && baseName(words[i]) == "env") {
        for (++i; i < words.size() && (isOption(words[i]) || words[i].find('=') != std::string::npos); ++i)
            if (takesValue(words[i])) ++i;
    }
    if (i >= words.size()) return "";
    const std::string program = baseName(words[i]);
    if (program == "flatpak" || program == "snap") {
        // "flatpak run [options] APPID ...", "snap run [options] SNAP.APP ..."
        size_t at = i + 1;
        while (at < words.size() && isOption(words[at])) ++at;
        if (at >= words.size() || words[at] != "run") return program;
        for (++at; at < words.size() && isOption(words[at]); ++at) {}
        if (at >= words.size()) return program;
        return program == "snap" ? snapName(words[at]) : words[at];
    }
    if (words[i].rfind("/snap/bin/", 0) == 0) return snapName(program);
    return program;
}

std::optional<ExecCommand> parseExec(const DesktopEntry& entry) {
    const std::optional<std::vector<std::string>> words = execWords(entry.exec);
    // The first word is the program: neither empty nor a field code.
    if (!words || words->empty() || words->front().empty() || words->front()[0] == '%') return std::nullopt;
    ExecCommand command;
    command.client = execClient(*words);
    bool placed = false;
    for (const std::string& word : *words) {
        std::vector<std::string>& side = placed ? command.after : command.before;
        if (isFileCode(word) && !placed) {
            placed = true;
        } else if (word == "%i") {
            if (!entry.icon.empty()) side.insert(side.end(), {"--icon", entry.icon});
        } else if (!isForwardingMark(word)) {
            std::string expanded;
            if (expandWord(word, entry, expanded)) side.push_back(expanded);
        }
    }
    if (command.before.empty() || command.client.empty()) return std::nullopt;
    return command;
}

} // namespace zuno::posix
