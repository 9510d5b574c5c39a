#include "mail/posix/mailClientCommand.h"
#include "text/percentEncoding.h"

namespace zuno::posix {

namespace {

// The separator Thunderbird's address parser expects between recipients.
const char* const RecipientSeparator = ", ";

std::string join(const std::vector<std::string>& texts, const char* separator) {
    std::string joined;
    for (size_t i = 0; i < texts.size(); ++i) joined += (i ? separator : "") + texts[i];
    return joined;
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

void addOption(std::vector<std::string>& arguments, const char* option, const std::string& text) {
    if (text.empty()) return;
    arguments.push_back(option);
    arguments.push_back(xdgEmailSafeText(text));
}

void addOptions(std::vector<std::string>& arguments, const char* option, const std::vector<std::string>& texts) {
    for (const std::string& text : texts) addOption(arguments, option, text);
}

} // namespace

std::string fileURI(const std::string& absolutePath) {
    return "file://" + percentEncode(absolutePath, "/");
}

bool isThunderbirdFamily(const std::string& program) {
    const std::string name = program.substr(program.rfind('/') + 1);
    return name == "thunderbird" || name == "betterbird" || name == "icedove";
}

std::vector<std::string> thunderbirdArguments(const MailDraft& draft) {
    std::string fields;
    addField(fields, "to", percentEncode(join(draft.to, RecipientSeparator)));
    addField(fields, "cc", percentEncode(join(draft.cc, RecipientSeparator)));
    addField(fields, "bcc", percentEncode(join(draft.bcc, RecipientSeparator)));
    addField(fields, "subject", percentEncode(draft.subject));
    addField(fields, "body", percentEncode(draft.note));
    addField(fields, "attachment", attachmentList(draft.attachments));
    std::vector<std::string> arguments{"-compose"};
    if (!fields.empty()) arguments.push_back(fields);
    return arguments;
}

std::vector<std::string> xdgEmailArguments(const MailDraft& draft) {
    std::vector<std::string> arguments{"--utf8"};
    addOption(arguments, "--subject", draft.subject);
    addOption(arguments, "--body", draft.note);
    addOptions(arguments, "--to", draft.to);
    addOptions(arguments, "--cc", draft.cc);
    addOptions(arguments, "--bcc", draft.bcc);
    addOptions(arguments, "--attach", draft.attachments);
    return arguments;
}

std::string xdgEmailSafeText(const std::string& text) {
    const bool commonCommand = text == "--help" || text == "--manual" || text == "--version";
    const bool echoOption = text.size() >= 2 && text[0] == '-' && text.find_first_not_of("neE", 1) == std::string::npos;
    return commonCommand || echoOption ? text + " " : text;
}

int32_t xdgEmailResult(int exitStatus) {
    switch (exitStatus) {
    case 0: return 0;
    case 2: return 11;
    case 3: return 26;
    case 5: return 12;
    default: return 2;
    }
}

} // namespace zuno::posix
