#include "RecordingMailClient.h"
#include "recordingClientFile.h"
#include "../../unit/posix/TemporaryFolder.h"

#include <zuno/posix/percentEncoding.h>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <thread>
#include <tuple>

// What only the Linux hand-off shows: hostile texts through each kind of client, the
// attachment checks, exit statuses, clients that keep running and mails too large to pass.

namespace fs = std::filesystem;
using Kind = RecordingMailClient::Kind;
using Strings = std::vector<std::string>;

namespace {

const Kind BothKinds[] = {Kind::Default, Kind::Other};

std::string xmlText(const std::string& text) {
    std::string xml;
    for (char c : text)
        xml += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '\n' ? "&#10;" : c == '\r' ? "&#13;" : std::string(1, c);
    return xml;
}

RecordedMail withAttachments(const Strings& paths) {
    RecordedMail mail;
    mail.attachments = paths;
    return mail;
}

auto fields(const RecordedMail& mail) {
    return std::tie(mail.subject, mail.note, mail.to, mail.cc, mail.bcc, mail.attachments);
}

class HandOffTest : public testing::Test {
protected:
    void use(Kind kind) { m_client = std::make_unique<RecordingMailClient>(m_folder.path(), kind); }
    std::string standIn(const char* name) const { return recordingClientFile(m_folder.path(), name); }

    // Writes the mailer file for `mail` and runs the tool on it.
    int send(const RecordedMail& mail, const char* clientWaitMilliseconds = "60000") {
        std::string xml = "<mailerfile><subject>" + xmlText(mail.subject) + "</subject><note>" + xmlText(mail.note) +
                          "</note>";
        const std::pair<std::string, const Strings*> lists[] = {
            {"torecipients", &mail.to}, {"ccrecipients", &mail.cc}, {"bccrecipients", &mail.bcc}};
        for (const auto& [list, names] : lists) {
            xml += "<" + list + ">";
            for (const std::string& name : *names) xml += "<recipient>" + xmlText(name) + "</recipient>";
            xml += "</" + list + ">";
        }
        xml += "<attachments>";
        for (const std::string& path : mail.attachments)
            xml += "<attachment>file://" + zuno::posix::percentEncode(path, "/") + "</attachment>";
        const std::string file = m_folder.write("mail.xml", xml + "</attachments></mailerfile>");
        auto environment = m_client->environment();
        environment["ZUNO_MAIL_CLIENT_WAIT_MS"] = clientWaitMilliseconds;
        return runMailer(m_client->mailerPath(), {file}, m_folder.path(), environment);
    }

    TemporaryFolder m_folder;
    std::unique_ptr<RecordingMailClient> m_client;
};

} // namespace

// Texts that would end a value, start a field or an option, or be expanded by a shell.
TEST_F(HandOffTest, HostileTextsArriveAsTheValuesOfTheirOwnFields) {
    RecordedMail mail;
    mail.subject = "a, b = \"c\" 'd' \\e $(id) *";
    mail.note = "C:\\new\\cdir\\x\r\nand a comma, an equals sign = and 'quotes'\nlast line";
    mail.to = {"--attach=/etc/passwd", "-h", "Doe <john@example.org>"};
    mail.cc = {"x@y.org',attachment='file:///etc/passwd',bcc='"};
    mail.bcc = {"b@example.org"};
    mail.attachments = {m_folder.write("it's, a \"file\" #1.txt", "x")};
    for (const Kind kind : BothKinds) {
        use(kind);
        ASSERT_EQ(send(mail), 0);
        EXPECT_EQ(fields(m_client->lastMail()), fields(mail));
        EXPECT_EQ(TemporaryFolder::read(standIn("tool-output")), "") << "the client's output must not reach the caller";
    }
}

TEST_F(HandOffTest, AttachmentsMustBeReadableFilesBeforeAnythingStarts) {
    use(Kind::Default);
    const std::string present = m_folder.write("present.txt", "x");
    std::vector<std::pair<std::string, int>> cases{
        {m_folder / "missing.txt", 11}, {present + "/below", 11}, {m_folder.path(), 12}, {"/dev/null", 12}};
    if (geteuid() != 0) cases.emplace_back(m_folder.write("locked.txt", "secret", 0), 12);  // root reads any file
    for (const auto& [attachment, result] : cases) {
        EXPECT_EQ(send(withAttachments({present, attachment})), result) << attachment;
        EXPECT_FALSE(fs::exists(m_folder / "mail.xml")) << "the mailer file goes all the same";
    }
    EXPECT_FALSE(m_client->wasCalled());
}

// Thunderbird's status is passed on; xdg-email's statuses are mapped; a killed client fails.
TEST_F(HandOffTest, ExitStatusesBecomeSimpleMapiResults) {
    const std::tuple<Kind, int, int> cases[] = {
        {Kind::Default, 0, 0}, {Kind::Default, 1, 1}, {Kind::Default, 26, 26}, {Kind::Default, -SIGTERM, 2},
        {Kind::Other, 0, 0},   {Kind::Other, 1, 2},   {Kind::Other, 2, 11},    {Kind::Other, 3, 26},
        {Kind::Other, 4, 2},   {Kind::Other, 5, 12},  {Kind::Other, 7, 2},     {Kind::Other, -SIGKILL, 2}};
    for (const auto& [kind, status, result] : cases) {
        use(kind);
        TemporaryFolder::writeFile(standIn("status"), std::to_string(status) + "\n");
        EXPECT_EQ(send({}), result) << "status " << status << (kind == Kind::Other ? " of xdg-email" : "");
    }
}

// A client that was not running yet stays in the foreground until the user quits it.
TEST_F(HandOffTest, ClientThatKeepsRunningCountsAsSuccessAndIsLeftRunning) {
    for (const Kind kind : BothKinds) {
        use(kind);
        TemporaryFolder::writeFile(standIn("stall"), "");
        EXPECT_EQ(send({}, "100"), 0);
        for (int i = 0; i < 3000 && TemporaryFolder::read(standIn("pid")).empty(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        const pid_t stalled = std::atoi(TemporaryFolder::read(standIn("pid")).c_str());
        ASSERT_NE(stalled, 0) << "the client never started";
        EXPECT_EQ(getsid(stalled), stalled) << "the client runs on, in a session of its own";
        kill(stalled, SIGKILL);
    }
}

// A command line holds at most 128 KiB per argument: larger mails cannot reach a client.
TEST_F(HandOffTest, MailTooLargeForACommandLineIsTextTooLarge) {
    RecordedMail mail;
    mail.note = std::string(200 * 1024, 'x');
    for (const Kind kind : BothKinds) {
        use(kind);
        EXPECT_EQ(send(mail), 18);
        EXPECT_FALSE(m_client->wasCalled());
    }
}
