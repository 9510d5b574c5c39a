#include "RecordingMailClient.h"
#include "recordingClientFile.h"
#include "TemporaryFolder.h"
#include "mailClientArguments.h"

#include <zuno/MailResult.h>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <tuple>

// What only the Linux hand-off shows: hostile texts through every client family and
// launcher form, mails that cannot reach the client, exit statuses, clients that keep
// running, and mailer files that are not what they seem.

namespace fs = std::filesystem;
namespace MailResult = zuno::MailResult;
using zuno::percentEncode;
using zuno::posix::MailClientFamily;
using zuno::posix::MailDraft;
using Kind = RecordingMailClient::Kind;
using Strings = std::vector<std::string>;

namespace {

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

auto fields(const MailDraft& mail) {
    return std::tie(mail.subject, mail.note, mail.to, mail.cc, mail.bcc, mail.attachments);
}

class HandOffTest : public testing::Test {
protected:
    void use(Kind kind) { m_client = std::make_unique<RecordingMailClient>(m_folder.path(), kind); }
    std::string standIn(const char* name) const { return recordingClientFile(m_folder.path(), name); }

    std::string writeMailerFile(const MailDraft& mail, const std::string& name = "mail.xml") {
        Strings uris;
        for (const std::string& path : mail.attachments) uris.push_back("file://" + percentEncode(path, "/"));
        const std::string content = element("subject", escaped(mail.subject)) + element("note", escaped(mail.note)) +
                                    element("torecipients", elements("recipient", mail.to)) +
                                    element("ccrecipients", elements("recipient", mail.cc)) +
                                    element("bccrecipients", elements("recipient", mail.bcc)) +
                                    element("attachments", elements("attachment", uris));
        return m_folder.write(name, element("mailerfile", content));
    }

    int run(const std::string& path, const char* clientWaitMilliseconds = "60000") {
        auto environment = m_client->environment();
        environment["ZUNO_MAIL_CLIENT_WAIT_MS"] = clientWaitMilliseconds;
        return runMailer(m_client->mailerPath(), {path}, m_folder.path(), environment);
    }

    // Writes the mailer file for `mail` and runs the tool on it.
    int send(const MailDraft& mail, const char* clientWaitMilliseconds = "60000") {
        return run(writeMailerFile(mail), clientWaitMilliseconds);
    }

    TemporaryFolder m_folder;
    std::unique_ptr<RecordingMailClient> m_client;
};

// Texts that would end a value, start a field or an option, or be expanded by a shell.
MailDraft hostileMail(const TemporaryFolder& folder) {
    MailDraft mail;
    mail.subject = "-a, b = \"c\" 'd' \\e $(id) * & ? %41 \xC3\xA4";
    mail.note = "C:\\new\\cdir\\x\r\nand a comma, an equals sign = & ? %20 and 'quotes'\n--help\nlast line";
    mail.to = {"--attach=/etc/passwd", "-h", "Doe, John <john@example.org>"};
    mail.cc = {"x@y.org',attachment='file:///etc/passwd',bcc='"};
    mail.bcc = {"b@example.org"};
    mail.attachments = {folder.write("it's, a \"file\" #1.txt", "x"), folder.write("-x & 100%.txt", "y")};
    return mail;
}

// As the client reads it: the display name with a comma quoted, so it stays one address.
MailDraft asReceived(MailDraft mail) {
    mail.to[2] = "\"Doe, John\" <john@example.org>";
    return mail;
}

} // namespace

TEST_F(HandOffTest, HostileTextsArriveAsTheValuesOfTheirOwnFields) {
    for (const Kind kind : {Kind::Default, Kind::Other}) {
        use(kind);
        MailDraft mail = hostileMail(m_folder);
        if (kind == Kind::Other) mail.attachments.clear();
        ASSERT_EQ(send(mail), 0);
        const RecordedMail received = m_client->lastMail();
        EXPECT_EQ(fields(MailDraft{received.subject, received.note, received.to, received.cc, received.bcc,
                                   received.attachments}),
                  fields(asReceived(mail)));
        EXPECT_EQ(TemporaryFolder::read(standIn("tool-output")), "") << "the client's output must not reach the caller";
    }
}

