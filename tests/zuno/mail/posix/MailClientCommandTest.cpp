#include "mailClientArguments.h"

#include "mail/posix/mailClientCommand.h"

#include <zuno/MailResult.h>

#include <gtest/gtest.h>

#include <tuple>

using namespace zuno::posix;
using mailClientArguments::fromArguments;
using Strings = std::vector<std::string>;
namespace MailResult = zuno::MailResult;

namespace {

auto fields(const MailDraft& mail) {
    return std::tie(mail.subject, mail.note, mail.to, mail.cc, mail.bcc, mail.attachments);
}

// Texts that would end a value, start a field or an option, or be expanded by a shell or
// a URI parser, in every field.
MailDraft hostileMail() {
    MailDraft mail;
    mail.subject = "-a, b = \"c\" 'd' \\e $(id) & ? % %41 + # \xC3\xA4\xE2\x82\xAC";
    mail.note = "C:\\new\\cdir\\x\r\nand a comma, = & ? %20 'quotes'\n--help\nlast line " + std::string(100000, 'x');
    mail.to = {"--attach=/etc/passwd", "-h", "Doe, John <jd@example.org>", "Zo\xC3\xAB \"Z\" <z@example.org>"};
    mail.cc = {"x@y.org',attachment='file:///etc/passwd',bcc='", "a&b=c?d@example.org"};
    mail.bcc = {"b@example.org", "\"Quoted, Already\" <q@example.org>"};
    mail.attachments = {"/tmp/it's, a \"file\" #1 & 100%.txt", "/tmp/-x/--attach", "/tmp/\xC3\xA4 b,c.pdf"};
    return mail;
}

// The same mail as a client reads it: display names that need it quoted, so each recipient
// stays one address.
MailDraft hostileMailAsReceived() {
    MailDraft mail = hostileMail();
    mail.to[2] = "\"Doe, John\" <jd@example.org>";
    mail.to[3] = "\"Zo\xC3\xAB \\\"Z\\\"\" <z@example.org>";
    return mail;
}

MailDraft withoutAttachments(MailDraft mail) {
    mail.attachments.clear();
    return mail;
}

MailDraft withoutBcc(MailDraft mail) {
    mail.bcc.clear();
    return mail;
}

} // namespace

TEST(MailClientCommandTest, FamilyIsKnownByProgramNameOrApplicationId) {
    const std::pair<const char*, MailClientFamily> cases[] = {
        {"thunderbird", MailClientFamily::Thunderbird},
        {"thunderbird-esr", MailClientFamily::Thunderbird},
        {"thunderbird-bin", MailClientFamily::Thunderbird},
        {"betterbird", MailClientFamily::Thunderbird},
        {"icedove", MailClientFamily::Thunderbird},
        {"org.mozilla.Thunderbird", MailClientFamily::Thunderbird},
        {"net.thunderbird.Thunderbird", MailClientFamily::Thunderbird},
        {"eu.betterbird.Betterbird", MailClientFamily::Thunderbird},
        {"evolution", MailClientFamily::Evolution},
        {"org.gnome.Evolution", MailClientFamily::Evolution},
        {"claws-mail", MailClientFamily::ClawsMail},
        {"org.claws_mail.Claws-Mail", MailClientFamily::ClawsMail},
        {"sylpheed", MailClientFamily::Sylpheed},
        {"balsa", MailClientFamily::Other},
        {"geary", MailClientFamily::Other},
        {"kmail", MailClientFamily::Other},
        {"thunderbird-wrapper", MailClientFamily::Other},
        {"my-thunderbird", MailClientFamily::Other},
        {"", MailClientFamily::Other},
    };
    for (const auto& [client, family] : cases) EXPECT_EQ(mailClientFamily(client), family) << client;
}

