#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <zuno/posix/xdgDesktop.h>

#include <gtest/gtest.h>

using namespace zuno::posix;

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
    EXPECT_EQ(xdgDataFolders(), (std::vector<std::string>{"/data/home", "/one", "/two"}));

    environment.set("XDG_DATA_HOME", nullptr);
    environment.set("XDG_DATA_DIRS", "");
    EXPECT_EQ(xdgDataFolders(),
              (std::vector<std::string>{"/home/someone/.local/share", "/usr/local/share", "/usr/share"}));
    environment.set("XDG_DATA_HOME", "not/absolute");
    EXPECT_EQ(xdgDataHome(), "/home/someone/.local/share");
}

TEST(XdgDesktopTest, DesktopEntryIsLookedUpInTheDataFoldersInOrder) {
    TemporaryFolder folder;
    const std::string home = folder.write("home/applications/mail.desktop", "[Desktop Entry]\nExec=a\n");
    const std::string system = folder.write("system/applications/mail.desktop", "[Desktop Entry]\nExec=b\n");
    const std::string systemOnly = folder.write("system/applications/other.desktop", "[Desktop Entry]\nExec=c\n");
    folder.write("system/applications/notes.txt", "");
    ScopedEnvironment environment;
    environment.set("XDG_DATA_HOME", folder / "home");
    environment.set("XDG_DATA_DIRS", folder / "empty" + ":" + folder / "system");

    EXPECT_EQ(findDesktopEntry("mail.desktop"), home);
    EXPECT_EQ(findDesktopEntry("other.desktop"), systemOnly);
    for (const char* id : {"", "missing.desktop", "notes.txt", ".desktop", "../applications/mail.desktop",
                           "applications/mail.desktop"})
        EXPECT_EQ(findDesktopEntry(id), "") << id;
}

// xdg-mime reads the user's mimeapps.list; it answers only handlers whose program exists.
TEST(XdgDesktopTest, DefaultMailtoHandlerComesFromXdgMime) {
    TemporaryFolder folder;
    folder.write("bin/mymail", "#!/bin/sh\n", 0755);
    folder.write("data/applications/mymail.desktop", "[Desktop Entry]\nType=Application\nExec=mymail %u\n");
    ScopedEnvironment environment;
    for (const char* name : {"XDG_CURRENT_DESKTOP", "KDE_FULL_SESSION", "KDE_SESSION_VERSION",
                             "GNOME_DESKTOP_SESSION_ID", "DESKTOP_SESSION", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.set(name, nullptr);
    environment.set("HOME", folder / "home");
    environment.set("XDG_CONFIG_HOME", folder / "config");
    environment.set("XDG_CONFIG_DIRS", folder / "etc");
    environment.set("XDG_DATA_HOME", folder / "data");
    environment.set("XDG_DATA_DIRS", folder / "share");
    environment.set("PATH", folder / "bin" + ":" + std::getenv("PATH"));
    if (system("command -v xdg-mime >/dev/null") != 0) GTEST_SKIP() << "xdg-mime is not installed";

    EXPECT_EQ(defaultMailtoHandler(), "");
    EXPECT_EQ(defaultMailtoProgram(), "");

    folder.write("config/mimeapps.list", "[Default Applications]\nx-scheme-handler/mailto=mymail.desktop;\n");
    EXPECT_EQ(defaultMailtoHandler(), "mymail.desktop");
    EXPECT_EQ(defaultMailtoProgram(), "mymail");

    environment.set("PATH", folder / "nowhere");
    EXPECT_EQ(defaultMailtoHandler(), "") << "without xdg-mime there is no handler";
}
