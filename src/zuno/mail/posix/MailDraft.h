#pragma once

#include <string>
#include <vector>

namespace zuno::posix {

// One mail as the desktop's mail clients take it: UTF-8 texts and absolute file paths.
struct MailDraft {
    std::string subject;
    std::string note;
    std::vector<std::string> to;
    std::vector<std::string> cc;
    std::vector<std::string> bcc;
    std::vector<std::string> attachments;
};

} // namespace zuno::posix
