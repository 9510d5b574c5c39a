#include "RecordingMailClient.h"
#include "TemporaryFolder.h"

#include "text/percentEncoding.h"

#include <gtest/gtest.h>

// Started under the plain C locale (as by a service without LANG), the tool still reads its
// UTF-8 path and file and hands non-ASCII texts and paths on intact.
TEST(PlainLocaleTest, NonAsciiPathsAndTextsArriveIntact) {
    TemporaryFolder folder;
    RecordingMailClient client(folder.path());
    const std::string attachment = folder.write("b\xC3\xA4r \xE2\x82\xAC.txt", "x");
    const std::string file = folder.write(
        "m\xC3\xA4il \xF0\x9F\x93\xA7.xml",
        "<mailerfile><subject>Gr\xC3\xBC\xC3\x9F\x65 \xE2\x82\xAC \xF0\x9F\x98\x80</subject><attachments><attachment>file://" +
            zuno::percentEncode(attachment, "/") + "</attachment></attachments></mailerfile>");
    auto environment = client.environment();
    environment["LANG"] = "C";
    environment["LC_ALL"] = "C";
    ASSERT_EQ(runMailer(client.mailerPath(), {file}, folder.path(), environment), 0);
    const RecordedMail mail = client.lastMail();
    EXPECT_EQ(mail.subject, "Gr\xC3\xBC\xC3\x9F\x65 \xE2\x82\xAC \xF0\x9F\x98\x80");
    EXPECT_EQ(mail.attachments, std::vector<std::string>{attachment});
    EXPECT_FALSE(std::filesystem::exists(file)) << "the file read is the file deleted";
}
