#include "RecordingMailClient.h"
#include "recordingClientFile.h"
#include "TemporaryFolder.h"
#include "mailClientArguments.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>

// The Linux stand-in: a throw-away HOME whose mimeapps.list makes a desktop entry the
// default mailto handler, and a bin folder first on PATH. Kind::Default: the entry starts a
// fake `thunderbird`; Kind::Other: a fake `othermail`, which is given a plain mailto URI.
// Kind::Missing: no mailto handler at all. No xdg-utils program is involved.

using zuno::posix::MailClientFamily;
using Strings = std::vector<std::string>;

namespace {

// Records its argument vector (NUL-terminated texts), prints noise the tool must swallow,
// then stalls or ends as the files described in recordingClientFile.h tell it.
const char* const FakeClient =
    "#!/bin/sh\nd=\"%WORK%/.mailclient\"\nprintf '%s\\000' \"$@\" > \"$d/record\"\necho noise; echo noise >&2\n"
    "if [ -e \"$d/stall\" ]; then echo $$ > \"$d/pid\"; exec sleep 300; fi\n"
    "read status < \"$d/status\"; case $status in -*) kill $status $$;; esac; exit $status\n";

std::string withWorkFolder(std::string text, const std::string& workDir) {
    for (size_t at = 0; (at = text.find("%WORK%", at)) != std::string::npos; at += workDir.size())
        text.replace(at, 6, workDir);
    return text;
}

} // namespace

std::string recordingClientFile(const std::string& workDir, const std::string& name) {
    return workDir + "/.mailclient/" + name;
}

void installRecordingClient(const std::string& workDir, const std::string& exec, const std::string& standIn) {
    const auto file = [&](const std::string& name) { return recordingClientFile(workDir, name); };
    std::filesystem::remove(file("record"));
    TemporaryFolder::writeFile(file("home/.config/mimeapps.list"),
                               "[Default Applications]\nx-scheme-handler/mailto=mail-client.desktop\n");
    TemporaryFolder::writeFile(file("home/.local/share/applications/mail-client.desktop"),
                               "[Desktop Entry]\nType=Application\nName=Mail\nExec=" + withWorkFolder(exec, workDir) +
                                   "\n");
    const std::string program = standIn.find('/') == std::string::npos ? file("bin/" + standIn)
                                                                        : withWorkFolder(standIn, workDir);
    TemporaryFolder::writeFile(program, withWorkFolder(FakeClient, workDir), 0755);
}

Strings recordedArguments(const std::string& workDir) {
    Strings args = mailClientArguments::split(TemporaryFolder::read(recordingClientFile(workDir, "record")),
                                              std::string(1, '\0'));
    args.pop_back();  // after the last terminator
    return args;
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
    installRecordingClient(workDir, program + " %u", program);
}

RecordingMailClient::~RecordingMailClient() {
    delete m_state;
}

// A client tells only success (status 0) from failure (any other status).
void RecordingMailClient::setResult(int result) {
    if (result != 0 && result != 2) ADD_FAILURE() << "a mail client cannot answer " << result;
    TemporaryFolder::writeFile(m_state->file("status"), result == 0 ? "0\n" : "1\n");
}

std::string RecordingMailClient::mailerPath() const {
    return MAILER_EXE;
}

std::map<std::string, std::string> RecordingMailClient::environment() const {
    const std::string home = m_state->file("home"), path = std::getenv("PATH") ? std::getenv("PATH") : "/usr/bin";
    return {{"HOME", home}, {"XDG_CONFIG_HOME", home + "/.config"}, {"XDG_DATA_HOME", home + "/.local/share"},
            {"XDG_CONFIG_DIRS", m_state->file("etc")}, {"XDG_DATA_DIRS", m_state->file("share")},
            {"XDG_CURRENT_DESKTOP", "ZunoTest"}, {"PATH", m_state->file("bin") + ":" + path},
            {"ZUNO_MAIL_CLIENT_WAIT_MS", "60000"}};  // every stand-in ends within it
}

bool RecordingMailClient::wasCalled() const {
    return std::filesystem::exists(m_state->file("record"));
}

RecordedMail RecordingMailClient::lastMail() const {
    const zuno::posix::MailDraft draft = mailClientArguments::fromArguments(
        m_state->kind == Kind::Other ? MailClientFamily::Other : MailClientFamily::Thunderbird,
        recordedArguments(m_state->workDir));
    return {draft.subject, draft.note, draft.to, draft.cc, draft.bcc, draft.attachments};
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
