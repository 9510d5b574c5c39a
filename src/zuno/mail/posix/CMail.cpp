#include <zuno/CMail.h>
#include "mail/posix/childProcess.h"
#include "mail/posix/mailClientCommand.h"
#include "mail/posix/xdgDesktop.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// The hand-off on the free desktops. The default mailto handler is started directly when it
// is a Thunderbird-family client (its -compose list carries every field percent-encoded);
// any other client is reached through xdg-email. Both get an argument vector, never a
// shell. The results are Simple MAPI codes, as on Windows.

namespace zuno {

namespace {

using posix::ChildOutcome;

const int32_t NoMailClient = -1;
const int32_t MapiFailure = 2;              // MAPI_E_FAILURE
const int32_t AttachmentNotFound = 11;      // MAPI_E_ATTACHMENT_NOT_FOUND
const int32_t AttachmentOpenFailure = 12;   // MAPI_E_ATTACHMENT_OPEN_FAILURE
const int32_t TextTooLarge = 18;            // MAPI_E_TEXT_TOO_LARGE

const char* const ClientWaitVariable = "ZUNO_MAIL_CLIENT_WAIT_MS";
const long DefaultClientWaitMilliseconds = 3000;

// How long a started client may take to end before it counts as having opened its compose
// window: a client that was not running yet stays in the foreground until the user quits
// it. The environment variable ZUNO_MAIL_CLIENT_WAIT_MS (milliseconds) overrides it.
std::chrono::milliseconds clientWait() {
    const char* text = std::getenv(ClientWaitVariable);
    if (text && *text) {
        char* end = nullptr;
        const long milliseconds = std::strtol(text, &end, 10);
        if (*end == '\0' && milliseconds >= 0) return std::chrono::milliseconds(milliseconds);
    }
    return std::chrono::milliseconds(DefaultClientWaitMilliseconds);
}

// Narrow texts are code-page (locale) text; the clients take UTF-8.
std::vector<std::string> toUTF8(const std::vector<std::string>& narrowTexts) {
    std::vector<std::string> texts;
    for (const std::string& narrow : narrowTexts)
        texts.push_back(String(narrow.data(), int32_t(narrow.size())).toStdString());
    return texts;
}

std::vector<std::string> absolutePaths(const std::vector<std::string>& paths) {
    char* currentFolder = getcwd(nullptr, 0);
    const std::string base = currentFolder ? std::string(currentFolder) + "/" : "/";
    std::free(currentFolder);
    std::vector<std::string> absolute;
    for (const std::string& path : paths) absolute.push_back(path.empty() || path[0] == '/' ? path : base + path);
    return absolute;
}

// 0 when every attachment is an existing, readable regular file; otherwise the code a
// Simple MAPI client would answer.
int32_t attachmentProblem(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
        if (fd < 0) return errno == ENOENT || errno == ENOTDIR ? AttachmentNotFound : AttachmentOpenFailure;
        struct stat info;
        const bool regular = fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
        close(fd);
        if (!regular) return AttachmentOpenFailure;
    }
    return 0;
}

std::vector<std::string> commandLine(const std::string& program, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), program);
    return arguments;
}

// A client still running after the wait has opened its window: success.
int32_t resultOf(const ChildOutcome& outcome, int32_t (*resultOfStatus)(int)) {
    switch (outcome.state) {
    case ChildOutcome::State::Exited: return resultOfStatus(outcome.status);
    case ChildOutcome::State::Running: return 0;
    case ChildOutcome::State::TooLarge: return TextTooLarge;
    default: return MapiFailure;
    }
}

// A Thunderbird-family client's exit status is passed on as it is.
int32_t thunderbirdResult(int exitStatus) {
    return exitStatus;
}

int32_t handOff(const posix::MailDraft& draft) {
    const std::chrono::milliseconds wait = clientWait();
    const std::string program = posix::defaultMailtoProgram();
    if (posix::isThunderbirdFamily(program)) {
        const ChildOutcome outcome =
            posix::startAndWait(commandLine(program, posix::thunderbirdArguments(draft)), wait);
        // A mail too large for a command line is too large for xdg-email as well.
        if (outcome.state != ChildOutcome::State::NotStarted) return resultOf(outcome, thunderbirdResult);
    }
    const ChildOutcome outcome = posix::startAndWait(commandLine("xdg-email", posix::xdgEmailArguments(draft)), wait);
    return outcome.state == ChildOutcome::State::NotStarted ? NoMailClient : resultOf(outcome, posix::xdgEmailResult);
}

} // namespace

bool CMail::isMailClientRegistered() {
    return !posix::findDesktopEntry(posix::defaultMailtoHandler()).empty();
}

int32_t CMail::send() {
    posix::MailDraft draft;
    draft.subject = m_subject.toStdString();
    draft.note = m_note.toStdString();
    draft.to = toUTF8(m_toRecipients);
    draft.cc = toUTF8(m_ccRecipients);
    draft.bcc = toUTF8(m_bccRecipients);
    draft.attachments = absolutePaths(m_attachments);
    if (const int32_t problem = attachmentProblem(draft.attachments)) return problem;
    return handOff(draft);
}

} // namespace zuno
