#include "RecordingMailClient.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

// A fresh folder per test, removed afterwards.
class MailerTest : public testing::Test {
protected:
    void SetUp() override {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        m_dir = fs::temp_directory_path() / (std::string("mailer-test-") + info->name());
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
    }
    void TearDown() override {
        m_client.reset();
        std::error_code ignored;
        fs::permissions(m_dir, fs::perms::owner_all, fs::perm_options::add, ignored);
        fs::remove_all(m_dir, ignored);
    }

    RecordingMailClient& client(RecordingMailClient::Kind kind = RecordingMailClient::Kind::Default) {
        if (!m_client) m_client = std::make_unique<RecordingMailClient>(utf8(m_dir), kind);
        return *m_client;
    }

    static std::string utf8(const fs::path& path) {
        const auto text = path.u8string();
        return std::string(text.begin(), text.end());
    }

    fs::path pathOf(const std::string& name) const { return m_dir / fs::u8path(name); }

    // Writes a file (UTF-8 content) and answers its full path as UTF-8.
    std::string write(const std::string& name, const std::string& content) {
        std::ofstream(pathOf(name), std::ios::binary) << content;
        return utf8(pathOf(name));
    }

    std::string writeMailerFile(const std::string& body, const std::string& name = "mail.xml") {
        return write(name, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<mailerfile>" + body + "</mailerfile>\n");
    }

    bool exists(const std::string& name) const { return fs::exists(pathOf(name)); }

    int run(const std::vector<std::string>& args) {
        return runMailer(client().mailerPath(), args, utf8(m_dir), client().environment());
    }

    // A file URI for a local path, escaped as the mailer expects.
    static std::string fileURI(const std::string& path) {
        std::string uri = path[0] == '/' ? "file://" : "file:///";
        for (char c : path) {
            if (c == '\\') uri += '/';
            else if (c == ' ') uri += "%20";
            else if (c == '%') uri += "%25";
            else if (c == '#') uri += "%23";
            else uri += c;
        }
        return uri;
    }

    fs::path m_dir;
    std::unique_ptr<RecordingMailClient> m_client;
};

using Kind = RecordingMailClient::Kind;

} // namespace

TEST_F(MailerTest, WrongArgumentCountIsMinusOneAndTouchesNothing) {
    const std::string file = writeMailerFile("<subject>s</subject>");
    EXPECT_EQ(run({}), -1);
    EXPECT_EQ(run({file, file}), -1);
    EXPECT_TRUE(exists("mail.xml"));
    EXPECT_FALSE(client().wasCalled());
}

TEST_F(MailerTest, UnreadableFileIsMinusTwo) {
    EXPECT_EQ(run({utf8(pathOf("missing.xml"))}), -2);
    fs::create_directories(pathOf("folder.xml"));
    EXPECT_EQ(run({utf8(pathOf("folder.xml"))}), -2);
    EXPECT_FALSE(client().wasCalled());
}

TEST_F(MailerTest, FileThatIsNoMailerFileIsMinusThreeAndKept) {
    const std::pair<const char*, std::string> cases[] = {
        {"case.xml", "<MailerFile><subject>s</subject></MailerFile>"},
        {"other.xml", "<?xml version=\"1.0\"?><!-- comment --><mail/>"},
        {"text.xml", "this is not XML at all"},
        {"empty.xml", ""},
        {"binary.xml", std::string("\0\xFF\xFE<\0m\0", 7)},
    };
    for (const auto& [name, content] : cases) {
        const std::string path = write(name, content);
        EXPECT_EQ(run({path}), -3) << name;
        EXPECT_TRUE(exists(name)) << name;
    }
    EXPECT_FALSE(client().wasCalled());
}

// Nesting deep enough to exhaust the XML parser's stack is refused, not parsed.
TEST_F(MailerTest, DeeplyNestedMailerFileIsRefusedWithoutCrashing) {
    std::string deep;
    for (int i = 0; i < 50000; ++i) deep += "<x>";
    const std::string path = writeMailerFile("<subject>s</subject>" + deep);
    EXPECT_EQ(run({path}), -3);
    EXPECT_TRUE(exists("mail.xml"));
}

