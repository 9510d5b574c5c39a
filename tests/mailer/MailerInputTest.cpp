#include "CMailerFileReader.h"
#include "RecordingMailClient.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

// What the tool accepts as a mailer file at the edges: where the root must stand, the text's
// encoding, and the nesting bound.

namespace fs = std::filesystem;

namespace {

class MailerInputTest : public testing::Test {
protected:
    void SetUp() override {
        m_dir = fs::temp_directory_path() /
                ("mailer-input-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
        m_client = std::make_unique<RecordingMailClient>(m_dir.u8string());
    }
    void TearDown() override {
        m_client.reset();
        std::error_code ignored;
        fs::remove_all(m_dir, ignored);
    }

    std::string write(const std::string& name, const std::string& content) {
        std::ofstream(m_dir / name, std::ios::binary) << content;
        return (m_dir / name).u8string();
    }
    bool exists(const std::string& name) const { return fs::exists(m_dir / name); }
    int run(const std::string& file) {
        return runMailer(m_client->mailerPath(), {file}, m_dir.u8string(), m_client->environment());
    }

    fs::path m_dir;
    std::unique_ptr<RecordingMailClient> m_client;
};

// Elements nested `depth` deep, the root "mailerfile" counting as the first level.
std::string nestedMailerFile(size_t depth) {
    std::string open, close;
    for (size_t level = 1; level < depth; ++level) {
        open += "<x>";
        close += "</x>";
    }
    return "<mailerfile>" + open + close + "<subject>s</subject></mailerfile>";
}

} // namespace

// The XML parser reads past the end of a text that stops inside a UTF-8 sequence, so such
// text must never reach it; text in another encoding is not a mailer file either.
TEST_F(MailerInputTest, FileWhoseRootIsNotTheFirstElementOrWhoseTextIsNotUTF8IsRefusedAndKept) {
    const std::pair<const char*, std::string> refused[] = {
        {"second-root.xml", "<x/><mailerfile><subject>s</subject></mailerfile>"},
        {"text-ends-in-lead.xml", "<mailerfile><subject>ab\xE4"},
        {"name-ends-in-lead.xml", "<mailerfile><subject>s</subject><sub\xE4"},
        {"latin1.xml", "<mailerfile><subject>caf\xE9</subject></mailerfile>"},
        {"overlong.xml", "<mailerfile><subject>\xC0\xBC</subject></mailerfile>"},
        {"surrogate.xml", "<mailerfile><subject>\xED\xA0\x80</subject></mailerfile>"},
    };
    for (const auto& [name, content] : refused) {
        EXPECT_EQ(run(write(name, content)), -3) << name;
        EXPECT_TRUE(exists(name)) << name;
    }
    EXPECT_FALSE(m_client->wasCalled());

    const std::string withMark = write("mark.xml", "\xEF\xBB\xBF<mailerfile><subject>b\xC3\xA4r</subject></mailerfile>");
    EXPECT_EQ(run(withMark), 0) << "a byte order mark and well-formed UTF-8 are fine";
    EXPECT_EQ(m_client->lastMail().subject, "b\xC3\xA4r");
    EXPECT_FALSE(exists("mark.xml"));
}

TEST_F(MailerInputTest, NestingUpToTheBoundIsReadOneLevelMoreIsRefused) {
    const size_t bound = mailer::CMailerFileReader::MaxNestingDepth;
    EXPECT_EQ(run(write("at-bound.xml", nestedMailerFile(bound))), 0);
    EXPECT_EQ(m_client->lastMail().subject, "s");
    EXPECT_FALSE(exists("at-bound.xml"));
    EXPECT_EQ(run(write("past-bound.xml", nestedMailerFile(bound + 1))), -3);
    EXPECT_TRUE(exists("past-bound.xml"));
}

// Where wide characters take four bytes the note is kept in UTF-8 on its way, the other texts
// as wide text: both must come out alike, also when a character reference stands for a lone
// surrogate, which is not UTF-8.
TEST_F(MailerInputTest, NoteArrivesAsTheSameTextAsTheSubject) {
    for (const std::string text : {"b\xC3\xA4r \xF0\x9F\x98\x80", "a&#xD800;b", "&#xDFFF;"}) {
        const std::string file = write("note.xml", "<mailerfile><subject>" + text + "</subject><note>" + text +
                                                       "</note></mailerfile>");
        ASSERT_EQ(run(file), 0) << text;
        EXPECT_EQ(m_client->lastMail().note, m_client->lastMail().subject) << text;
        EXPECT_EQ(m_client->lastMail().note.find('\xED'), std::string::npos) << "no surrogate bytes: " << text;
    }
}

// CDATA keeps white space as written, but a line break is LF whichever way the file ends its
// lines; a NUL ends the text the parser reads.
TEST_F(MailerInputTest, LineBreaksArriveAsLineFeedsAndANulEndsTheText) {
    ASSERT_EQ(run(write("breaks.xml", "<mailerfile>\r\n<note><![CDATA[one\r\ntwo\rthree\n\nfour]]></note>"
                                      "</mailerfile>\r\n")),
              0);
    EXPECT_EQ(m_client->lastMail().note, "one\ntwo\nthree\n\nfour");
    ASSERT_EQ(run(write("zero-byte.xml", std::string("<mailerfile><subject>s</subject></mailerfile>\0<x>", 49))), 0);
    EXPECT_EQ(m_client->lastMail().subject, "s");
}
