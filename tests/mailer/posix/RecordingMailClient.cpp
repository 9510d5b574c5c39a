#include "RecordingMailClient.h"
#include "recordingClientFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

// The Linux stand-in: a throw-away HOME whose mimeapps.list makes a desktop entry the
// default mailto handler, and a bin folder first on PATH. Kind::Default: the entry starts
// a fake `thunderbird`; Kind::Other: it starts `othermail`, so the tool goes through the
// fake `xdg-email` beside it. Both fakes record their argument vector (NUL-separated) and
// end with the chosen status. The real xdg-mime finds the handler. Kind::Missing is a
// system without xdg-utils: PATH holds only the empty bin folder, so neither xdg-mime nor
// xdg-email can be found.

namespace fs = std::filesystem;

namespace {

const char* const FolderName = ".mailclient";

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void writeFile(const std::string& path, const std::string& content, fs::perms permissions = fs::perms::owner_read |
                                                                                            fs::perms::owner_write) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
    fs::permissions(path, permissions);
}

std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// A program that records its arguments and prints noise the tool must swallow; it then
// stalls, kills itself or exits with the status in the "status" file.
std::string recordingProgram(const std::string& folder, const std::string& record) {
    const std::string dir = shellQuoted(folder);
    return "#!/bin/sh\n"
           "for a; do printf '%s\\000' \"$a\"; done > " + dir + "/" + record + "\n"
           "echo 'noise on stdout'; echo 'noise on stderr' >&2\n"
           "if [ -e " + dir + "/stall ]; then echo $$ > " + dir + "/pid; exec sleep 300; fi\n"
           "read status < " + dir + "/status\n"
           "case $status in -*) kill $status $$ ;; esac\n"
           "exit $status\n";
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

std::string percentDecoded(const std::string& text) {
    std::string decoded;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 && hexValue(text[i + 2]) >= 0) {
            decoded += char(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    for (size_t start = 0;;) {
        const size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end - start));
        if (end == std::string::npos) return parts;
        start = end + separator.size();
    }
}

// The recipients of an address list joined by ", ", as Thunderbird's parser splits it: a
// comma inside a quoted display name separates nothing.
std::vector<std::string> addresses(const std::string& list) {
    std::vector<std::string> names(1);
    bool quoted = false;
    for (size_t i = 0; i < list.size(); ++i) {
        if (list[i] == '"') quoted = !quoted;
        if (!quoted && list.compare(i, 2, ", ") == 0) {
            names.emplace_back();
            ++i;
        } else {
            names.back() += list[i];
        }
    }
    return names;
}

// The fields of Thunderbird's -compose list: commas separate them outside single quotes.
std::vector<std::string> composeFields(const std::string& list) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (char c : list) {
        if (c == '\'') quoted = !quoted;
        if (c == ',' && !quoted) fields.emplace_back();
        else fields.back() += c;
    }
    return fields;
}

std::string filePath(const std::string& uri) {
    const std::string prefix = "file://";
    if (uri.compare(0, prefix.size(), prefix) != 0) return "not a file URI: " + uri;
    return percentDecoded(uri.substr(prefix.size()));
}

RecordedMail mailFromCompose(const std::vector<std::string>& args) {
    RecordedMail mail;
    if (args.size() < 2 || args[0] != "-compose") return mail;
    for (const std::string& field : composeFields(args[1])) {
        const size_t equals = field.find('=');
        const std::string key = field.substr(0, equals);
        const std::string value = equals == std::string::npos ? "" : field.substr(equals + 1);
        if (key == "to") mail.to = addresses(percentDecoded(value));
        else if (key == "cc") mail.cc = addresses(percentDecoded(value));
        else if (key == "bcc") mail.bcc = addresses(percentDecoded(value));
        else if (key == "subject") mail.subject = percentDecoded(value);
        else if (key == "body") mail.note = percentDecoded(value);
        else if (key == "attachment")
            for (const std::string& uri : split(value.substr(1, value.size() - 2), ","))
                mail.attachments.push_back(filePath(uri));
        else ADD_FAILURE() << "unexpected compose field: " << field;
    }
    return mail;
}

RecordedMail mailFromXdgEmail(const std::vector<std::string>& args) {
    RecordedMail mail;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& option = args[i];
        if (option == "--utf8") continue;
        if (i + 1 == args.size()) {
            ADD_FAILURE() << "option without a value: " << option;
            break;
        }
        const std::string& value = args[++i];
        if (option == "--subject") mail.subject = value;
        else if (option == "--body") mail.note = value;
        else if (option == "--to") mail.to.push_back(value);
        else if (option == "--cc") mail.cc.push_back(value);
        else if (option == "--bcc") mail.bcc.push_back(value);
        else if (option == "--attach") mail.attachments.push_back(value);
        else ADD_FAILURE() << "unexpected xdg-email argument: " << option;
    }
    return mail;
}

// The xdg-email exit status that the tool reads as a Simple MAPI result.
int xdgEmailStatus(int result) {
    switch (result) {
    case 0: return 0;
    case 2: return 4;
    case 11: return 2;
    case 12: return 5;
    case 26: return 3;
    default: ADD_FAILURE() << "xdg-email cannot answer " << result; return 4;
    }
}

} // namespace

struct RecordingMailClient::State {
    std::string workDir;
    std::string folder;
    Kind kind;
    std::string bin() const { return folder + "/bin"; }
    std::string home() const { return folder + "/home"; }
};

