#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <zuno/CMail.h>
#include "mail/posix/xdgDesktop.h"

#include <gtest/gtest.h>

using namespace zuno::posix;
using Strings = std::vector<std::string>;

namespace {

// A throw-away set of XDG folders below a test's folder.
class XdgFolders {
public:
    explicit XdgFolders(const TemporaryFolder& folder) : m_folder(folder) {
        m_environment.set("HOME", folder / "home");
        m_environment.set("XDG_CONFIG_HOME", folder / "config");
        m_environment.set("XDG_CONFIG_DIRS", folder / "etc");
        m_environment.set("XDG_DATA_HOME", folder / "data");
        m_environment.set("XDG_DATA_DIRS", folder / "share");
        m_environment.set("XDG_CURRENT_DESKTOP", "Zuno:GNOME");
    }
    void write(const std::string& name, const std::string& content) const { m_folder.write(name, content); }
    void entry(const std::string& folder, const std::string& id, const std::string& extra = "") const {
        write(folder + "/applications/" + id, "[Desktop Entry]\nName=" + id + "\nExec=" + id + " %u\n" + extra);
    }
    std::string handler() const {
        const std::optional<DesktopEntry> entry = defaultMailtoHandler();
        return entry ? entry->name : "";
    }

private:
    const TemporaryFolder& m_folder;
    ScopedEnvironment m_environment;
};

std::string mailtoList(const char* group, const std::string& ids) {
    return std::string("[") + group + "]\nx-scheme-handler/mailto=" + ids + "\n";
}

} // namespace

TEST(XdgDesktopTest, FoldersAndListsFollowTheEnvironment) {
    ScopedEnvironment environment;
    environment.set("HOME", "/home/someone");
    environment.set("XDG_DATA_HOME", "/data/home");
    environment.set("XDG_DATA_DIRS", "/one:relative::/two");
    environment.set("XDG_CONFIG_HOME", "/config/home");
    environment.set("XDG_CONFIG_DIRS", "/etc/one");
    environment.set("XDG_CURRENT_DESKTOP", "KDE:x/y");
    EXPECT_EQ(xdgDataFolders(), (Strings{"/data/home", "/one", "/two"}));
    EXPECT_EQ(xdgConfigFolders(), (Strings{"/config/home", "/etc/one"}));
    EXPECT_EQ(mimeAppsLists(),
              (Strings{"/config/home/kde-mimeapps.list", "/config/home/mimeapps.list", "/etc/one/kde-mimeapps.list",
                       "/etc/one/mimeapps.list", "/data/home/applications/kde-mimeapps.list",
                       "/data/home/applications/mimeapps.list", "/one/applications/kde-mimeapps.list",
                       "/one/applications/mimeapps.list", "/two/applications/kde-mimeapps.list",
                       "/two/applications/mimeapps.list"}));
    environment.set("XDG_DATA_HOME", "not/absolute");
    environment.set("XDG_DATA_DIRS", "");
    environment.set("XDG_CONFIG_HOME", nullptr);
    environment.set("XDG_CONFIG_DIRS", nullptr);
    EXPECT_EQ(xdgDataFolders(), (Strings{"/home/someone/.local/share", "/usr/local/share", "/usr/share"}));
    EXPECT_EQ(xdgConfigFolders(), (Strings{"/home/someone/.config", "/etc/xdg"}));
}

