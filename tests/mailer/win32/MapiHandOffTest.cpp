// What only the Simple MAPI hand-off shows: the exact fields MAPISendMail receives (the
// subject limit at its edge too), a MAPI32.DLL without MAPISendMail, and results beyond
// the positive range of a signed exit code.
#include "RecordingMailClient.h"
#include "mapiRecord.h"

#include <gtest/gtest.h>

#include <climits>
#include <fstream>
#include <tuple>

namespace fs = std::filesystem;

namespace {

using Kind = RecordingMailClient::Kind;

class MapiHandOff : public testing::Test {
protected:
    MapiHandOff() { fs::create_directories(m_dir); }
    ~MapiHandOff() override {
        std::error_code ignored;
        fs::remove_all(m_dir, ignored);
    }

    // Writes a file and answers its full path.
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream(m_dir / name, std::ios::binary) << content;
        return (m_dir / name).u8string();
    }

    int run(const RecordingMailClient& client, const std::string& mailerFileContent) const {
        const std::string file = write("mail.xml", "<mailerfile>" + mailerFileContent + "</mailerfile>");
        return runMailer(client.mailerPath(), {file}, m_dir.u8string(), client.environment());
    }

    const fs::path m_dir =
        fs::temp_directory_path() / ("zuno-mapi-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
};

std::string fileURI(const std::string& path) {
    std::string uri = "file:///";
    for (const char c : path) uri += c == '\\' ? "/" : c == ' ' ? "%20" : std::string(1, c);
    return uri;
}

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

} // namespace

TEST_F(MapiHandOff, fillsEverySimpleMapiField) {
    const std::string attachment = write("a b.txt", "A"), subject(255, 's');
    const std::vector<std::string> call = {"MAPISendMail", "0", "0", "9", "0", "set"};
    const auto bareMessage = [](const std::string& subjectText) {
        return std::vector<std::string>{"message", "0", quoted(subjectText), "\"\"", "null", "null", "null", "0",
                                        "null", "0", "null", "0", "null"};
    };
    const auto recipient = [](const char* recipientClass, const char* name) {
        return std::vector<std::string>{"recip", "0", recipientClass, quoted(name), "null", "0", "null"};
    };
    const std::pair<std::string, MapiRecord> cases[] = {
        {"", {call, bareMessage("")}},
        {"<subject>" + subject + "</subject>", {call, bareMessage(subject)}},
        {"<subject>" + subject + "!</subject>", {call, bareMessage(subject)}},
        {"<subject>Grüße</subject><note>See the attachments.</note>"
         "<torecipients><recipient>Ann &lt;ann@example.org&gt;</recipient><recipient>bob</recipient></torecipients>"
         "<ccrecipients><recipient>carol</recipient></ccrecipients>"
         "<bccrecipients><recipient>dave</recipient><recipient>Eve</recipient></bccrecipients><attachments>"
         "<attachment>" + fileURI(attachment) + "</attachment></attachments>",
         {call,
          {"message", "0", "\"Grüße\"", "\"See the attachments.\"", "null", "null", "null", "0", "null", "5", "set", "1", "set"},
          recipient("1", "Ann <ann@example.org>"), recipient("1", "bob"), recipient("2", "carol"),
          recipient("3", "dave"), recipient("3", "Eve"),
          {"file", "0", "0", "4294967295", quoted(attachment), quoted(attachment), "null"}}},
        // A file URI without a folder names a file in the current directory; MAPI gets its full path.
        {"<attachments><attachment>file:a%20b.txt</attachment></attachments>",
         {call, {"message", "0", "\"\"", "\"\"", "null", "null", "null", "0", "null", "0", "null", "1", "set"},
          {"file", "0", "0", "4294967295", quoted(attachment), quoted(attachment), "null"}}},
    };
    RecordingMailClient client(m_dir.u8string());
    for (const auto& [content, expected] : cases) {
        ASSERT_EQ(run(client, content), 0);
        EXPECT_EQ(readMapiRecord(fs::u8path(client.environment().at("ZUNO_TEST_MAPI_RECORD"))), expected);
    }
}

TEST_F(MapiHandOff, answersMinusTwoWithoutMapiSendMailAndOtherwiseTheSignedResult) {
    // MAPISendMail answers an unsigned 32-bit value; the exit code carries its bits.
    const std::tuple<Kind, int, int> cases[] = {
        {Kind::NoSendFunction, 0, -2}, {Kind::Default, -1, -1}, {Kind::Default, INT_MIN, INT_MIN}};
    for (const auto& [kind, result, expected] : cases) {
        RecordingMailClient client(m_dir.u8string(), kind);
        client.setResult(result);
        EXPECT_EQ(run(client, "<subject>Hello</subject>"), expected);
        EXPECT_EQ(client.wasCalled(), kind == Kind::Default);
        EXPECT_FALSE(fs::exists(m_dir / "mail.xml"));
    }
}
