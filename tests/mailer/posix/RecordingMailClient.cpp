#include "RecordingMailClient.h"
#include "recordingClientFile.h"
#include "TemporaryFolder.h"

#include "text/percentEncoding.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>

// The Linux stand-in: a throw-away HOME whose mimeapps.list makes a desktop entry the
// default mailto handler, and a bin folder first on PATH. Kind::Default: the entry starts a
// fake `thunderbird`; Kind::Other: it names `othermail`, which does nothing, so the tool must
// go through the fake `xdg-email` beside it. The real xdg-mime finds the handler.
// Kind::Missing is a system without xdg-utils: PATH holds only the empty bin folder.

using zuno::percentDecode;
using zuno::percentEncode;
using Strings = std::vector<std::string>;

namespace {

// Records its argument vector (NUL-terminated texts), prints noise the tool must swallow,
// then stalls or ends as the files described in recordingClientFile.h tell it.
const char* const FakeClient =
    "#!/bin/sh\nd=\"${0%/*}/..\"\nprintf '%s\\000' \"$@\" > \"$d/record\"\necho noise; echo noise >&2\n"
    "if [ -e \"$d/stall\" ]; then echo $$ > \"$d/pid\"; exec sleep 300; fi\n"
    "read status < \"$d/status\"; case $status in -*) kill $status $$;; esac; exit $status\n";

// `text` cut at each `separator`; with `quotes`, not inside single quotes (as Thunderbird's
// -compose parser does).
Strings split(const std::string& text, const std::string& separator, bool quotes = false) {
    Strings parts(1);
    bool quoted = false;
    for (size_t i = 0; i < text.size(); ++i) {
        quoted ^= quotes && text[i] == '\'';
        if (!quoted && text.compare(i, separator.size(), separator) == 0) {
            parts.emplace_back();
            i += separator.size() - 1;
        } else {
            parts.back() += text[i];
        }
    }
    return parts;
}

// Adds a field of the mail under Thunderbird's name for it.
void add(RecordedMail& mail, const std::string& key, const std::string& value) {
    if (key == "subject") mail.subject = value;
    else if (key == "body") mail.note = value;
    else if (key == "to") mail.to.push_back(value);
    else if (key == "cc") mail.cc.push_back(value);
    else if (key == "bcc") mail.bcc.push_back(value);
    else if (key == "attachment") mail.attachments.push_back(value);
    else ADD_FAILURE() << "unexpected field: " << key;
}

// Thunderbird's "-compose" and a list of key=value fields, each value percent-encoded; the
// recipients are joined by ", ", the attachments are 'URI,URI'.
RecordedMail fromCompose(const Strings& args) {
    RecordedMail mail;
    if (args.empty() || args.size() > 2 || args[0] != "-compose") ADD_FAILURE() << "not one -compose list";
    for (const std::string& field : args.size() == 2 ? split(args[1], ",", true) : Strings{}) {
        const std::string key = field.substr(0, field.find('='));
        const std::string raw = field.substr(std::min(field.size(), key.size() + 1)), value = percentDecode(raw);
        if (key == "attachment") {
            for (const std::string& uri : split(raw.substr(1, raw.size() - 2), ",")) {
                add(mail, key, percentDecode(uri.substr(std::min<size_t>(7, uri.size()))));
                EXPECT_EQ("file://" + percentEncode(mail.attachments.back(), "/"), uri) << "a fully encoded file URI";
            }
            continue;
        }
        EXPECT_EQ(percentEncode(value), raw) << "a fully encoded value of " << key;
        for (const std::string& text : key == "subject" || key == "body" ? Strings{value} : split(value, ", "))
            add(mail, key, text);
    }
    return mail;
}

// xdg-email's "--utf8", then options each followed by its text.
RecordedMail fromXdgEmail(const Strings& args) {
    const std::map<std::string, std::string> keys{{"--subject", "subject"}, {"--body", "body"}, {"--to", "to"},
                                                  {"--cc", "cc"}, {"--bcc", "bcc"}, {"--attach", "attachment"}};
    RecordedMail mail;
    if (args.empty() || args[0] != "--utf8" || args.size() % 2 == 0) ADD_FAILURE() << "not options and values";
    for (size_t i = 1; i + 1 < args.size(); i += 2)
        add(mail, keys.count(args[i]) ? keys.at(args[i]) : args[i], args[i + 1]);
    return mail;
}

} // namespace

std::string recordingClientFile(const std::string& workDir, const std::string& name) {
    return workDir + "/.mailclient/" + name;
}

struct RecordingMailClient::State {
    std::string workDir;
    Kind kind;
    std::string file(const std::string& name) const { return recordingClientFile(workDir, name); }
};

