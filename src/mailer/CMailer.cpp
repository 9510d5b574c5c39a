#include "CMailer.h"
#include "CMailerFileReader.h"
#include "mailerPlatform.h"

#include <zuno/CError.h>
#include <zuno/IMailFactory.h>
#include <zuno/IPathes.h>
#include <zuno/ISystem.h>

namespace mailer {

using namespace zuno;

int32_t CMailer::run(const std::vector<String>& arguments) {
    if (arguments.size() != 1) return WrongArgumentCount;
    const String& path = arguments.front();

    std::FILE* file = openForReading(path);
    if (!file) return CannotOpenFile;
    CMailerFileReader reader;
    reader.load(file);
    std::fclose(file);
    if (!reader.isMailerFile()) return NotAMailerFile;

    int32_t result;
    try {
        P<IMail> mail = getMailFactory()->createMail();
        reader.fillMail(*mail);
        reader = CMailerFileReader();  // the document is not needed during the hand-off
        result = mail->send();
    } catch (const CError&) {
        // A file whose content cannot become a mail (an attachment that is no local file
        // URI: CURIError; a path the path service cannot take: CError) is refused like any
        // other bad mailer file: it stays for the caller. Anything else (out of memory, a
        // bug) is not a property of the file and is not disguised as one.
        return NotAMailerFile;
    }
    removeMailerFile(path);
    return result;
}

void CMailer::removeMailerFile(const String& path) {
    try {
        P<IURI> uri = getPathes()->pathToURI(path);
        getSystem()->deleteFile(uri);
    } catch (...) {
        // Whatever the removal raises is discarded: a file that cannot be deleted does not
        // change the outcome of the hand-off, which has happened by now.
    }
}

} // namespace mailer
