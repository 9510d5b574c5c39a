#include "RecordingMailClient.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace fs = std::filesystem;

namespace {

using Kind = RecordingMailClient::Kind;
using Texts = std::vector<std::string>;

// A fresh folder per test, removed afterwards. Paths are UTF-8 text.
class MailerTest : public testing::Test {
protected:
    void SetUp() override {
        m_dir = fs::temp_directory_path() / ("mailer-test-" + std::string(testing::UnitTest::GetInstance()
                                                                              ->current_test_info()->name()));
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
    }
    void TearDown() override {
        m_client.reset();
        std::error_code ignored;
        fs::remove_all(m_dir, ignored);
    }

    RecordingMailClient& client(Kind kind = Kind::Default) {
        if (!m_client) m_client = std::make_unique<RecordingMailClient>(m_dir.u8string(), kind);
        return *m_client;
    }
    fs::path at(const std::string& name) const { return m_dir / fs::u8path(name); }
    bool exists(const std::string& name) const { return fs::exists(at(name)); }
    std::string write(const std::string& name, const std::string& content) {
        std::ofstream(at(name), std::ios::binary) << content;
        return at(name).u8string();
    }
    std::string writeMailerFile(const std::string& body, const std::string& name = "mail.xml") {
        return write(name, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<mailerfile>" + body + "</mailerfile>\n");
    }
    int run(const Texts& args) { return runMailer(client().mailerPath(), args, m_dir.u8string(), client().environment()); }

    fs::path m_dir;
    std::unique_ptr<RecordingMailClient> m_client;
};

// A file URI for a local path with blanks (and, on Windows, backslashes and a drive).
std::string fileURI(std::string path) {
    for (size_t at = 0; (at = path.find_first_of("\\ ", at)) != std::string::npos;)
        path.replace(at, 1, path[at] == ' ' ? "%20" : "/");
    return (path[0] == '/' ? "file://" : "file:///") + path;
}

} // namespace

TEST_F(MailerTest, RefusedCommandLinesAndFilesAreKeptAndNoClientStarts) {
    const std::string file = writeMailerFile("<subject>s</subject>");
    EXPECT_EQ(run({}), -1);
    EXPECT_EQ(run({file, file}), -1);
    EXPECT_EQ(run({at("missing.xml").u8string()}), -2);
    fs::create_directories(at("folder.xml"));
    EXPECT_EQ(run({at("folder.xml").u8string()}), -2);
    std::string deep = "<mailerfile><subject>s</subject>";
    while (deep.size() < 150000) deep += "<x>";  // deep enough to exhaust the XML parser's stack
    const std::pair<const char*, std::string> notMailerFiles[] = {
        {"case.xml", "<MailerFile><subject>s</subject></MailerFile>"},
        {"other.xml", "<?xml version=\"1.0\"?><!-- comment --><mail/>"},
        {"text.xml", "this is not XML at all"},
        {"empty.xml", ""},
        {"binary.xml", std::string("\0\xFF\xFE<\0m\0", 7)},
        {"deep.xml", deep},
        {"http.xml", "<mailerfile><attachments><attachment>http://h/x.pdf</attachment></attachments></mailerfile>"},
    };
    for (const auto& [name, content] : notMailerFiles) {
        EXPECT_EQ(run({write(name, content)}), -3) << name;
        EXPECT_TRUE(exists(name)) << name;
    }
    EXPECT_TRUE(exists("mail.xml"));
    EXPECT_FALSE(client().wasCalled());
}

// Besides a full mail: only the first of each element counts, names are case-sensitive, a list
// starts at its first "recipient" and takes every later sibling, and an element whose first
// child is not text yields empty text.
TEST_F(MailerTest, CompleteMailIsHandedOffAsTheFormatRulesPickItAndTheFileDeleted) {
    const std::string first = write("report one.txt", "1");
    const std::string second = write("b\xC3\xA4r.txt", "2");  // bär.txt
    const std::string file = writeMailerFile(
        "<subject lang=\"en\">Gr\xC3\xBC\xC3\x9F" "e &amp; more</subject><subject>second</subject><Subject>x</Subject>"
        "<note>Line one&#10;Line two\n  and   more</note><note>ignored</note>"
        "<torecipients><cc>skipped</cc><recipient>anna@example.org</recipient><cc>Zo\xC3\xAB &lt;zoe@example.org&gt;"
        "</cc></torecipients><torecipients><recipient>ignored</recipient></torecipients>"
        "<ccrecipients><recipient>cc@example.org</recipient></ccrecipients>"
        "<bccrecipients><recipient/><recipient><!-- comment -->ignored</recipient><recipient>  spaced   out  "
        "</recipient></bccrecipients><attachments><attachment>" + fileURI(first) + "</attachment><attachment>"
        + fileURI(second) + "</attachment></attachments>");
    EXPECT_EQ(run({file}), 0);
    EXPECT_FALSE(exists("mail.xml"));
    const RecordedMail mail = client().lastMail();
    EXPECT_EQ(mail.subject, "Gr\xC3\xBC\xC3\x9F" "e & more");
    EXPECT_EQ(mail.note, "Line one\nLine two and more") << "raw white space is condensed, &#10; is a line break";
    EXPECT_EQ(mail.to, (Texts{"anna@example.org", "Zo\xC3\xAB <zoe@example.org>"}));
    EXPECT_EQ(mail.cc, (Texts{"cc@example.org"}));
    EXPECT_EQ(mail.bcc, (Texts{"", "", "spaced out"}));
    EXPECT_EQ(mail.attachments, (Texts{first, second}));
}

TEST_F(MailerTest, ClientResultIsTheExitCodeAndTheFileIsDeletedWhateverItsName) {
    write("relative.xml", "<mailerfile/>");
    client().setResult(2);  // the client failed
    EXPECT_EQ(run({"relative.xml"}), 2);
    EXPECT_FALSE(exists("relative.xml"));
    const RecordedMail empty = client().lastMail();
    EXPECT_TRUE(empty.subject.empty() && empty.to.empty() && empty.cc.empty() && empty.bcc.empty());
    EXPECT_TRUE(empty.attachments.empty());

    client().setResult(0);
    std::string subject;
    for (int i = 0; i < 300; ++i) subject += "\xC3\xA4";  // ä, two bytes each in UTF-8
    const std::string name = "my mail \xC3\xA4\xC3\xB6 #1.xml";  // read-only, with blanks, umlauts and '#'
    const std::string file = writeMailerFile("<subject>" + subject + "</subject>", name);
    fs::permissions(at(name), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    EXPECT_EQ(run({file}), 0);
    EXPECT_FALSE(exists(name));
    EXPECT_EQ(client().lastMail().subject, subject.substr(0, 510)) << "cut to 255 characters";
}

TEST_F(MailerTest, NoMailClientIsMinusOneAndTheFileIsDeleted) {
    client(Kind::Missing);
    EXPECT_EQ(run({writeMailerFile("<subject>s</subject>")}), -1);
    EXPECT_FALSE(exists("mail.xml"));
}