RecordingMailClient::RecordingMailClient(const std::string& workDir, Kind kind) : m_state(new State{workDir, kind}) {
    std::filesystem::remove_all(m_state->file(""));
    std::filesystem::create_directories(m_state->file("bin"));
    setResult(0);
    if (kind == Kind::Missing) return;
    const std::string program = kind == Kind::Other ? "othermail" : "thunderbird";
    TemporaryFolder::writeFile(m_state->file("home/.config/mimeapps.list"),
                               "[Default Applications]\nx-scheme-handler/mailto=" + program + ".desktop\n");
    TemporaryFolder::writeFile(m_state->file("home/.local/share/applications/" + program + ".desktop"),
                               "[Desktop Entry]\nType=Application\nName=Mail\nExec=" + program + " %u\n");
    TemporaryFolder::writeFile(m_state->file("bin/" + program), kind == Kind::Other ? "#!/bin/sh\n" : FakeClient, 0755);
    if (kind == Kind::Other) TemporaryFolder::writeFile(m_state->file("bin/xdg-email"), FakeClient, 0755);
}

RecordingMailClient::~RecordingMailClient() {
    delete m_state;
}

// xdg-email answers a result through the exit status that the tool maps to it.
void RecordingMailClient::setResult(int result) {
    const std::map<int, int> xdgEmailStatuses{{0, 0}, {2, 4}, {11, 2}, {12, 5}, {26, 3}};
    const bool other = m_state->kind == Kind::Other;
    if (other && !xdgEmailStatuses.count(result)) {
        ADD_FAILURE() << "xdg-email cannot answer " << result;
        return;
    }
    const int status = other ? xdgEmailStatuses.at(result) : result;
    TemporaryFolder::writeFile(m_state->file("status"), std::to_string(status) + "\n");
}

std::string RecordingMailClient::mailerPath() const {
    return MAILER_EXE;
}

std::map<std::string, std::string> RecordingMailClient::environment() const {
    const std::string home = m_state->file("home"), path = std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin";
    std::map<std::string, std::string> variables{
        {"HOME", home}, {"XDG_CONFIG_HOME", home + "/.config"}, {"XDG_DATA_HOME", home + "/.local/share"},
        {"XDG_CONFIG_DIRS", m_state->file("etc")}, {"XDG_DATA_DIRS", m_state->file("share")},
        {"PATH", m_state->file("bin") + (m_state->kind == Kind::Missing ? "" : ":" + path)},
        {"ZUNO_MAIL_CLIENT_WAIT_MS", "60000"}};  // every stand-in ends within it
    // xdg-mime and xdg-email must take the generic desktop path, whatever session runs the tests.
    for (const char* name : {"XDG_CURRENT_DESKTOP", "XDG_SESSION_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
                             "KDE_SESSION_VERSION", "GNOME_DESKTOP_SESSION_ID", "MATE_DESKTOP_SESSION_ID", "DISPLAY",
                             "WAYLAND_DISPLAY", "MAILER", "BROWSER", "XDG_UTILS_DEBUG_LEVEL"})
        variables[name] = "";
    return variables;
}

bool RecordingMailClient::wasCalled() const {
    return std::filesystem::exists(m_state->file("record"));
}

RecordedMail RecordingMailClient::lastMail() const {
    Strings args = split(TemporaryFolder::read(m_state->file("record")), std::string(1, '\0'));
    args.pop_back();  // after the last terminator
    return m_state->kind == Kind::Other ? fromXdgEmail(args) : fromCompose(args);
}

// The tool's own output goes to a file, so tests can tell that it prints nothing.
int runMailer(const std::string& mailer, const Strings& args, const std::string& workDir,
              const std::map<std::string, std::string>& environment) {
    std::vector<char*> argv{const_cast<char*>(mailer.c_str())};
    for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
    argv.push_back(nullptr);
    const std::string output = recordingClientFile(workDir, "tool-output");
    std::filesystem::create_directories(recordingClientFile(workDir, ""));
    const pid_t pid = fork();
    if (pid == 0) {
        for (const auto& [name, value] : environment) setenv(name.c_str(), value.c_str(), 1);
        const int in = open("/dev/null", O_RDONLY), out = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (chdir(workDir.c_str()) == 0 && dup2(in, 0) == 0 && dup2(out, 1) == 1 && dup2(out, 2) == 2)
            execv(mailer.c_str(), argv.data());
        _exit(99);
    }
    int status = 0;
    EXPECT_EQ(waitpid(pid, &status, 0), pid) << "cannot run " << mailer;
    if (!WIFEXITED(status)) return 1000 + WTERMSIG(status);  // a crash: no exit code the tool has
    return static_cast<signed char>(WEXITSTATUS(status));     // 255 is the tool's -1
}
