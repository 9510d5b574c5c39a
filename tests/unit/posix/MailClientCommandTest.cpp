#include <zuno/posix/mailClientCommand.h>
#include <zuno/posix/percentEncoding.h>

#include <gtest/gtest.h>

using namespace zuno::posix;
using Arguments = std::vector<std::string>;

TEST(PercentEncodingTest, EncodesEveryByteButUnreservedAndKeptOnes) {
    const struct {
        std::string text;
        const char* keep;
        std::string encoded;
    } cases[] = {
        {"AZaz09-._~", "", "AZaz09-._~"},
        {"a b,c'd=e\"f", "", "a%20b%2Cc%27d%3De%22f"},
        {"line\r\nbreak\\tab\t", "", "line%0D%0Abreak%5Ctab%09"},
        {"x@y.org+%", "", "x%40y.org%2B%25"},
        {"Gr\xC3\xBC\xC3\x9F" "e", "", "Gr%C3%BC%C3%9Fe"},
        {std::string("nul\0byte", 8), "", "nul%00byte"},
        {"/dir/a b/c", "/", "/dir/a%20b/c"},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(percentEncode(c.text, c.keep), c.encoded) << c.text;
        EXPECT_EQ(percentDecode(c.encoded), c.text) << c.encoded;
    }
}

TEST(PercentEncodingTest, MalformedEscapesStayText) {
    EXPECT_EQ(percentDecode("100%"), "100%");
    EXPECT_EQ(percentDecode("%4"), "%4");
    EXPECT_EQ(percentDecode("%zz%41"), "%zzA");
    EXPECT_EQ(percentDecode("%c3%a4"), "\xC3\xA4");
}

TEST(MailClientCommandTest, FileURIsHoldNoQuoteCommaOrBlank) {
    EXPECT_EQ(fileURI("/tmp/plain.txt"), "file:///tmp/plain.txt");
    EXPECT_EQ(fileURI("/tmp/it's, a \"file\".txt"), "file:///tmp/it%27s%2C%20a%20%22file%22.txt");
    EXPECT_EQ(fileURI("/tmp/b\xC3\xA4r#1?.txt"), "file:///tmp/b%C3%A4r%231%3F.txt");
}

TEST(MailClientCommandTest, ThunderbirdFamilyIsKnownByProgramName) {
    for (const char* program : {"thunderbird", "/usr/bin/thunderbird", "/usr/lib/thunderbird/thunderbird", "betterbird",
                                "/opt/icedove/icedove"})
        EXPECT_TRUE(isThunderbirdFamily(program)) << program;
    for (const char* program : {"", "evolution", "thunderbird-wrapper", "/usr/bin/thunderbird/", "Thunderbird",
                                "/opt/thunderbird/kmail", "flatpak"})
        EXPECT_FALSE(isThunderbirdFamily(program)) << program;
}

TEST(MailClientCommandTest, ThunderbirdGetsOneComposeListWithEveryValueEncoded) {
    MailDraft draft;
    draft.subject = "Hello, \"world\"='x'";
    draft.note = "C:\\new\\cdir\r\nsecond line";
    draft.to = {"anna@example.org", "Doe <doe@example.org>"};
    draft.cc = {"x@y.org',attachment='file:///etc/passwd',bcc='"};
    draft.bcc = {"b@example.org"};
    draft.attachments = {"/tmp/a b.txt", "/tmp/it's,here.pdf"};
    EXPECT_EQ(thunderbirdArguments(draft),
              (Arguments{"-compose",
                         "to=anna%40example.org%2C%20Doe%20%3Cdoe%40example.org%3E,"
                         "cc=x%40y.org%27%2Cattachment%3D%27file%3A%2F%2F%2Fetc%2Fpasswd%27%2Cbcc%3D%27,"
                         "bcc=b%40example.org,"
                         "subject=Hello%2C%20%22world%22%3D%27x%27,"
                         "body=C%3A%5Cnew%5Ccdir%0D%0Asecond%20line,"
                         "attachment='file:///tmp/a%20b.txt,file:///tmp/it%27s%2Chere.pdf'"}));
}

TEST(MailClientCommandTest, ThunderbirdListLeavesEmptyFieldsOut) {
    MailDraft draft;
    EXPECT_EQ(thunderbirdArguments(draft), Arguments{"-compose"});
    draft.bcc = {"", "b@x.org"};
    draft.note = "n";
    EXPECT_EQ(thunderbirdArguments(draft), (Arguments{"-compose", "bcc=%2C%20b%40x.org,body=n"}))
        << "an empty recipient keeps its place in the list";
}

TEST(MailClientCommandTest, XdgEmailGetsEachTextBehindItsOption) {
    MailDraft draft;
    draft.subject = "S";
    draft.note = "line\nbreak";
    draft.to = {"a@x.org", "--attach=/etc/passwd"};
    draft.cc = {"-h"};
    draft.bcc = {"b@x.org"};
    draft.attachments = {"/tmp/one.txt", "/tmp/two words.txt"};
    EXPECT_EQ(xdgEmailArguments(draft),
              (Arguments{"--utf8", "--subject", "S", "--body", "line\nbreak", "--to", "a@x.org", "--to",
                         "--attach=/etc/passwd", "--cc", "-h", "--bcc", "b@x.org", "--attach", "/tmp/one.txt",
                         "--attach", "/tmp/two words.txt"}));
}

TEST(MailClientCommandTest, XdgEmailLeavesEmptyTextsOut) {
    MailDraft draft;
    EXPECT_EQ(xdgEmailArguments(draft), Arguments{"--utf8"});
    draft.to = {"", "a@x.org", ""};
    EXPECT_EQ(xdgEmailArguments(draft), (Arguments{"--utf8", "--to", "a@x.org"}));
}

TEST(MailClientCommandTest, TextsXdgEmailWouldReadAsOptionsGetATrailingBlank) {
    for (const char* text : {"--help", "--manual", "--version", "-n", "-e", "-E", "-neE", "-nn"})
        EXPECT_EQ(xdgEmailSafeText(text), std::string(text) + " ") << text;
    for (const char* text : {"", "-", "-h", "--attach", "--help me", " --help", "-x", "-ne-", "a-n", "--to"})
        EXPECT_EQ(xdgEmailSafeText(text), text) << text;

    MailDraft draft;
    draft.subject = "--version";
    draft.to = {"--help"};
    draft.note = "-n";
    EXPECT_EQ(xdgEmailArguments(draft),
              (Arguments{"--utf8", "--subject", "--version ", "--body", "-n ", "--to", "--help "}));
}

TEST(MailClientCommandTest, XdgEmailStatusesMapToSimpleMapiResults) {
    const std::pair<int, int32_t> cases[] = {{0, 0}, {1, 2},  {2, 11},   {3, 26},  {4, 2},
                                             {5, 12}, {6, 2}, {127, 2}, {255, 2}};
    for (const auto& [status, result] : cases) EXPECT_EQ(xdgEmailResult(status), result) << status;
}