TEST(MailClientCommandTest, DisplayNamesThatNeedItAreQuoted) {
    const std::pair<const char*, const char*> cases[] = {
        {"Doe, John <jd@example.org>", "\"Doe, John\" <jd@example.org>"},
        {"  John Q. Public   <jqp@example.org> ", "\"John Q. Public\" <jqp@example.org>"},
        {"a\\b \"c\" <x@example.org>", "\"a\\\\b \\\"c\\\"\" <x@example.org>"},
        {"Line\r\nbreak; <x@example.org>", "\"Line  break;\" <x@example.org>"},
        {"x <y> <z@example.org>", "\"x <y>\" <z@example.org>"},
        {"John Doe <jd@example.org>", "John Doe <jd@example.org>"},
        {"Zo\xC3\xAB \xC3\x9Cnal <z@example.org>", "Zo\xC3\xAB \xC3\x9Cnal <z@example.org>"},
        {"\"Doe, John\" <jd@example.org>", "\"Doe, John\" <jd@example.org>"},
        {"jd@example.org", "jd@example.org"},
        {"<jd@example.org>", "<jd@example.org>"},
        {"Doe, John", "Doe, John"},
        {"Doe, John <jd@example.org> trailing", "Doe, John <jd@example.org> trailing"},
        {"", ""},
    };
    for (const auto& [recipient, quoted] : cases) EXPECT_EQ(quotedRecipient(recipient), quoted) << recipient;
}

// Every family's arguments, read back as its client reads them, give the mail again: no text
// ended a value early, started a field, or became an option.
TEST(MailClientCommandTest, EveryAdapterCarriesHostileTextsWhole) {
    const std::tuple<MailClientFamily, MailDraft, MailDraft> cases[] = {
        {MailClientFamily::Thunderbird, hostileMail(), hostileMailAsReceived()},
        {MailClientFamily::Evolution, hostileMail(), hostileMailAsReceived()},
        {MailClientFamily::ClawsMail, hostileMail(), hostileMailAsReceived()},
        {MailClientFamily::Sylpheed, withoutBcc(hostileMail()), withoutBcc(hostileMailAsReceived())},
        {MailClientFamily::Other, withoutAttachments(hostileMail()), withoutAttachments(hostileMailAsReceived())},
        {MailClientFamily::Other, MailDraft{}, MailDraft{}},
        {MailClientFamily::Thunderbird, MailDraft{}, MailDraft{}},
    };
    for (const auto& [family, mail, received] : cases) {
        const MailClientCall call = mailClientCall(family, mail);
        ASSERT_EQ(call.refusal, MailResult::Success) << int(family);
        EXPECT_EQ(fields(fromArguments(family, call.arguments)), fields(received)) << int(family);
        for (const std::string& argument : call.arguments)
            EXPECT_TRUE(argument.rfind("-", 0) != 0 || argument == "-compose" || argument == "--compose" ||
                        argument == "--attach") << "an option of the tool's own making only: " << argument;
    }
}

// A client that would lose part of the mail gets nothing; empty recipients count as none.
TEST(MailClientCommandTest, MailsAClientWouldReduceAreRefused) {
    MailDraft attachment;
    attachment.attachments = {"/tmp/a.txt"};
    MailDraft blindCopy;
    blindCopy.bcc = {"", "b@example.org"};
    MailDraft emptyBlindCopy;
    emptyBlindCopy.bcc = {""};
    const std::tuple<MailClientFamily, MailDraft, int32_t> cases[] = {
        {MailClientFamily::Other, attachment, MailResult::NotSupported},
        {MailClientFamily::Sylpheed, blindCopy, MailResult::BadRecipientType},
        {MailClientFamily::Sylpheed, emptyBlindCopy, MailResult::Success},
        {MailClientFamily::Sylpheed, attachment, MailResult::Success},
        {MailClientFamily::Other, blindCopy, MailResult::Success},
    };
    for (const auto& [family, mail, refusal] : cases) {
        const MailClientCall call = mailClientCall(family, mail);
        EXPECT_EQ(call.refusal, refusal) << int(family);
        EXPECT_EQ(call.arguments.empty(), refusal != MailResult::Success) << int(family);
    }
}

// Header fields of a mailto URI are one line each; the body keeps its line breaks.
TEST(MailClientCommandTest, LineBreaksOfHeaderTextsBecomeBlanksInAMailtoURI) {
    MailDraft mail;
    mail.subject = "one\r\nBcc: spy@example.org";
    mail.to = {"a@example.org\nBcc: spy@example.org"};
    mail.note = "one\r\ntwo\n";
    EXPECT_EQ(mailtoURI(mail), "mailto:a%40example.org%20Bcc%3A%20spy%40example.org?subject=one%20%20Bcc%3A%20spy%40"
                               "example.org&body=one%0D%0Atwo%0A");
    EXPECT_EQ(mailtoURI(MailDraft{}), "mailto:");
}