// The lookup order desktops use for default applications: the most important list that
// names an installed application decides; associations and the cache only count when no
// list names a default.
TEST(XdgDesktopTest, DefaultMailtoHandlerIsTheFirstInstalledOneOfTheMostImportantList) {
    struct Case {
        const char* what;
        std::vector<std::pair<std::string, std::string>> files;
        const char* handler;
    };
    const Case cases[] = {
        {"nothing at all", {}, ""},
        {"a default that is not installed",
         {{"config/mimeapps.list", mailtoList("Default Applications", "a.desktop")}}, ""},
        {"the first installed of a list",
         {{"config/mimeapps.list", mailtoList("Default Applications", "missing.desktop; b.desktop;c.desktop;")}},
         "b.desktop"},
        {"the user's list before the system's",
         {{"etc/mimeapps.list", mailtoList("Default Applications", "c.desktop")},
          {"config/mimeapps.list", mailtoList("Default Applications", "b.desktop")}}, "b.desktop"},
        {"the desktop's own list before the plain one",
         {{"config/mimeapps.list", mailtoList("Default Applications", "b.desktop")},
          {"config/gnome-mimeapps.list", mailtoList("Default Applications", "c.desktop")}}, "c.desktop"},
        {"a list in a data folder",
         {{"share/applications/mimeapps.list", mailtoList("Default Applications", "c.desktop")}}, "c.desktop"},
        {"the older defaults.list",
         {{"share/applications/defaults.list", mailtoList("Default Applications", "b.desktop")}}, "b.desktop"},
        {"a later list when the first names nothing installed",
         {{"config/mimeapps.list", mailtoList("Default Applications", "missing.desktop")},
          {"etc/mimeapps.list", mailtoList("Default Applications", "c.desktop")}}, "c.desktop"},
        {"a default before an added association",
         {{"config/mimeapps.list", mailtoList("Added Associations", "b.desktop")},
          {"etc/mimeapps.list", mailtoList("Default Applications", "c.desktop")}}, "c.desktop"},
        {"an added association",
         {{"config/mimeapps.list", mailtoList("Added Associations", "b.desktop")}}, "b.desktop"},
        {"the cache", {{"share/applications/mimeinfo.cache", mailtoList("MIME Cache", "b.desktop;c.desktop;")}},
         "b.desktop"},
        {"a removed association is skipped in the cache",
         {{"config/mimeapps.list", mailtoList("Removed Associations", "b.desktop")},
          {"share/applications/mimeinfo.cache", mailtoList("MIME Cache", "b.desktop;c.desktop;")}}, "c.desktop"},
        {"a hidden entry is not installed",
         {{"config/mimeapps.list", mailtoList("Default Applications", "hidden.desktop;c.desktop")}}, "c.desktop"},
        {"another type's default",
         {{"config/mimeapps.list", "[Default Applications]\nx-scheme-handler/http=b.desktop\n"}}, ""},
        {"another group's key", {{"config/mimeapps.list", "[Other]\nx-scheme-handler/mailto=b.desktop\n"}}, ""},
    };
    for (const Case& c : cases) {
        TemporaryFolder folder;
        XdgFolders xdg(folder);
        xdg.entry("data", "b.desktop");
        xdg.entry("share", "c.desktop");
        xdg.entry("share", "hidden.desktop", "Hidden=true\n");
        for (const auto& [name, content] : c.files) xdg.write(name, content);
        EXPECT_EQ(xdg.handler(), c.handler) << c.what;
        EXPECT_EQ(zuno::CMail().isMailClientRegistered(), *c.handler != '\0') << c.what;
    }
}

TEST(XdgDesktopTest, EntriesAreFoundInDataFoldersInOrderAndReadAsWritten) {
    TemporaryFolder folder;
    XdgFolders xdg(folder);
    xdg.write("share/applications/mymail.desktop", "[Desktop Entry]\nExec=system\n");
    const std::string user = folder / "data/applications/mymail.desktop";
    xdg.write("data/applications/mymail.desktop",
              "# comment\r\n[Desktop Action compose]\r\nExec=other\r\n[Desktop Entry]\r\nExec[de]=wrong\r\n"
              "Exec = my\\smail \"a\\\\\\\\b\" %u\r\nName=My\\tMail\r\nIcon=mail\r\n");
    EXPECT_EQ(findDesktopEntry("mymail.desktop"), user) << "the user's own entry comes first";
    const std::optional<DesktopEntry> entry = installedApplication("mymail.desktop");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->path, user);
    EXPECT_EQ(entry->exec, "my mail \"a\\\\b\" %u") << "string escapes decoded, quoting left to the Exec parser";
    EXPECT_EQ(entry->name, "My\tMail");
    EXPECT_EQ(entry->icon, "mail");
    xdg.write("share/applications/notes.txt", "");
    for (const char* id : {"", "missing.desktop", "notes.txt", ".desktop", "../applications/mymail.desktop",
                           "applications/mymail.desktop"})
        EXPECT_EQ(findDesktopEntry(id), "") << id;
}
