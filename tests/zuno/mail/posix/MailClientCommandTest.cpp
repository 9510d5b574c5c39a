#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include "mail/posix/childProcess.h"
#include "mail/posix/mailClientCommand.h"
#include "mail/posix/percentEncoding.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace zuno::posix;
using Arguments = std::vector<std::string>;

TEST(PercentEncodingTest, EncodesEveryByteButUnreservedAndKeptOnes) {
    const std::tuple<std::string, const char*, std::string> cases[] = {
        {"AZaz09-._~", "", "AZaz09-._~"},
        {"a b,c'd=e\"f\r\n\\@+%", "", "a%20b%2Cc%27d%3De%22f%0D%0A%5C%40%2B%25"},
        {std::string("Gr\xC3\xBC\xC3\x9F" "e\0", 8), "", "Gr%C3%BC%C3%9Fe%00"},
        {"/dir/a b/c", "/", "/dir/a%20b/c"},
    };
    for (const auto& [text, keep, encoded] : cases) {
        EXPECT_EQ(percentEncode(text, keep), encoded) << text;
        EXPECT_EQ(percentDecode(encoded), text) << encoded;
    }
    for (const char* malformed : {"100%", "%4", "%zz"}) EXPECT_EQ(percentDecode(malformed), malformed);
    EXPECT_EQ(percentDecode("%zz%41%c3%a4"), "%zzA\xC3\xA4");
}

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