RecordingMailClient::RecordingMailClient(const std::string& workDir, Kind kind)
    : m_state(new State{workDir, recordingClient::folder(workDir), kind}) {
    fs::remove_all(m_state->folder);
    fs::create_directories(m_state->bin());
    fs::create_directories(m_state->folder + "/etc");
    fs::create_directories(m_state->folder + "/share");
    writeFile(m_state->folder + "/status", "0\n");
    if (kind == Kind::Missing) return;

    const auto executable = fs::perms::owner_all;
    const bool thunderbird = kind != Kind::Other;
    const std::string program = thunderbird ? "thunderbird" : "othermail";
    writeFile(m_state->home() + "/.config/mimeapps.list",
              "[Default Applications]\nx-scheme-handler/mailto=" + program + ".desktop\n");
    writeFile(m_state->home() + "/.local/share/applications/" + program + ".desktop",
              "[Desktop Entry]\nType=Application\nName=Mail\nExec=" + program + " %u\n");
    if (thunderbird) {
        writeFile(m_state->bin() + "/thunderbird", recordingProgram(m_state->folder, "record"), executable);
    } else {
        writeFile(m_state->bin() + "/othermail", recordingProgram(m_state->folder, "othermail-record"), executable);
        writeFile(m_state->bin() + "/xdg-email", recordingProgram(m_state->folder, "record"), executable);
    }
}

RecordingMailClient::~RecordingMailClient() {
    delete m_state;
}

void RecordingMailClient::setResult(int result) {
    recordingClient::setExitStatus(m_state->workDir, m_state->kind == Kind::Other ? xdgEmailStatus(result) : result);
}

std::string RecordingMailClient::mailerPath() const {
    return MAILER_EXE;
}

std::map<std::string, std::string> RecordingMailClient::environment() const {
    const char* path = std::getenv("PATH");
    std::map<std::string, std::string> variables{
        {"HOME", m_state->home()},
        {"XDG_CONFIG_HOME", m_state->home() + "/.config"},
        {"XDG_DATA_HOME", m_state->home() + "/.local/share"},
        {"XDG_CONFIG_DIRS", m_state->folder + "/etc"},
        {"XDG_DATA_DIRS", m_state->folder + "/share"},
        {"PATH", m_state->bin() + (m_state->kind == Kind::Missing ? "" : ":" + std::string(path ? path : "/usr/bin"))},
        // Long enough that every stand-in ends within it; the stall test shortens it.
        {"ZUNO_MAIL_CLIENT_WAIT_MS", "60000"},
    };
    // xdg-mime and xdg-email must take the generic desktop path, whatever session runs the tests.
    for (const char* name : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
                             "KDE_SESSION_VERSION", "GNOME_DESKTOP_SESSION_ID", "MATE_DESKTOP_SESSION_ID", "DISPLAY",
                             "WAYLAND_DISPLAY", "MAILER", "BROWSER", "XDG_UTILS_DEBUG_LEVEL"})
        variables[name] = "";
    return variables;
}

bool RecordingMailClient::wasCalled() const {
    return fs::exists(m_state->folder + "/record");
}

RecordedMail RecordingMailClient::lastMail() const {
    const std::vector<std::string> args = recordingClient::arguments(m_state->workDir);
    return m_state->kind == Kind::Other ? mailFromXdgEmail(args) : mailFromCompose(args);
}

namespace recordingClient {

std::string folder(const std::string& workDir) {
    return workDir + "/" + FolderName;
}

std::vector<std::string> arguments(const std::string& workDir) {
    const std::string record = readFile(folder(workDir) + "/record");
    std::vector<std::string> args = split(record, std::string(1, '\0'));
    args.pop_back();  // after the last terminator
    return args;
}

bool otherClientStartedDirectly(const std::string& workDir) {
    return fs::exists(folder(workDir) + "/othermail-record");
}

void setExitStatus(const std::string& workDir, int status) {
    writeFile(folder(workDir) + "/status", std::to_string(status) + "\n");
}

void makeStall(const std::string& workDir) {
    writeFile(folder(workDir) + "/stall", "");
}

pid_t stalledClient(const std::string& workDir) {
    const std::string pidFile = folder(workDir) + "/pid";
    for (int i = 0; i < 3000 && readFile(pidFile).empty(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    const std::string text = readFile(pidFile);
    return text.empty() ? 0 : pid_t(std::stol(text));
}

std::string toolOutput(const std::string& workDir) {
    return readFile(folder(workDir) + "/tool-output");
}

} // namespace recordingClient

int runMailer(const std::string& mailer, const std::vector<std::string>& args, const std::string& workDir,
              const std::map<std::string, std::string>& environment) {
    std::map<std::string, std::string> variables;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        const size_t equals = text.find('=');
        if (equals != std::string::npos) variables[text.substr(0, equals)] = text.substr(equals + 1);
    }
    for (const auto& [name, value] : environment) variables[name] = value;
    std::vector<std::string> envTexts;
    for (const auto& [name, value] : variables) envTexts.push_back(name + "=" + value);
    std::vector<char*> envp;
    for (std::string& text : envTexts) envp.push_back(text.data());
    envp.push_back(nullptr);
    std::vector<std::string> argTexts{mailer};
    argTexts.insert(argTexts.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& text : argTexts) argv.push_back(text.data());
    argv.push_back(nullptr);

    // The tool's own output goes to a file, so tests can tell that it prints nothing.
    const std::string output = recordingClient::folder(workDir) + "/tool-output";
    fs::create_directories(recordingClient::folder(workDir));
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addchdir_np(&actions, workDir.c_str());
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t pid = 0;
    const int error = posix_spawn(&pid, mailer.c_str(), &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        ADD_FAILURE() << "cannot start " << mailer << ": " << std::strerror(error);
        return -1000;
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {}
    if (!WIFEXITED(status)) return 1000 + WTERMSIG(status);  // a crash: no exit code the tool has
    const int code = WEXITSTATUS(status);
    return code > 127 ? code - 256 : code;  // 255 is the tool's -1
}
