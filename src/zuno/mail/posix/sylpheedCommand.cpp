#include "mail/posix/mailClientCommand.h"

#include <zuno/MailResult.h>

// Sylpheed takes the same options as Claws Mail, its descendant, but loses the Bcc field of
// a mailto URI: a mail with Bcc recipients is refused rather than opened without them.

namespace zuno::posix {

MailClientCall sylpheedCall(const MailDraft& draft) {
    for (const std::string& recipient : draft.bcc)
        if (!recipient.empty()) return {MailResult::BadRecipientType, {}};
    return clawsMailCall(draft);
}

} // namespace zuno::posix
