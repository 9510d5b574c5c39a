#include "mail/posix/mailClientCommand.h"

// Claws Mail: "--compose mailto:..." and "--attach" with a path per file. The URI keeps its
// "mailto:" prefix, so no text of the mail can be read as an option.

namespace zuno::posix {

MailClientCall clawsMailCall(const MailDraft& draft) {
    MailClientCall call{0, {"--compose", mailtoURI(draft)}};
    if (!draft.attachments.empty()) {
        call.arguments.push_back("--attach");
        call.arguments.insert(call.arguments.end(), draft.attachments.begin(), draft.attachments.end());
    }
    return call;
}

} // namespace zuno::posix
