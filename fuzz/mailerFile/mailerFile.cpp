// The mailer file: the checks before parsing, reading it with the XML parser, and filling a
// mail (which records what it is given) as the tool does, from an in-memory file.
#include "CMailerFileReader.h"
#include "xmlNestingDepth.h"

#include "text/utf8Decode.h"

#include <zuno/CException.h>
#include <zuno/CMail.h>

#include <cstdint>
#include <cstdio>
#include <string_view>

using namespace zuno;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    zuno::isWellFormedUTF8(text);
    mailer::xmlNestingDepth(text);

    if (size == 0) return 0;  // fmemopen refuses an empty buffer
    std::FILE* file = fmemopen(const_cast<uint8_t*>(data), size, "rb");
    if (!file) return 0;
    mailer::CMailerFileReader reader;
    reader.load(file);
    std::fclose(file);
    if (!reader.isMailerFile()) return 0;
    const P<CMail> mail = make<CMail>();
    try {
        reader.fillMail(*mail);
    } catch (const CException&) {
        // An attachment that is no local file URI: the tool refuses such a file.
    }
    return 0;
}
