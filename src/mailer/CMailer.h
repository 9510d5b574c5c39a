#pragma once

#include <zuno/String.h>

#include <cstdint>
#include <vector>

namespace mailer {

// The mailer command: reads the mailer file named by its one argument, hands the mail to
// the user's mail client, deletes the file and answers the exit code: one of its own below
// when the command line or the file is refused, else the hand-off's result (MailResult.h,
// whose -1 and -2 deliberately share the values of the first two).
class CMailer {
public:
    static constexpr int32_t WrongArgumentCount = -1;
    static constexpr int32_t CannotOpenFile = -2;
    static constexpr int32_t NotAMailerFile = -3;

    static int32_t run(const std::vector<zuno::String>& arguments);

private:
    // Removes the mailer file; whatever goes wrong is ignored, the exit code stays.
    static void removeMailerFile(const zuno::String& path);
};

} // namespace mailer
