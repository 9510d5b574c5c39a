#pragma once

#include "mail/posix/MailDraft.h"

#include <cstdint>
#include <string>
#include <vector>

// The adapters that hand a mail to each family of desktop mail clients. Each builds the
// arguments that take the mail's place in the client's Exec line (see desktopExec.h), every
// text encoded so that it cannot end its value, start another field or be read as an
// option. Nothing here starts a process, and nothing goes through a shell.
namespace zuno::posix {

enum class MailClientFamily {
    Thunderbird,  // thunderbird, thunderbird-esr, thunderbird-bin, betterbird, icedove; Flatpak, Snap
    Evolution,    // evolution, org.gnome.Evolution
    ClawsMail,    // claws-mail, org.claws_mail.Claws-Mail
    Sylpheed,     // sylpheed
    Other,        // any other mailto handler (Balsa, Geary, KMail, ...): a plain mailto URI
};

// The family of a client, told by its program name or application id (see ExecCommand).
MailClientFamily mailClientFamily(const std::string& client);

// What an adapter makes of a mail: the arguments for the client, or the Simple MAPI code
// of why this client cannot take the mail (then nothing is started).
struct MailClientCall {
    int32_t refusal = 0;
    std::vector<std::string> arguments;
};

// "-compose" and one list "to=...,cc=...,bcc=...,subject=...,body=...,attachment='URI,URI'":
// every value percent-encoded, so no character of the mail can end a value or start a
// field; the recipients are joined by ", " first. Empty fields are left out.
MailClientCall thunderbirdCall(const MailDraft& draft);

// One mailto URI with an "attach=" field per file (the file's URI, encoded once more).
MailClientCall evolutionCall(const MailDraft& draft);

// "--compose" and the mailto URI, then "--attach" and the absolute paths of the files
// (only one attachment inside a mailto URI works; paths never start with "-", which would
// end the list).
MailClientCall clawsMailCall(const MailDraft& draft);

// As Claws Mail. Sylpheed drops a mailto URI's Bcc, so a mail with Bcc recipients (other
// than empty ones) is refused with MAPI_E_BAD_RECIPTYPE rather than handed on without them.
MailClientCall sylpheedCall(const MailDraft& draft);

// The mailto URI alone. Such a client cannot be given attachments: a mail with any is
// refused with MAPI_E_NOT_SUPPORTED rather than handed on without them.
MailClientCall mailtoCall(const MailDraft& draft);

// The adapter of the family.
MailClientCall mailClientCall(MailClientFamily family, const MailDraft& draft);

// The file URI of an absolute path; everything but unreserved characters and "/" is
// percent-encoded, so the URI holds no blank, quote or comma.
std::string fileURI(const std::string& absolutePath);

// A recipient as one RFC 5322 address: "Doe, John <jd@example.org>" becomes
// "\"Doe, John\" <jd@example.org>"; a display name that needs no quotes, one quoted
// already, and anything that is not "name <address>" are kept as they are.
std::string quotedRecipient(const std::string& recipient);

// An RFC 6068 mailto URI: the To recipients as its path, then cc=, bcc= (when `withBcc`),
// subject= and body=, and the `extraFields` ("key=encoded value") as they are. Every value
// is percent-encoded (UTF-8); recipients are quoted where they need it and joined by ",";
// line breaks in header texts become blanks; empty fields are left out.
std::string mailtoURI(const MailDraft& draft, const std::vector<std::string>& extraFields = {}, bool withBcc = true);

} // namespace zuno::posix
