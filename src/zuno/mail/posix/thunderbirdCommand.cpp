#include "mail/posix/mailClientCommand.h"
#include "text/percentEncoding.h"

// Thunderbird and its relatives take "-compose" and one list of key=value fields, split at
// commas outside single quotes; percent-encoding every value keeps each one whole.

namespace zuno::posix {

namespace {

// The separator Thunderbird's address parser expects between recipients.
const char* const RecipientSeparator = ", ";

std::string recipientList(const std::vector<std::string>& recipients) {
    std::string joined;
    for (size_t i = 0; i < recipients.size(); ++i)
        joined += (i ? RecipientSeparator : "") + quotedRecipient(recipients[i]);
    return percentEncode(joined);
}

void addField(std::string& fields, const char* key, const std::string& value) {
    if (value.empty()) return;
    if (!fields.empty()) fields += ',';
    fields += key;
    fields += '=';
    fields += value;
}

std::string attachmentList(const std::vector<std::string>& paths) {
    std::string uris;
    for (const std::string& path : paths) {
        if (!uris.empty()) uris += ',';
        uris += fileURI(path);
    }
    return uris.empty() ? uris : "'" + uris + "'";
}

} // namespace

MailClientCall thunderbirdCall(const MailDraft& draft) {
    std::string fields;
    addField(fields, "to", recipientList(draft.to));
    addField(fields, "cc", recipientList(draft.cc));
    addField(fields, "bcc", recipientList(draft.bcc));
    addField(fields, "subject", percentEncode(draft.subject));
    addField(fields, "body", percentEncode(draft.note));
    addField(fields, "attachment", attachmentList(draft.attachments));
    MailClientCall call{0, {"-compose"}};
    if (!fields.empty()) call.arguments.push_back(fields);
    return call;
}

} // namespace zuno::posix