TEST_F(MailerTest, CompleteMailIsHandedOffAndTheFileDeleted) {
    const std::string first = write("report one.txt", "1");
    const std::string second = write("b\xC3\xA4r.txt", "2");  // bär.txt
    const std::string file = writeMailerFile(
        "<subject>Gr\xC3\xBC\xC3\x9F" "e &amp; more</subject>"
        "<note>Line one&#10;Line two\n  and   more</note>"
        "<torecipients><recipient>anna@example.org</recipient><recipient>Zo\xC3\xAB &lt;zoe@example.org&gt;</recipient></torecipients>"
        "<ccrecipients><recipient>cc@example.org</recipient></ccrecipients>"
        "<bccrecipients><recipient>b1@example.org</recipient><recipient>b2@example.org</recipient></bccrecipients>"
        "<attachments><attachment>" + fileURI(first) + "</attachment><attachment>" + fileURI(second) +
        "</attachment></attachments>");
    EXPECT_EQ(run({file}), 0);
    EXPECT_FALSE(exists("mail.xml"));
    ASSERT_TRUE(client().wasCalled());
    const RecordedMail mail = client().lastMail();
    EXPECT_EQ(mail.subject, "Gr\xC3\xBC\xC3\x9F" "e & more");
    EXPECT_EQ(mail.note, "Line one\nLine two and more") << "raw white space is condensed, &#10; is a line break";
    EXPECT_EQ(mail.to, (std::vector<std::string>{"anna@example.org", "Zo\xC3\xAB <zoe@example.org>"}));
    EXPECT_EQ(mail.cc, (std::vector<std::string>{"cc@example.org"}));
    EXPECT_EQ(mail.bcc, (std::vector<std::string>{"b1@example.org", "b2@example.org"}));
    EXPECT_EQ(mail.attachments, (std::vector<std::string>{first, second}));
}

TEST_F(MailerTest, EmptyMailerFileHandsOffAnEmptyMail) {
    const std::string file = write("mail.xml", "<mailerfile/>");
    EXPECT_EQ(run({file}), 0);
    EXPECT_FALSE(exists("mail.xml"));
    ASSERT_TRUE(client().wasCalled());
    const RecordedMail mail = client().lastMail();
    EXPECT_EQ(mail.subject, "");
    EXPECT_TRUE(mail.to.empty() && mail.cc.empty() && mail.bcc.empty() && mail.attachments.empty());
}

TEST_F(MailerTest, FormatRulesPickElementsAsDocumented) {
    const std::string file = writeMailerFile(
        "<subject lang=\"en\">first</subject><subject>second</subject>"
        "<note><!-- a comment first -->ignored</note>"
        "<torecipients><recipient>a</recipient><cc>b</cc><recipient>c</recipient></torecipients>"
        "<torecipients><recipient>ignored</recipient></torecipients>"
        "<ccrecipients><cc>skipped</cc><recipient>d</recipient></ccrecipients>"
        "<bccrecipients><recipient/><recipient>  spaced   out  </recipient></bccrecipients>"
        "<Subject>wrong case</Subject>");
    EXPECT_EQ(run({file}), 0);
    const RecordedMail mail = client().lastMail();
    EXPECT_EQ(mail.subject, "first");
    EXPECT_EQ(mail.note, "") << "an element whose first child is not text yields empty text";
    EXPECT_EQ(mail.to, (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(mail.cc, (std::vector<std::string>{"d"}));
    EXPECT_EQ(mail.bcc, (std::vector<std::string>{"", "spaced out"})) << "white space is condensed";
}

TEST_F(MailerTest, LongSubjectIsCutTo255Characters) {
    std::string subject;
    for (int i = 0; i < 300; ++i) subject += "\xC3\xA4";  // ä, two bytes each in UTF-8
    const std::string file = writeMailerFile("<subject>" + subject + "</subject>");
    EXPECT_EQ(run({file}), 0);
    EXPECT_EQ(client().lastMail().subject, subject.substr(0, 510));
}

TEST_F(MailerTest, ClientResultBecomesTheExitCodeAndTheFileIsStillDeleted) {
    client().setResult(1);  // the user cancelled
    const std::string file = writeMailerFile("<subject>s</subject>");
    EXPECT_EQ(run({file}), 1);
    EXPECT_FALSE(exists("mail.xml"));
}

TEST_F(MailerTest, NoMailClientIsMinusOneAndTheFileIsDeleted) {
    client(Kind::Missing);
    const std::string file = writeMailerFile("<subject>s</subject>");
    EXPECT_EQ(run({file}), -1);
    EXPECT_FALSE(exists("mail.xml"));
}

TEST_F(MailerTest, RelativeAndUnusualPathsAreRemovedToo) {
    writeMailerFile("<subject>s</subject>", "relative.xml");
    EXPECT_EQ(run({"relative.xml"}), 0);
    EXPECT_FALSE(exists("relative.xml"));

    const std::string name = "my mail \xC3\xA4\xC3\xB6 #1.xml";  // blanks, umlauts, '#'
    const std::string file = writeMailerFile("<subject>s</subject>", name);
    EXPECT_EQ(run({file}), 0);
    EXPECT_FALSE(exists(name));
}

TEST_F(MailerTest, ReadOnlyMailerFileIsRemoved) {
    const std::string file = writeMailerFile("<subject>s</subject>");
    fs::permissions(pathOf("mail.xml"), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    EXPECT_EQ(run({file}), 0);
    EXPECT_FALSE(exists("mail.xml"));
}

TEST_F(MailerTest, AttachmentThatIsNoLocalFileRefusesTheFile) {
    const std::string file =
        writeMailerFile("<attachments><attachment>http://example.org/x.pdf</attachment></attachments>");
    EXPECT_EQ(run({file}), -3);
    EXPECT_TRUE(exists("mail.xml"));
    EXPECT_FALSE(client().wasCalled());
}
