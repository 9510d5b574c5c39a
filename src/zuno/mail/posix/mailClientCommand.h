#pragma once

#include "mail/posix/MailDraft.h"

#include <cstdint>
#include <string>
#include <vector>

// The argument vectors that hand a mail to a desktop mail client. Nothing here starts a
// process: the vectors are passed to the program as they are, never through a shell.
namespace zuno::posix {

// The file URI of an absolute path; everything but unreserved characters and "/" is
// percent-encoded, so the URI holds no blank, quote or comma.
std::string fileURI(const std::string& absolutePath);

// Whether a program (a name or a path) is a Thunderbird-family client: thunderbird,
// betterbird or icedove.
bool isThunderbirdFamily(const std::string& program);

// The arguments after the program name for a Thunderbird-family client: "-compose" and one
// list "to=...,cc=...,bcc=...,subject=...,body=...,attachment='URI,URI'". Every value is
// percent-encoded, so no character of the mail can end a value or start another field;
// recipients are joined by ", " first. Empty fields are left out.
std::vector<std::string> thunderbirdArguments(const MailDraft& draft);

// The arguments after the program name for xdg-email: "--utf8", then "--subject",
// "--body", "--to", "--cc", "--bcc" each followed by one text, and "--attach" and a path per
// file. Empty texts are left out (xdg-email refuses them). A text that xdg-email or the
// echo inside it would read as an option gets a trailing blank (see xdgEmailSafeText).
std::vector<std::string> xdgEmailArguments(const MailDraft& draft);

// xdg-email scans its whole argument vector for "--help", "--manual" and "--version", and
// passes each text through the shell's echo, which takes "-n" (dash) or "-e", "-E", "-neE"
// (bash) as its own options. Such a text gets a trailing blank, which keeps it a text; any
// other text is returned unchanged.
std::string xdgEmailSafeText(const std::string& text);

// The Simple MAPI result for an exit status of xdg-email: 0 -> 0 (success), 1 -> 2
// (syntax: failure), 2 -> 11 (attachment not found), 3 -> 26 (no tool: not supported),
// 4 -> 2 (failure), 5 -> 12 (attachment unreadable); any other status -> 2.
int32_t xdgEmailResult(int exitStatus);

} // namespace zuno::posix
