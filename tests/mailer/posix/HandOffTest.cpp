#include "RecordingMailClient.h"
#include "recordingClientFile.h"
#include "TemporaryFolder.h"

#include "text/percentEncoding.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <thread>
#include <tuple>

// What only the Linux hand-off shows: hostile texts through each kind of client, mails that
// cannot reach it, exit statuses and clients that keep running.

namespace fs = std::filesystem;
using zuno::percentEncode;
using Kind = RecordingMailClient::Kind;
using Strings = std::vector<std::string>;

namespace {

const Kind BothKinds[] = {Kind::Default, Kind::Other};

// Escaped for XML, line breaks too, which raw would be condensed to blanks.
std::string escaped(const std::string& text) {
    std::string xml;
    for (char c : text)
        xml += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '\n' ? "&#10;" : c == '\r' ? "&#13;" : std::string(1, c);
    return xml;
}

std::string element(const std::string& name, const std::string& xml) {
    return "<" + name + ">" + xml + "</" + name + ">";
}

std::string elements(const std::string& name, const Strings& texts) {
    std::string xml;
    for (const std::string& text : texts) xml += element(name, escaped(text));
    return xml;
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
        Strings uris;
        for (const std::string& path : mail.attachments) uris.push_back("file://" + percentEncode(path, "/"));
        const std::string file = m_folder.write(
            "mail.xml", element("mailerfile", element("subject", escaped(mail.subject)) +
                                                  element("note", escaped(mail.note)) +
                                                  element("torecipients", elements("recipient", mail.to)) +
                                                  element("ccrecipients", elements("recipient", mail.cc)) +
                                                  element("bccrecipients", elements("recipient", mail.bcc)) +
                                                  element("attachments", elements("attachment", uris))));
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

// Attachments must be readable files, and a command line argument holds at most 128 KiB.
TEST_F(HandOffTest, MailThatCannotReachTheClientStartsNothing) {
    const std::string present = m_folder.write("present.txt", "x");
    std::vector<std::tuple<std::string, size_t, int>> cases{{m_folder / "missing.txt", 0, 11},
        {present + "/below", 0, 11}, {m_folder.path(), 0, 12}, {"/dev/null", 0, 12}, {present, 200 * 1024, 18}};
    if (geteuid() != 0) cases.emplace_back(m_folder.write("locked.txt", "secret", 0), 0, 12);  // root reads any file
    for (const Kind kind : BothKinds) {
        use(kind);
        for (const auto& [attachment, noteSize, result] : cases) {
            RecordedMail mail;
            mail.attachments = {present, attachment};
            mail.note = std::string(noteSize, 'x');
            EXPECT_EQ(send(mail), result) << attachment;
            EXPECT_FALSE(fs::exists(m_folder / "mail.xml")) << "the mailer file goes all the same";
        }
        EXPECT_FALSE(m_client->wasCalled());
    }
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
