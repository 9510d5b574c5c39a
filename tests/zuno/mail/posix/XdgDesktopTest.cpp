#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <zuno/CMail.h>
#include "mail/posix/xdgDesktop.h"

#include <gtest/gtest.h>

using namespace zuno::posix;
using Strings = std::vector<std::string>;

TEST(XdgDesktopTest, ExecProgramIsTheFirstWordOfTheMainGroup) {
    const std::pair<std::string, std::string> cases[] = {
        {"[Desktop Entry]\nName=Mail\nExec=thunderbird %u\n", "thunderbird"},
        {"[Desktop Entry]\r\nExec = /usr/bin/betterbird -mail %u\r\n", "/usr/bin/betterbird"},
        {"[Desktop Entry]\nExec=\"/opt/my mail/client\" --compose %u\n", "/opt/my mail/client"},
        {"[Desktop Entry]\nExec=\"/opt/a\\\\\\\\b \\\\\"q\\\\\"\" %u\n", "/opt/a\\b \"q\""},
        {"[Desktop Entry]\nExec=/opt/my\\sclient %u\n", "/opt/my"},  // \s is a blank, which separates words
        {"[Desktop Entry]\nExec=env GDK_BACKEND=x11 LANG=C icedove %u\n", "icedove"},
        {"[Desktop Entry]\nExec=/usr/bin/env thunderbird\n", "thunderbird"},
        {"[Desktop Action compose]\nExec=other\n[Desktop Entry]\nExec=mutt\n", "mutt"},
        {"[Desktop Entry]\nExec=mutt\n[Desktop Action compose]\nExec=other\n", "mutt"},
        {"# comment\n[Desktop Entry]\nTryExec=evolution\nExec[de]=wrong\nExec=evolution %U\n", "evolution"},
        {"[Desktop Entry]\nName=No command\n", ""},
        {"Exec=outside any group\n", ""},
        {"[Desktop Entry]\nExec=\n", ""},
        {"[Desktop Entry]\nExec=env\n", ""},
    };
    for (const auto& [entry, program] : cases) EXPECT_EQ(desktopEntryProgram(entry), program) << entry;
}

TEST(XdgDesktopTest, DataFoldersFollowTheEnvironment) {
    ScopedEnvironment environment;
    environment.set("HOME", "/home/someone");
    environment.set("XDG_DATA_HOME", "/data/home");
    environment.set("XDG_DATA_DIRS", "/one:relative::/two");
    EXPECT_EQ(xdgDataFolders(), (Strings{"/data/home", "/one", "/two"}));
    environment.set("XDG_DATA_HOME", "not/absolute");
    environment.set("XDG_DATA_DIRS", "");
    EXPECT_EQ(xdgDataFolders(), (Strings{"/home/someone/.local/share", "/usr/local/share", "/usr/share"}));
}

// The default mailto handler comes from xdg-mime, which reads the user's mimeapps.list and
// answers only handlers whose program exists; its entry is looked up in the data folders in order.
TEST(XdgDesktopTest, MailClientIsTheMailtoHandlerWithAnEntry) {
    if (system("command -v xdg-mime >/dev/null") != 0) GTEST_SKIP() << "xdg-mime is not installed";
    TemporaryFolder folder;
    folder.write("bin/mymail", "#!/bin/sh\n", 0755);
    ScopedEnvironment environment;
    for (const char* name : {"XDG_CURRENT_DESKTOP", "KDE_FULL_SESSION", "KDE_SESSION_VERSION",
                             "GNOME_DESKTOP_SESSION_ID", "DESKTOP_SESSION", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.set(name, nullptr);
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "XDG_DATA_HOME"})
        environment.set(name, folder / name);
    environment.set("XDG_DATA_DIRS", folder / "empty:" + folder / "share");
    environment.set("PATH", folder / "bin:" + std::getenv("PATH"));
    zuno::CMail mail;
    EXPECT_FALSE(mail.isMailClientRegistered()) << "no handler";
    folder.write("XDG_CONFIG_HOME/mimeapps.list", "[Default Applications]\nx-scheme-handler/mailto=mymail.desktop;\n");
    EXPECT_FALSE(mail.isMailClientRegistered()) << "a handler without its entry";

    const std::string entry = "[Desktop Entry]\nExec=mymail %u\n";
    const std::string systemEntry = folder.write("share/applications/mymail.desktop", entry);
    folder.write("share/applications/notes.txt", "");
    EXPECT_TRUE(mail.isMailClientRegistered());
    EXPECT_EQ(findDesktopEntry("mymail.desktop"), systemEntry);
    const std::string userEntry = folder.write("XDG_DATA_HOME/applications/mymail.desktop", entry);
    EXPECT_EQ(findDesktopEntry("mymail.desktop"), userEntry) << "the user's own entry comes first";
    for (const char* id : {"", "missing.desktop", "notes.txt", ".desktop", "../applications/mymail.desktop",
                           "applications/mymail.desktop"})
        EXPECT_EQ(findDesktopEntry(id), "") << id;

    environment.set("PATH", folder / "nowhere");
    EXPECT_FALSE(mail.isMailClientRegistered()) << "without xdg-mime there is no handler";
}