// Every family under each of its names and launchers gets the mail in its own form; the
// arguments the launcher itself needs come first, untouched.
TEST_F(HandOffTest, EveryFamilyAndLauncherFormGetsTheWholeMail) {
    struct Case {
        const char* exec;
        const char* standIn;
        Strings launcher;  // what the stand-in receives before the mail
        MailClientFamily family;
    };
    const MailClientFamily thunderbird = MailClientFamily::Thunderbird;
    const Case cases[] = {
        {"thunderbird %u", "thunderbird", {}, thunderbird},
        {"%WORK%/.mailclient/bin/thunderbird-esr %u", "thunderbird-esr", {}, thunderbird},
        {"thunderbird-bin %u", "thunderbird-bin", {}, thunderbird},
        {"betterbird %u", "betterbird", {}, thunderbird},
        {"icedove %u", "icedove", {}, thunderbird},
        {"\"%WORK%/my mail/thunderbird\" %u", "%WORK%/my mail/thunderbird", {}, thunderbird},
        {"env MOZ_ENABLE_WAYLAND=1 LANG=C.UTF-8 thunderbird %u", "thunderbird", {}, thunderbird},
        {"flatpak run --branch=stable --arch=x86_64 --command=thunderbird --file-forwarding org.mozilla.Thunderbird "
         "@@u %u @@", "flatpak",
         {"run", "--branch=stable", "--arch=x86_64", "--command=thunderbird", "--file-forwarding",
          "org.mozilla.Thunderbird"}, thunderbird},
        {"snap run thunderbird %U", "snap", {"run", "thunderbird"}, thunderbird},
        {"evolution %U", "evolution", {}, MailClientFamily::Evolution},
        {"flatpak run org.gnome.Evolution %U", "flatpak", {"run", "org.gnome.Evolution"}, MailClientFamily::Evolution},
        {"claws-mail %u", "claws-mail", {}, MailClientFamily::ClawsMail},
        {"sylpheed %u", "sylpheed", {}, MailClientFamily::Sylpheed},
        {"balsa -m %U", "balsa", {"-m"}, MailClientFamily::Other},
        {"geary %U", "geary", {}, MailClientFamily::Other},
        {"othermail --thunderbird --new %u --last", "othermail", {"--thunderbird", "--new"}, MailClientFamily::Other},
    };
    use(Kind::Default);
    for (const Case& c : cases) {
        installRecordingClient(m_folder.path(), c.exec, c.standIn);
        MailDraft mail = hostileMail(m_folder);
        if (c.family == MailClientFamily::Sylpheed) mail.bcc.clear();
        if (c.family == MailClientFamily::Other) mail.attachments.clear();
        ASSERT_EQ(send(mail), 0) << c.exec;
        Strings args = recordedArguments(m_folder.path());
        ASSERT_GE(args.size(), c.launcher.size()) << c.exec;
        EXPECT_EQ(Strings(args.begin(), args.begin() + long(c.launcher.size())), c.launcher) << c.exec;
        args.erase(args.begin(), args.begin() + long(c.launcher.size()));
        if (std::string(c.exec).find("--last") != std::string::npos) {
            EXPECT_EQ(args.back(), "--last");
            args.pop_back();
        }
        EXPECT_EQ(fields(mailClientArguments::fromArguments(c.family, args)), fields(asReceived(mail))) << c.exec;
    }
}

