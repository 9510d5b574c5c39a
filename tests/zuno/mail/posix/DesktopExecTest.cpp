#include "mail/posix/desktopExec.h"

#include <gtest/gtest.h>

using namespace zuno::posix;
using Words = std::vector<std::string>;

namespace {

DesktopEntry entry(const std::string& exec) {
    return DesktopEntry{"/apps/mail.desktop", exec, "Mail, \"best\"", "mail-icon"};
}

} // namespace

// Quoting as desktops read it (the value's string escapes are decoded
// before: "\\\\" in the file is one backslash here), and field codes filled in around the
// place of the mail.
TEST(DesktopExecTest, ExecLineIsCutWhereTheMailGoes) {
    struct Case {
        const char* exec;
        Words before, after;
    };
    const Case cases[] = {
        {"thunderbird %u", {"thunderbird"}, {}},
        {"  /usr/bin/claws-mail\t%U  ", {"/usr/bin/claws-mail"}, {}},
        {"balsa -m %U --after", {"balsa", "-m"}, {"--after"}},
        {"mutt", {"mutt"}, {}},
        {"\"/opt/my mail/client\" --compose %f", {"/opt/my mail/client", "--compose"}, {}},
        {"\"/opt/a\\\\b \\\"q\\\" \\$HOME \\`x\\`\" %u", {"/opt/a\\b \"q\" $HOME `x`"}, {}},
        {"prog \"\" %u", {"prog", ""}, {}},
        {"prog a\"b c\"d %u", {"prog", "ab cd"}, {}},
        {"prog 100%% %u %U %f", {"prog", "100%"}, {}},
        {"prog %i %c %k %u", {"prog", "--icon", "mail-icon", "Mail, \"best\"", "/apps/mail.desktop"}, {}},
        {"prog %d %D %n %N %v %m x%uy %u", {"prog", "xy"}, {}},
        {"flatpak run --branch=stable org.mozilla.Thunderbird @@u %u @@", {"flatpak", "run", "--branch=stable",
                                                                           "org.mozilla.Thunderbird"}, {}},
        {"env LANG=C thunderbird %u", {"env", "LANG=C", "thunderbird"}, {}},
    };
    for (const Case& c : cases) {
        const std::optional<ExecCommand> command = parseExec(entry(c.exec));
        ASSERT_TRUE(command) << c.exec;
        EXPECT_EQ(command->before, c.before) << c.exec;
        EXPECT_EQ(command->after, c.after) << c.exec;
        EXPECT_EQ(command->commandLine({"M1", "M2"}).size(), c.before.size() + 2 + c.after.size());
    }
    for (const char* broken : {"", "   ", "\"unclosed %u", "prog \"a\\\" %u", "\"\" %u", "%u", "%i"})
        EXPECT_FALSE(parseExec(entry(broken))) << broken;
}

// The family is read from the program or application id, never from a text elsewhere on the line.
TEST(DesktopExecTest, ClientIsTheProgramOrTheApplicationIdBehindALauncher) {
    const std::pair<const char*, const char*> cases[] = {
        {"thunderbird %u", "thunderbird"},
        {"/usr/lib/thunderbird/thunderbird-bin %u", "thunderbird-bin"},
        {"env MOZ_ENABLE_WAYLAND=1 GDK_BACKEND=x11 thunderbird-esr %u", "thunderbird-esr"},
        {"/usr/bin/env -u DISPLAY -i LANG=C betterbird %u", "betterbird"},
        {"env -C /tmp icedove", "icedove"},
        {"/usr/bin/flatpak run --branch=stable --arch=x86_64 --command=thunderbird --file-forwarding "
         "org.mozilla.Thunderbird @@u %u @@", "org.mozilla.Thunderbird"},
        {"flatpak --user run org.gnome.Evolution %U", "org.gnome.Evolution"},
        {"flatpak info org.gnome.Evolution", "flatpak"},
        {"flatpak run", "flatpak"},
        {"env BAMF_DESKTOP_FILE_HINT=/var/lib/snapd/desktop/applications/thunderbird_thunderbird.desktop "
         "/snap/bin/thunderbird %U", "thunderbird"},
        {"/snap/bin/evolution.mail %u", "evolution"},
        {"snap run --experimental-gdb claws-mail.claws %u", "claws-mail"},
        {"othermail --thunderbird %u", "othermail"},
        {"/opt/thunderbird/kmail %u", "kmail"},
        {"env", ""},
    };
    for (const auto& [exec, client] : cases) EXPECT_EQ(execClient(*execWords(exec)), client) << exec;
}
