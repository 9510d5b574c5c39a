#include "mail/posix/mailClientCommand.h"
#include "text/percentEncoding.h"


#include <algorithm>
#include <cctype>
#include <cstring>
#include <map>

namespace zuno::posix {

namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// RFC 5322 "specials" and controls: a display name holding any must be a quoted string.
bool needsQuotes(const std::string& name) {
    return std::any_of(name.begin(), name.end(), [](char c) {
        return (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) || std::strchr("()<>[]:;@\\,.\"", c);
    });
}

bool isQuotedString(const std::string& name) {
    if (name.size() < 2 || name.front() != '"' || name.back() != '"') return false;
    for (size_t i = 1; i + 1 < name.size(); ++i) {
        if (name[i] == '\\') ++i;
        else if (name[i] == '"') return false;
    }
    return true;
}

} // namespace

MailClientFamily mailClientFamily(const std::string& client) {
    static const std::map<std::string, MailClientFamily> families{
        {"thunderbird", MailClientFamily::Thunderbird},
        {"thunderbird-esr", MailClientFamily::Thunderbird},
        {"thunderbird-bin", MailClientFamily::Thunderbird},
        {"betterbird", MailClientFamily::Thunderbird},
        {"icedove", MailClientFamily::Thunderbird},
        {"org.mozilla.thunderbird", MailClientFamily::Thunderbird},
        {"net.thunderbird.thunderbird", MailClientFamily::Thunderbird},
        {"eu.betterbird.betterbird", MailClientFamily::Thunderbird},
        {"evolution", MailClientFamily::Evolution},
        {"org.gnome.evolution", MailClientFamily::Evolution},
        {"claws-mail", MailClientFamily::ClawsMail},
        {"org.claws_mail.claws-mail", MailClientFamily::ClawsMail},
        {"sylpheed", MailClientFamily::Sylpheed},
    };
    const auto family = families.find(lowerCase(client));
    return family == families.end() ? MailClientFamily::Other : family->second;
}

MailClientCall mailClientCall(MailClientFamily family, const MailDraft& draft) {
    switch (family) {
    case MailClientFamily::Thunderbird: return thunderbirdCall(draft);
    case MailClientFamily::Evolution: return evolutionCall(draft);
    case MailClientFamily::ClawsMail: return clawsMailCall(draft);
    case MailClientFamily::Sylpheed: return sylpheedCall(draft);
    case MailClientFamily::Other: break;
    }
    return mailtoCall(draft);
}

std::string fileURI(const std::string& absolutePath) {
    return "file://" + percentEncode(absolutePath, "/");
}

std::string quotedRecipient(const std::string& recipient) {
    const std::string text = trimmed(recipient);
    const size_t open = text.rfind('<');
    if (text.empty() || text.back() != '>' || open == std::string::npos || open == 0) return recipient;
    const std::string name = trimmed(text.substr(0, open));
    if (name.empty() || isQuotedString(name) || !needsQuotes(name)) return recipient;
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '\r' || c == '\n') quoted += ' ';  // a quoted string holds no line break
        else if (c == '"' || c == '\\') quoted += std::string("\\") + c;
        else quoted += c;
    }
    return quoted + "\" " + text.substr(open);
}

} // namespace zuno::posix
