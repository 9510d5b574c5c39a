#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include "mail/posix/childProcess.h"
#include "mail/posix/mailClientCommand.h"
#include "text/percentEncoding.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace zuno;
using namespace zuno::posix;
using Arguments = std::vector<std::string>;

TEST(MailClientCommandTest, ThunderbirdFamilyIsKnownByProgramName) {
    for (const char* program : {"thunderbird", "/usr/lib/thunderbird/thunderbird", "betterbird", "/opt/icedove"})
        EXPECT_TRUE(isThunderbirdFamily(program)) << program;
    for (const char* program : {"", "evolution", "thunderbird-wrapper", "/usr/bin/thunderbird/", "Thunderbird",
                                "/opt/thunderbird/kmail"})
        EXPECT_FALSE(isThunderbirdFamily(program)) << program;
}

// xdg-email reads "--help", "--manual" and "--version" anywhere, and its echo takes "-n"
// (dash) or "-e", "-E" (bash) as options; a trailing blank keeps such a text a text.
TEST(MailClientCommandTest, XdgEmailTextsThatLookLikeOptionsGetATrailingBlank) {
    for (const char* text : {"--help", "--manual", "--version", "-n", "-e", "-E", "-neE", "-nn"})
        EXPECT_EQ(xdgEmailSafeText(text), std::string(text) + " ") << text;
    for (const char* text : {"", "-", "-h", "--attach", "--help me", " --help", "-x", "-ne-", "a-n", "--to"})
        EXPECT_EQ(xdgEmailSafeText(text), text) << text;
}

// The installed xdg-email itself, with the hook it offers for tests: the hook gets the
// mailto URL that xdg-email would open and prints it instead of starting a client.
TEST(MailClientCommandTest, InstalledXdgEmailTakesEveryTextAsAValue) {
    if (system("command -v xdg-email >/dev/null") != 0) GTEST_SKIP() << "xdg-email is not installed";
    TemporaryFolder folder;
    folder.write("bin/xdg-email-hook.sh", "#!/bin/sh\nprintf '%s' \"$1\"\n", 0755);
    ScopedEnvironment environment;
    environment.set("PATH", folder / "bin" + ":" + std::getenv("PATH"));
    MailDraft draft;
    draft.subject = "--version";
    draft.note = "-n";
    draft.to = {"--help", "", "--attach=/etc/passwd", "x@y.org',attachment='file:///etc/passwd',bcc='"};
    draft.cc = {"-h"};
    draft.bcc = {"--manual"};
    draft.attachments = {folder.write("a.txt", "x")};
    Arguments argv = xdgEmailArguments(draft);
    argv.insert(argv.begin(), "xdg-email");

    const std::optional<std::string> url = runForOutput(argv, std::chrono::milliseconds(30000));
    ASSERT_TRUE(url) << "xdg-email refused the arguments";
    ASSERT_EQ(url->rfind("mailto:?", 0), 0u) << *url;
    std::istringstream query(url->substr(8));
    Arguments fields;
    for (std::string field; std::getline(query, field, '&');) fields.push_back(percentDecode(field));
    EXPECT_EQ(fields, (Arguments{"subject=--version ", "body=-n ", "to=--help ", "to=--attach=/etc/passwd",
                                 "to=" + draft.to[3], "cc=-h", "bcc=--manual ", "attach=" + draft.attachments[0]}));
}
