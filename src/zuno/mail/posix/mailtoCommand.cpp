#include "mail/posix/mailClientCommand.h"
#include "text/percentEncoding.h"

#include <zuno/MailResult.h>

// The generic adapter: an RFC 6068 mailto URI, which every mail client takes.

namespace zuno::posix {

namespace {

// Header texts are one line; a line break in one could start another header.
std::string oneLine(std::string text) {
    for (char& c : text)
        if (c == '\r' || c == '\n') c = ' ';
    return text;
}

std::string recipientList(const std::vector<std::string>& recipients) {
    std::string list;
    for (const std::string& recipient : recipients) {
        if (recipient.empty()) continue;
        if (!list.empty()) list += ',';
        list += percentEncode(oneLine(quotedRecipient(recipient)));
    }
    return list;
}

void addField(std::vector<std::string>& fields, const char* key, const std::string& encodedValue) {
    if (!encodedValue.empty()) fields.push_back(std::string(key) + "=" + encodedValue);
}

} // namespace

std::string mailtoURI(const MailDraft& draft, const std::vector<std::string>& extraFields, bool withBcc) {
    std::vector<std::string> fields;
    addField(fields, "cc", recipientList(draft.cc));
    if (withBcc) addField(fields, "bcc", recipientList(draft.bcc));
    addField(fields, "subject", percentEncode(oneLine(draft.subject)));
    addField(fields, "body", percentEncode(draft.note));
    fields.insert(fields.end(), extraFields.begin(), extraFields.end());
    std::string uri = "mailto:" + recipientList(draft.to);
    for (size_t i = 0; i < fields.size(); ++i) uri += (i ? "&" : "?") + fields[i];
    return uri;
}

MailClientCall mailtoCall(const MailDraft& draft) {
    if (!draft.attachments.empty()) return {MailResult::NotSupported, {}};
    return {MailResult::Success, {mailtoURI(draft)}};
}

} // namespace zuno::posix
