// What only the Simple MAPI hand-off shows: the exact fields MAPISendMail receives, a
// MAPI32.DLL without MAPISendMail, the subject limit at its edge, and results beyond the
// positive range of a signed exit code.
#include "RecordingMailClient.h"
#include "mapiRecord.h"

#include <zuno/win32/windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

std::string hexText(const std::string& bytes) {
    static const char digits[] = "0123456789abcdef";
    std::string hex = "s:";
    for (const unsigned char c : bytes) {
        hex += digits[c >> 4];
        hex += digits[c & 0xF];
    }
    return hex;
}

std::string xmlEscaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '&': result += "&amp;"; break;
        default: result += c;
        }
    }
    return result;
}

// "file:///C:/dir/a%20b.txt" for C:\dir\a b.txt (the test folders hold no other
// characters that need escaping).
std::string fileURI(const fs::path& path) {
    std::string uri = "file:///";
    for (const char c : utf8FromWide(path.wstring())) {
        if (c == '\\') uri += '/';
        else if (c == ' ') uri += "%20";
        else uri += c;
    }
    return uri;
}

class MapiHandOff : public testing::Test {
protected:
    void SetUp() override {
        m_workDir = fs::temp_directory_path()
                    / ("zuno-mapi-" + std::to_string(GetCurrentProcessId()) + "-"
                       + testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(m_workDir);
        fs::create_directories(m_workDir);
    }

    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(m_workDir, ignored);
    }

    fs::path writeFile(const std::string& name, const std::string& content) const {
        const fs::path path = m_workDir / fs::u8path(name);
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    fs::path writeMailerFile(const std::string& children) const {
        return writeFile("mail.xml", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<mailerfile>" + children + "</mailerfile>");
    }

    int run(const RecordingMailClient& client, const fs::path& mailerFile) const {
        return runMailer(client.mailerPath(), {utf8FromWide(mailerFile.wstring())}, workDir(), client.environment());
    }

    std::map<std::string, std::string> record(const RecordingMailClient& client) const {
        return readMapiRecord(wideFromUTF8(client.environment().at("ZUNO_TEST_MAPI_RECORD")));
    }

    std::string workDir() const { return utf8FromWide(m_workDir.wstring()); }

private:
    fs::path m_workDir;
};

} // namespace

TEST_F(MapiHandOff, fillsEverySimpleMapiFieldOfTheMessage) {
    const fs::path firstFile = writeFile("a b.txt", "A");
    const fs::path secondFile = writeFile("c.txt", "C");
    const fs::path mailerFile = writeMailerFile(
        "<subject>Grüße</subject><note>See the attachments.</note>"
        "<torecipients><recipient>" + xmlEscaped("Ann <ann@example.org>") + "</recipient>"
        "<recipient>bob@example.org</recipient></torecipients>"
        "<ccrecipients><recipient>carol@example.org</recipient></ccrecipients>"
        "<bccrecipients><recipient>dave@example.org</recipient><recipient>Eve</recipient></bccrecipients>"
        "<attachments><attachment>" + fileURI(firstFile) + "</attachment>"
        "<attachment>" + fileURI(secondFile) + "</attachment></attachments>");
    RecordingMailClient client(workDir());

    ASSERT_EQ(run(client, mailerFile), 0);

    std::map<std::string, std::string> expected = {
        {"session", "0"}, {"uiParam", "0"}, {"flags", "9"}, {"reserved", "0"}, {"message", "set"},
        {"message.ulReserved", "0"},
        {"message.lpszSubject", hexText(ansiFromUTF8("Grüße"))},
        {"message.lpszNoteText", hexText("See the attachments.")},
        {"message.lpszMessageType", "null"}, {"message.lpszDateReceived", "null"},
        {"message.lpszConversationID", "null"}, {"message.flFlags", "0"}, {"message.lpOriginator", "null"},
        {"message.nRecipCount", "5"}, {"message.lpRecips", "set"},
        {"message.nFileCount", "2"}, {"message.lpFiles", "set"},
    };
    const std::pair<const char*, const char*> recipients[] = {
        {"1", "Ann <ann@example.org>"}, {"1", "bob@example.org"}, {"2", "carol@example.org"},
        {"3", "dave@example.org"}, {"3", "Eve"},
    };
    for (int i = 0; i < 5; ++i) {
        const std::string prefix = "recip." + std::to_string(i) + ".";
        expected[prefix + "ulReserved"] = "0";
        expected[prefix + "ulRecipClass"] = recipients[i].first;
        expected[prefix + "lpszName"] = hexText(recipients[i].second);
        expected[prefix + "lpszAddress"] = "null";
        expected[prefix + "ulEIDSize"] = "0";
        expected[prefix + "lpEntryID"] = "null";
    }
    const std::string files[] = {utf8FromWide(firstFile.wstring()), utf8FromWide(secondFile.wstring())};
    for (int i = 0; i < 2; ++i) {
        const std::string prefix = "file." + std::to_string(i) + ".";
        expected[prefix + "ulReserved"] = "0";
        expected[prefix + "flFlags"] = "0";
        expected[prefix + "nPosition"] = "4294967295";
        expected[prefix + "lpszPathName"] = hexText(ansiFromUTF8(files[i]));
        expected[prefix + "lpszFileName"] = hexText(ansiFromUTF8(files[i]));
        expected[prefix + "lpFileType"] = "null";
    }
    EXPECT_EQ(record(client), expected);
}

TEST_F(MapiHandOff, passesAnEmptyMailWithoutArrays) {
    RecordingMailClient client(workDir());

    ASSERT_EQ(run(client, writeMailerFile("")), 0);

    const auto fields = record(client);
    EXPECT_EQ(fields.at("message.lpszSubject"), "s:");
    EXPECT_EQ(fields.at("message.lpszNoteText"), "s:");
    EXPECT_EQ(fields.at("message.nRecipCount"), "0");
    EXPECT_EQ(fields.at("message.lpRecips"), "null");
    EXPECT_EQ(fields.at("message.nFileCount"), "0");
    EXPECT_EQ(fields.at("message.lpFiles"), "null");
    EXPECT_EQ(fields.at("flags"), "9");
}

TEST_F(MapiHandOff, answersMinusTwoForALibraryWithoutMapiSendMailAndStillRemovesTheFile) {
    RecordingMailClient client(workDir(), RecordingMailClient::Kind::NoSendFunction);
    const fs::path mailerFile = writeMailerFile("<subject>Hello</subject>");

    EXPECT_EQ(run(client, mailerFile), -2);
    EXPECT_FALSE(client.wasCalled());
    EXPECT_FALSE(fs::exists(mailerFile));
}

TEST_F(MapiHandOff, cutsTheSubjectAfter255Characters) {
    std::string digits;
    while (digits.size() < 256) digits += "0123456789";
    for (const size_t length : {255u, 256u}) {
        SCOPED_TRACE(length);
        RecordingMailClient client(workDir());
        ASSERT_EQ(run(client, writeMailerFile("<subject>" + digits.substr(0, length) + "</subject>")), 0);
        EXPECT_EQ(client.lastMail().subject, digits.substr(0, std::min<size_t>(length, 255)));
    }
}

TEST_F(MapiHandOff, passesMapiResultsOnAsSigned32BitExitCodes) {
    // MAPISendMail answers an unsigned 32-bit value; the exit code carries its bits.
    for (const int result : {-1, -2147483647 - 1}) {
        SCOPED_TRACE(result);
        RecordingMailClient client(workDir());
        client.setResult(result);
        EXPECT_EQ(run(client, writeMailerFile("")), result);
    }
}
