#include "RecordingMailClient.h"
#include "recordingClientFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <unistd.h>

// What only the Linux hand-off shows: the exact argument vectors the clients get, the
// attachment checks, xdg-email's statuses and clients that keep running.

namespace fs = std::filesystem;
using Kind = RecordingMailClient::Kind;
using Strings = std::vector<std::string>;

namespace {

std::string xmlEscaped(const std::string& text) {
    std::string escaped;
    for (char c : text) {
        switch (c) {
        case '&': escaped += "&amp;"; break;
        case '<': escaped += "&lt;"; break;
        case '>': escaped += "&gt;"; break;
        case '"': escaped += "&quot;"; break;
        case '\'': escaped += "&apos;"; break;
        case '\r': escaped += "&#13;"; break;  // raw line breaks would be condensed to blanks
        case '\n': escaped += "&#10;"; break;
        default: escaped += c;
        }
    }
    return escaped;
}

// The parts of a mail as the mailer file gives them; attachments are local paths.
struct Mail {
    std::string subject;
    std::string note;
    Strings to, cc, bcc, attachments;
};

class HandOffTest : public testing::Test {
protected:
    void SetUp() override {
        const auto* info = testing::UnitTest::GetInstance()->current_test_info();
        m_dir = (fs::temp_directory_path() / (std::string("mailer-handoff-") + info->name() + "-" + std::to_string(getpid()))).string();
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
    }
    void TearDown() override {
        m_client.reset();
        std::error_code ignored;
        fs::remove_all(m_dir, ignored);
    }

    RecordingMailClient& client(Kind kind = Kind::Default) {
        if (!m_client) m_client = std::make_unique<RecordingMailClient>(m_dir, kind);
        return *m_client;
    }

