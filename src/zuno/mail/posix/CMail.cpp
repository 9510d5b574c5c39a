#include <zuno/CMail.h>
#include <zuno/MailResult.h>
#include "mail/posix/childProcess.h"
#include "mail/posix/desktopExec.h"
#include "mail/posix/mailClientCommand.h"
#include "mail/posix/xdgDesktop.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// The hand-off on the free desktops: the default mailto handler's desktop entry gives the
// client's command line and its family; the family's adapter puts the mail into arguments
// (see mailClientCommand.h), and the client is started from that argument vector, never
// through a shell. The results are Simple MAPI codes, as on Windows.

namespace zuno {

namespace {

using posix::ChildOutcome;

const char* const ClientWaitVariable = "ZUNO_MAIL_CLIENT_WAIT_MS";
const long DefaultClientWaitMilliseconds = 3000;
const long MaxClientWaitMilliseconds = 24L * 60 * 60 * 1000;  // far longer would overflow the deadline

// How long a started client may take to end before it counts as having opened its compose
// window: a client that was not running yet stays in the foreground until the user quits
// it. The environment variable ZUNO_MAIL_CLIENT_WAIT_MS (milliseconds, 0 allowed, at most
// a day) overrides it.
std::chrono::milliseconds clientWait() {
    const char* text = std::getenv(ClientWaitVariable);
    if (text && *text) {
        char* end = nullptr;
        errno = 0;
        const long milliseconds = std::strtol(text, &end, 10);
        if (*end == '\0' && errno == 0 && milliseconds >= 0)
            return std::chrono::milliseconds(std::min(milliseconds, MaxClientWaitMilliseconds));
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
        if (fd < 0)
            return errno == ENOENT || errno == ENOTDIR ? MailResult::AttachmentNotFound
                                                       : MailResult::AttachmentOpenFailure;
        struct stat info;
        const bool regular = fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
        close(fd);
        if (!regular) return MailResult::AttachmentOpenFailure;
    }
    return MailResult::Success;
}

// How a client's run becomes a Simple MAPI result:
//   could not be started (its program is missing)   -1  no mail client
//   arguments too large for one program             18  MAPI_E_TEXT_TOO_LARGE
//   exited with status 0                              0  success
//   exited with any other status                     2  MAPI_E_FAILURE
//   killed by a signal                                2  MAPI_E_FAILURE
//   still running when the wait ends                  0  success: its window is open
// No client tells a cancelled mail apart by its status, so MAPI_USER_ABORT (1) never occurs.
int32_t resultOf(const ChildOutcome& outcome) {
    switch (outcome.state) {
    case ChildOutcome::State::NotStarted: return MailResult::NoMailClient;
    case ChildOutcome::State::TooLarge: return MailResult::TextTooLarge;
    case ChildOutcome::State::Exited: return outcome.status == 0 ? MailResult::Success : MailResult::Failure;
    case ChildOutcome::State::Running: return MailResult::Success;
    case ChildOutcome::State::Failed: break;
    }
    return MailResult::Failure;
}

std::optional<posix::ExecCommand> defaultMailClient() {
    const std::optional<posix::DesktopEntry> handler = posix::defaultMailtoHandler();
    return handler ? posix::parseExec(*handler) : std::nullopt;
}

int32_t handOff(const posix::MailDraft& draft) {
    const std::optional<posix::ExecCommand> client = defaultMailClient();
    if (!client) return MailResult::NoMailClient;
    const posix::MailClientCall call = posix::mailClientCall(posix::mailClientFamily(client->client), draft);
    if (call.refusal != MailResult::Success) return call.refusal;
    return resultOf(posix::startAndWait(client->commandLine(call.arguments), clientWait()));
}

} // namespace

bool CMail::isMailClientRegistered() {
    return defaultMailClient().has_value();
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