// Attachments must be readable files, a client must be able to take every part of the mail,
// and a command line argument holds at most 128 KiB. The mailer file goes all the same.
TEST_F(HandOffTest, MailThatCannotReachTheClientStartsNothing) {
    const std::string present = m_folder.write("present.txt", "x");
    const std::string fifo = m_folder / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    struct Case {
        const char* exec;
        std::string attachment;
        Strings bcc;
        size_t noteSize;
        int result;
    };
    std::vector<Case> cases{
        {"thunderbird %u", m_folder / "missing.txt", {}, 0, MailResult::AttachmentNotFound},
        {"thunderbird %u", present + "/below", {}, 0, MailResult::AttachmentNotFound},
        {"thunderbird %u", m_folder.path(), {}, 0, MailResult::AttachmentOpenFailure},
        {"thunderbird %u", "/dev/null", {}, 0, MailResult::AttachmentOpenFailure},
        {"thunderbird %u", fifo, {}, 0, MailResult::AttachmentOpenFailure},
        {"thunderbird %u", present, {}, 200 * 1024, MailResult::TextTooLarge},
        {"othermail %u", present, {}, 0, MailResult::NotSupported},
        {"balsa -m %U", present, {}, 0, MailResult::NotSupported},
        {"sylpheed %u", present, {"b@example.org"}, 0, MailResult::BadRecipientType},
        {"%WORK%/nowhere/thunderbird %u", present, {}, 0, MailResult::NoMailClient},
    };
    if (geteuid() != 0)  // root reads any file
        cases.push_back({"thunderbird %u", m_folder.write("locked.txt", "secret", 0), {}, 0, 12});
    use(Kind::Default);
    for (const Case& c : cases) {
        const std::string program = std::string(c.exec).substr(0, std::string(c.exec).find(' '));
        const bool missing = program.find("nowhere") != std::string::npos;
        installRecordingClient(m_folder.path(), c.exec, missing ? "elsewhere" : program);
        MailDraft mail;
        mail.attachments = {present, c.attachment};
        mail.bcc = c.bcc;
        mail.note = std::string(c.noteSize, 'x');
        EXPECT_EQ(send(mail), c.result) << c.exec << " " << c.attachment;
        EXPECT_FALSE(fs::exists(m_folder / "mail.xml")) << "the mailer file goes all the same";
        EXPECT_FALSE(m_client->wasCalled()) << c.exec << " " << c.attachment;
    }
}

// Only success is told by a client's status: any other status, or a signal, is a failure.
TEST_F(HandOffTest, ExitStatusesBecomeSimpleMapiResults) {
    const std::pair<int, int> cases[] = {{0, MailResult::Success}, {1, MailResult::Failure},
                                         {2, MailResult::Failure}, {26, MailResult::Failure},
                                         {255, MailResult::Failure}, {-SIGTERM, MailResult::Failure},
                                         {-SIGKILL, MailResult::Failure}};
    for (const Kind kind : {Kind::Default, Kind::Other}) {
        use(kind);
        for (const auto& [status, result] : cases) {
            TemporaryFolder::writeFile(standIn("status"), std::to_string(status) + "\n");
            EXPECT_EQ(send({}), result) << "status " << status;
        }
    }
    // However long the wait may be, a client that ends is seen ending.
    TemporaryFolder::writeFile(standIn("status"), "1\n");
    EXPECT_EQ(send({}, "9223372036854775807"), MailResult::Failure);
}

