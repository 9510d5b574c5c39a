#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <zuno/CMail.h>

#include <gtest/gtest.h>

using namespace zuno;

TEST(CMailPosixTest, MailClientIsRegisteredWhenTheMailtoHandlerHasAnEntry) {
    if (system("command -v xdg-mime >/dev/null") != 0) GTEST_SKIP() << "xdg-mime is not installed";
    TemporaryFolder folder;
    folder.write("bin/mymail", "#!/bin/sh\n", 0755);
    ScopedEnvironment environment;
    for (const char* name : {"XDG_CURRENT_DESKTOP", "KDE_FULL_SESSION", "KDE_SESSION_VERSION", "DISPLAY"})
        environment.set(name, nullptr);
    environment.set("HOME", folder / "home");
    environment.set("XDG_CONFIG_HOME", folder / "config");
    environment.set("XDG_CONFIG_DIRS", folder / "etc");
    environment.set("XDG_DATA_HOME", folder / "data");
    environment.set("XDG_DATA_DIRS", folder / "share");
    environment.set("PATH", folder / "bin" + ":" + std::getenv("PATH"));
    CMail mail;

    EXPECT_FALSE(mail.isMailClientRegistered()) << "no handler";
    folder.write("config/mimeapps.list", "[Default Applications]\nx-scheme-handler/mailto=mymail.desktop\n");
    EXPECT_FALSE(mail.isMailClientRegistered()) << "a handler without its entry";
    folder.write("share/applications/mymail.desktop", "[Desktop Entry]\nExec=mymail %u\n");
    EXPECT_TRUE(mail.isMailClientRegistered());
}
