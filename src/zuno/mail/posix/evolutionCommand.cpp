#include "mail/posix/mailClientCommand.h"
#include "text/percentEncoding.h"

// Evolution takes one mailto URI and honours every "attach=" field in it. It decodes a
// field's value once and opens a value starting with "file:" as a URI, so the file's URI
// (with its own escapes) is percent-encoded once more.

namespace zuno::posix {

MailClientCall evolutionCall(const MailDraft& draft) {
    std::vector<std::string> attachFields;
    for (const std::string& path : draft.attachments) attachFields.push_back("attach=" + percentEncode(fileURI(path)));
    return {0, {mailtoURI(draft, attachFields)}};
}

} // namespace zuno::posix