// A client that was not running yet stays in the foreground until the user quits it; with
// no wait at all the tool does not even look.
TEST_F(HandOffTest, ClientThatKeepsRunningCountsAsSuccessAndIsLeftRunning) {
    for (const char* wait : {"100", "0"}) {
        use(Kind::Default);
        TemporaryFolder::writeFile(standIn("stall"), "");
        EXPECT_EQ(send({}, wait), 0);
        for (int i = 0; i < 3000 && TemporaryFolder::read(standIn("pid")).empty(); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        const pid_t stalled = std::atoi(TemporaryFolder::read(standIn("pid")).c_str());
        ASSERT_NE(stalled, 0) << "the client never started";
        EXPECT_EQ(getsid(stalled), stalled) << "the client runs on, in a session of its own";
        kill(stalled, SIGKILL);
    }
}

// The mailer file is found as the kernel finds it: through a link to a folder and then "..",
// it is the file beside the link's target that is read and deleted, not one beside the link.
TEST_F(HandOffTest, FileReadIsTheFileDeletedThroughLinksAndDotDot) {
    use(Kind::Default);
    fs::create_directories(m_folder / "elsewhere/inner");
    fs::create_directory_symlink(m_folder / "elsewhere/inner", m_folder / "link");
    MailDraft real, decoy;
    real.subject = "the real one";
    decoy.subject = "an unrelated file";
    writeMailerFile(real, "elsewhere/mail.xml");
    writeMailerFile(decoy, "mail.xml");
    ASSERT_EQ(run("link/../mail.xml"), 0);
    EXPECT_EQ(m_client->lastMail().subject, "the real one");
    EXPECT_FALSE(fs::exists(m_folder / "elsewhere/mail.xml")) << "the file read is deleted";
    EXPECT_TRUE(fs::exists(m_folder / "mail.xml")) << "the file beside the link is another one";

    // A link given as the file itself is removed, as rm would, and its target stays.
    writeMailerFile(real, "elsewhere/target.xml");
    fs::create_symlink(m_folder / "elsewhere/target.xml", m_folder / "file-link.xml");
    ASSERT_EQ(run(m_folder / "link/../../file-link.xml"), 0);
    EXPECT_FALSE(fs::exists(fs::symlink_status(m_folder / "file-link.xml")));
    EXPECT_TRUE(fs::exists(m_folder / "elsewhere/target.xml"));
}

// Only a regular file is read: a device would be read until memory runs out, a pipe would
// never end. Each is refused before reading, and nothing is printed.
TEST_F(HandOffTest, AnythingButARegularFileIsRefusedUnread) {
    use(Kind::Default);
    const std::string fifo = m_folder / "mail.fifo", socketPath = m_folder / "mail.socket";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(socketPath.size(), sizeof address.sun_path);
    socketPath.copy(address.sun_path, socketPath.size());
    ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    for (const std::string& path : {std::string("/dev/zero"), std::string("/dev/null"), fifo, socketPath,
                                    m_folder.path(), m_folder / "link-to-fifo"}) {
        if (path.find("link-to") != std::string::npos) fs::create_symlink(fifo, path);
        EXPECT_EQ(run(path), -2) << path;
        EXPECT_TRUE(fs::exists(fs::symlink_status(path))) << path;
    }
    close(listener);
    EXPECT_FALSE(m_client->wasCalled());
    EXPECT_EQ(TemporaryFolder::read(standIn("tool-output")), "");
}

// A file URI without a folder names a file in the current directory, which the client gets
// as a full path.
TEST_F(HandOffTest, RelativeFileURIsBecomeFullPaths) {
    use(Kind::Default);
    const std::string first = m_folder.write("a b.txt", "1"), second = m_folder.write("sub/c.txt", "2");
    m_folder.write("mail.xml", "<mailerfile><attachments><attachment>file:a%20b.txt</attachment>"
                               "<attachment>file:sub/../sub/c.txt</attachment></attachments></mailerfile>");
    ASSERT_EQ(run("mail.xml"), 0);
    const Strings attachments = m_client->lastMail().attachments;
    ASSERT_EQ(attachments.size(), 2u);
    EXPECT_EQ(attachments[0], first);
    EXPECT_EQ(fs::canonical(attachments[1]), fs::canonical(second));
    EXPECT_EQ(attachments[1].rfind(m_folder.path() + "/", 0), 0u) << attachments[1];
}

// Without a handler, or with one whose entry cannot start anything, there is no mail client.
TEST_F(HandOffTest, NoUsableMailtoHandlerIsMinusOne) {
    const std::pair<const char*, const char*> entries[] = {
        {"mimeapps.list", "[Default Applications]\nx-scheme-handler/mailto=absent.desktop\n"},
        {"mail-client.desktop", "[Desktop Entry]\nName=No command\n"},
        {"mail-client.desktop", "[Desktop Entry]\nExec=\"unclosed %u\n"},
        {"mail-client.desktop", "[Desktop Entry]\nExec=thunderbird %u\nHidden=true\n"},
    };
    for (const auto& [name, content] : entries) {
        use(Kind::Default);
        const std::string folder = std::string(name) == "mimeapps.list" ? ".config/" : ".local/share/applications/";
        TemporaryFolder::writeFile(standIn("home/") + folder + name, content);
        EXPECT_EQ(send({}), MailResult::NoMailClient) << content;
        EXPECT_FALSE(m_client->wasCalled());
    }
}
