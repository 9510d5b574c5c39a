#pragma once

#include "mail/posix/MailDraft.h"
#include "mail/posix/mailClientCommand.h"
#include "text/percentEncoding.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Reads a mail back from the arguments a client family is given, the way the client would,
// and checks on the way that every value is percent-encoded in full, so no text of the mail
// can have ended a value early.
namespace mailClientArguments {

using zuno::percentDecode;
using zuno::percentEncode;
using zuno::posix::MailClientFamily;
using zuno::posix::MailDraft;
using Strings = std::vector<std::string>;

// `text` cut at each `separator` that stands outside double quotes (RFC 5322 quoted
// strings, with backslash escapes) and, with `singleQuotes`, outside single quotes (as
// Thunderbird's -compose parser reads them).
inline Strings split(const std::string& text, const std::string& separator, bool singleQuotes = false) {
    Strings parts(1);
    bool inDouble = false, inSingle = false;
    for (size_t i = 0; i < text.size(); ++i) {
        if (inDouble && text[i] == '\\' && i + 1 < text.size()) {
            parts.back() += text.substr(i++, 2);
            continue;
        }
        if (!inSingle && text[i] == '"') inDouble = !inDouble;
        if (singleQuotes && !inDouble && text[i] == '\'') inSingle = !inSingle;
        if (!inDouble && !inSingle && text.compare(i, separator.size(), separator) == 0) {
            parts.emplace_back();
            i += separator.size() - 1;
        } else {
            parts.back() += text[i];
        }
    }
    return parts;
}

inline std::string decodedValue(const std::string& raw, const std::string& what) {
    const std::string value = percentDecode(raw);
    EXPECT_EQ(percentEncode(value), raw) << "a fully encoded value of " << what;
    return value;
}

inline std::string pathOfFileURI(const std::string& uri) {
    EXPECT_EQ(uri.rfind("file:///", 0), 0u) << uri;
    const std::string path = percentDecode(uri.substr(std::min<size_t>(7, uri.size())));
    EXPECT_EQ("file://" + percentEncode(path, "/"), uri) << "a fully encoded file URI";
    return path;
}

// "-compose" and one list of key=value fields split at commas outside single quotes; the
// recipients joined by ", ", the attachments 'URI,URI'.
inline MailDraft fromThunderbird(const Strings& args) {
    MailDraft mail;
    if (args.empty() || args.size() > 2 || args[0] != "-compose") ADD_FAILURE() << "not one -compose list";
    for (const std::string& field : args.size() == 2 ? split(args[1], ",", true) : Strings{}) {
        const std::string key = field.substr(0, field.find('='));
        const std::string raw = field.substr(std::min(field.size(), key.size() + 1));
        if (key == "attachment") {
            for (const std::string& uri : split(raw.substr(1, raw.size() - 2), ","))
                mail.attachments.push_back(pathOfFileURI(uri));
        } else if (key == "subject") {
            mail.subject = decodedValue(raw, key);
        } else if (key == "body") {
            mail.note = decodedValue(raw, key);
        } else if (key == "to" || key == "cc" || key == "bcc") {
            Strings& list = key == "to" ? mail.to : key == "cc" ? mail.cc : mail.bcc;
            list = split(decodedValue(raw, key), ", ");
        } else {
            ADD_FAILURE() << "unexpected field: " << field;
        }
    }
    return mail;
}

// Recipients separated by bare commas, each encoded on its own.
inline Strings recipientsOf(const std::string& raw, const std::string& what) {
    Strings recipients;
    for (const std::string& encoded : split(raw, ",")) recipients.push_back(decodedValue(encoded, what));
    return recipients;
}

// An RFC 6068 mailto URI; "attach=" fields (decoded once they are file URIs) become attachments.
inline MailDraft fromMailto(const std::string& uri) {
    MailDraft mail;
    if (uri.rfind("mailto:", 0) != 0) {
        ADD_FAILURE() << "not a mailto URI: " << uri;
        return mail;
    }
    const size_t query = uri.find('?');
    const std::string to = uri.substr(7, query == std::string::npos ? std::string::npos : query - 7);
    if (!to.empty()) mail.to = recipientsOf(to, "to");
    for (const std::string& field : query == std::string::npos ? Strings{} : split(uri.substr(query + 1), "&")) {
        const std::string key = field.substr(0, field.find('='));
        const std::string raw = field.substr(std::min(field.size(), key.size() + 1));
        if (key == "cc") mail.cc = recipientsOf(raw, key);
        else if (key == "bcc") mail.bcc = recipientsOf(raw, key);
        else if (key == "subject") mail.subject = decodedValue(raw, key);
        else if (key == "body") mail.note = decodedValue(raw, key);
        else if (key == "attach") mail.attachments.push_back(pathOfFileURI(decodedValue(raw, key)));
        else ADD_FAILURE() << "unexpected field: " << field;
    }
    return mail;
}

// "--compose" and a mailto URI, then "--attach" and the paths.
inline MailDraft fromComposeOption(const Strings& args) {
    if (args.size() < 2 || args[0] != "--compose") {
        ADD_FAILURE() << "not --compose and a URI";
        return {};
    }
    MailDraft mail = fromMailto(args[1]);
    if (args.size() > 2) {
        EXPECT_EQ(args[2], "--attach");
        for (size_t i = 3; i < args.size(); ++i) {
            EXPECT_EQ(args[i].rfind('/', 0), 0u) << "an absolute path, which cannot end the list";
            mail.attachments.push_back(args[i]);
        }
    }
    return mail;
}

inline MailDraft fromArguments(MailClientFamily family, const Strings& args) {
    switch (family) {
    case MailClientFamily::Thunderbird: return fromThunderbird(args);
    case MailClientFamily::ClawsMail:
    case MailClientFamily::Sylpheed: return fromComposeOption(args);
    case MailClientFamily::Evolution:
    case MailClientFamily::Other: break;
    }
    if (args.size() != 1) ADD_FAILURE() << "not one mailto URI";
    return args.empty() ? MailDraft{} : fromMailto(args[0]);
}

} // namespace mailClientArguments