    std::string write(const std::string& name, const std::string& content) {
        const std::string path = m_dir + "/" + name;
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    static std::string recipients(const char* container, const Strings& names) {
        std::string xml = std::string("<") + container + ">";
        for (const std::string& name : names) xml += "<recipient>" + xmlEscaped(name) + "</recipient>";
        return xml + "</" + container + ">";
    }

    // Writes the mailer file and runs the tool on it.
    int send(const Mail& mail, std::map<std::string, std::string> extraEnvironment = {}) {
        std::string xml = "<mailerfile><subject>" + xmlEscaped(mail.subject) + "</subject><note>" +
                          xmlEscaped(mail.note) + "</note>" + recipients("torecipients", mail.to) +
                          recipients("ccrecipients", mail.cc) + recipients("bccrecipients", mail.bcc) + "<attachments>";
        for (const std::string& path : mail.attachments)
            xml += "<attachment>file://" + xmlEscaped(uriPath(path)) + "</attachment>";
        const std::string file = write("mail.xml", xml + "</attachments></mailerfile>");
        std::map<std::string, std::string> environment = client().environment();
        for (const auto& [name, value] : extraEnvironment) environment[name] = value;
        return runMailer(client().mailerPath(), {file}, m_dir, environment);
    }

    static std::string uriPath(const std::string& path) {
        static const char hex[] = "0123456789ABCDEF";
        std::string escaped;
        for (unsigned char c : path) {
            if (isalnum(c) || c == '/' || c == '.' || c == '-' || c == '_') escaped += char(c);
            else escaped += std::string("%") + hex[c >> 4] + hex[c & 15];
        }
        return escaped;
    }

    Strings arguments() const { return recordingClient::arguments(m_dir); }
    std::string toolOutput() const { return recordingClient::toolOutput(m_dir); }

    std::string m_dir;
    std::unique_ptr<RecordingMailClient> m_client;
};

// Texts that would end a value, start a field or an option if they were passed on raw.
Mail hostileMail(const std::string& dir) {
    Mail mail;
    mail.subject = "a, b = \"c\" 'd' \\e";
    mail.note = "C:\\new\\cdir\\x\r\nand a comma, an equals sign = and 'quotes'\nlast line";
    mail.to = {"--attach=/etc/passwd", "-h", "\"Doe, John\" <john@example.org>"};
    mail.cc = {"x@y.org',attachment='file:///etc/passwd',bcc='"};
    mail.bcc = {"--help"};
    const std::string attachment = dir + "/it's, a \"file\" #1.txt";
    std::ofstream(attachment) << "x";
    mail.attachments = {attachment};
    return mail;
}

} // namespace

TEST_F(HandOffTest, ThunderbirdGetsOneComposeListThatKeepsEveryTextAValue) {
    const Mail mail = hostileMail(m_dir);
    ASSERT_EQ(send(mail), 0);

    const Strings args = arguments();
    ASSERT_EQ(args.size(), 2u);
    EXPECT_EQ(args[0], "-compose");
    EXPECT_EQ(std::count(args[1].begin(), args[1].end(), '\''), 2) << "only the attachment list is quoted: " << args[1];
    EXPECT_EQ(std::count(args[1].begin(), args[1].end(), '='), 6) << "one per field: " << args[1];

    const RecordedMail received = client().lastMail();
    EXPECT_EQ(received.subject, mail.subject);
    EXPECT_EQ(received.note, mail.note);
    EXPECT_EQ(received.to, mail.to);
    EXPECT_EQ(received.cc, mail.cc);
    EXPECT_EQ(received.bcc, mail.bcc);
    EXPECT_EQ(received.attachments, mail.attachments);
    EXPECT_EQ(toolOutput(), "") << "the client's output must not reach the caller";
}

TEST_F(HandOffTest, OtherClientsGetXdgEmailWithEachTextBehindItsOption) {
    client(Kind::Other);
    Mail mail = hostileMail(m_dir);
    ASSERT_EQ(send(mail), 0);

    EXPECT_EQ(arguments(), (Strings{"--utf8",
                                    "--subject", mail.subject,
                                    "--body", mail.note,
                                    "--to", "--attach=/etc/passwd",
                                    "--to", "-h",
                                    "--to", mail.to[2],
                                    "--cc", mail.cc[0],
                                    "--bcc", "--help ",  // xdg-email would answer a bare "--help" itself
                                    "--attach", mail.attachments[0]}));
    EXPECT_FALSE(recordingClient::otherClientStartedDirectly(m_dir));
    EXPECT_EQ(toolOutput(), "");
}

TEST_F(HandOffTest, EmptyFieldsAreLeftOut) {
    client(Kind::Other);
    Mail mail;
    mail.to = {"", "a@example.org"};
    ASSERT_EQ(send(mail), 0);
    EXPECT_EQ(arguments(), (Strings{"--utf8", "--to", "a@example.org"}));
}

TEST_F(HandOffTest, AttachmentsMustBeReadableFilesBeforeAnythingStarts) {
    const std::string present = write("present.txt", "x");
    fs::create_directories(m_dir + "/folder");
    const std::pair<std::string, int> cases[] = {
        {m_dir + "/missing.txt", 11},
        {m_dir + "/present.txt/below", 11},
        {m_dir + "/folder", 12},
        {"/dev/null", 12},
    };
    for (const auto& [attachment, result] : cases) {
        Mail mail;
        mail.attachments = {present, attachment};
        EXPECT_EQ(send(mail), result) << attachment;
        EXPECT_FALSE(fs::exists(m_dir + "/mail.xml")) << "the mailer file goes all the same";
    }
    EXPECT_FALSE(client().wasCalled());
}

TEST_F(HandOffTest, UnreadableAttachmentIsTwelve) {
    if (geteuid() == 0) GTEST_SKIP() << "root reads every file";
    const std::string locked = write("locked.txt", "secret");
    fs::permissions(locked, fs::perms::none);
    Mail mail;
    mail.attachments = {locked};
    EXPECT_EQ(send(mail), 12);
    EXPECT_FALSE(client().wasCalled());
}

TEST_F(HandOffTest, XdgEmailStatusesBecomeSimpleMapiResults) {
    client(Kind::Other);
    const std::pair<int, int> cases[] = {{0, 0}, {1, 2}, {2, 11}, {3, 26}, {4, 2}, {5, 12}, {7, 2}, {-SIGKILL, 2}};
    for (const auto& [status, result] : cases) {
        recordingClient::setExitStatus(m_dir, status);
        EXPECT_EQ(send(Mail{}), result) << "status " << status;
    }
}

TEST_F(HandOffTest, ThunderbirdStatusIsPassedOnAndAKilledClientFails) {
    client();
    const std::pair<int, int> cases[] = {{0, 0}, {1, 1}, {26, 26}, {-SIGTERM, 2}};
    for (const auto& [status, result] : cases) {
        recordingClient::setExitStatus(m_dir, status);
        EXPECT_EQ(send(Mail{}), result) << "status " << status;
    }
}

// A client that was not running yet stays in the foreground until the user quits it.
TEST_F(HandOffTest, ClientThatKeepsRunningCountsAsSuccessAndIsLeftRunning) {
    for (const Kind kind : {Kind::Default, Kind::Other}) {
        m_client.reset();
        client(kind);
        recordingClient::makeStall(m_dir);
        EXPECT_EQ(send(Mail{}, {{"ZUNO_MAIL_CLIENT_WAIT_MS", "100"}}), 0);
        const pid_t stalled = recordingClient::stalledClient(m_dir);
        ASSERT_NE(stalled, 0) << "the client never started";
        EXPECT_EQ(kill(stalled, 0), 0) << "the tool returned while the client runs on";
        EXPECT_EQ(getsid(stalled), stalled) << "the client runs in a session of its own";
        kill(stalled, SIGKILL);
        EXPECT_EQ(toolOutput(), "");
    }
}

// A command line holds at most 128 KiB per argument: larger mails cannot reach a client.
TEST_F(HandOffTest, MailTooLargeForACommandLineIsTextTooLarge) {
    Mail mail;
    mail.to = {"someone@example.org"};
    mail.note = std::string(200 * 1024, 'x');
    EXPECT_EQ(send(mail), 18);
    EXPECT_FALSE(client().wasCalled());
    EXPECT_FALSE(fs::exists(m_dir + "/mail.xml"));
}

TEST_F(HandOffTest, MailTooLargeForXdgEmailIsTextTooLarge) {
    client(Kind::Other);
    Mail mail;
    mail.to = {"someone@example.org"};
    mail.note = std::string(200 * 1024, 'x');
    EXPECT_EQ(send(mail), 18);
    EXPECT_FALSE(client().wasCalled());
}
