#include <zuno/posix/mailClientCommand.h>

#include <cstring>

namespace zuno::posix {

namespace {

// The separator Thunderbird's address parser expects between recipients.
const char* const RecipientSeparator = ", ";

bool isUnreserved(unsigned char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == '~';
}

std::string joinNonEmpty(const std::vector<std::string>& texts, const char* separator) {
    std::string joined;
    for (const std::string& text : texts) {
        if (text.empty()) continue;
        if (!joined.empty()) joined += separator;
        joined += text;
    }
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

std::string percentEncode(const std::string& text, const char* keep) {
    static const char hexDigits[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (const unsigned char c : text) {
        if (isUnreserved(c) || (c != 0 && std::strchr(keep, c))) {
            encoded += char(c);
        } else {
            encoded += '%';
            encoded += hexDigits[c >> 4];
            encoded += hexDigits[c & 0x0F];
        }
    }
    return encoded;
}

std::string fileURI(const std::string& absolutePath) {
    return "file://" + percentEncode(absolutePath, "/");
}

bool isThunderbirdFamily(const std::string& program) {
    const std::string name = program.substr(program.rfind('/') + 1);
    return name == "thunderbird" || name == "betterbird" || name == "icedove";
}

std::vector<std::string> thunderbirdArguments(const MailDraft& draft) {
    std::string fields;
    addField(fields, "to", percentEncode(joinNonEmpty(draft.to, RecipientSeparator)));
    addField(fields, "cc", percentEncode(joinNonEmpty(draft.cc, RecipientSeparator)));
    addField(fields, "bcc", percentEncode(joinNonEmpty(draft.bcc, RecipientSeparator)));
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
