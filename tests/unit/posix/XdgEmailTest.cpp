#include "ScopedEnvironment.h"
#include "TemporaryFolder.h"

#include <zuno/posix/childProcess.h>
#include <zuno/posix/mailClientCommand.h>
#include <zuno/posix/percentEncoding.h>

#include <gtest/gtest.h>

#include <sstream>

using namespace zuno::posix;
using Fields = std::vector<std::pair<std::string, std::string>>;

namespace {

// The fields of a "mailto:?key=value&..." URL, values decoded.
Fields mailtoFields(const std::string& url) {
    Fields fields;
    std::istringstream query(url.substr(url.find('?') + 1));
    std::string field;
    while (std::getline(query, field, '&')) {
        const size_t equals = field.find('=');
        fields.emplace_back(field.substr(0, equals), percentDecode(field.substr(equals + 1)));
    }
    return fields;
}

} // namespace

// The installed xdg-email itself, with the hook it offers for tests: the hook gets the
// mailto URL that xdg-email would open and prints it instead of starting a client.
TEST(XdgEmailTest, InstalledXdgEmailTakesOptionLikeTextsAsValues) {
    if (system("command -v xdg-email >/dev/null") != 0) GTEST_SKIP() << "xdg-email is not installed";
    TemporaryFolder folder;
    folder.write("bin/xdg-email-hook.sh", "#!/bin/sh\nprintf '%s' \"$1\"\n", 0755);
    const std::string attachment = folder.write("files/a.txt", "x");
    ScopedEnvironment environment;
    environment.set("PATH", folder / "bin" + ":" + std::getenv("PATH"));

    MailDraft draft;
    draft.subject = "--version";
    draft.note = "-n";
    draft.to = {"--help", "--attach=/etc/passwd", "x@y.org',attachment='file:///etc/passwd',bcc='"};
    draft.cc = {"-h"};
    draft.bcc = {"--manual"};
    draft.attachments = {attachment};
    std::vector<std::string> argv = xdgEmailArguments(draft);
    argv.insert(argv.begin(), "xdg-email");

    const std::optional<std::string> url = runForOutput(argv, std::chrono::milliseconds(30000));
    ASSERT_TRUE(url) << "xdg-email failed";
    ASSERT_EQ(url->rfind("mailto:?", 0), 0u) << *url;
    EXPECT_EQ(mailtoFields(*url), (Fields{{"subject", "--version "},
                                          {"body", "-n "},
                                          {"to", "--help "},
                                          {"to", "--attach=/etc/passwd"},
                                          {"to", "x@y.org',attachment='file:///etc/passwd',bcc='"},
                                          {"cc", "-h"},
                                          {"bcc", "--manual "},
                                          {"attach", attachment}}));
}
