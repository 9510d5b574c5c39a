// String codecs: bytes in any storage encoding (chosen by the first byte) decode without
// failing; encoding what was decoded and decoding again is stable; the Unicode encodings
// carry every character through a conversion unchanged; text objects agree with their codec.
#include <zuno/CException.h>
#include <zuno/CString.h>
#include <zuno/ICharEncoding.h>

#include <cstdint>
#include <cstdlib>
#include <string>

using namespace zuno;

namespace {

const Encoding Encodings[] = {Encoding::Wide,  Encoding::CodePage, Encoding::UTF8,
                              Encoding::UTF16, Encoding::UTF32,    Encoding::Latin1};

bool isUnicode(Encoding encoding) {
    return encoding == Encoding::Wide || encoding == Encoding::UTF8 || encoding == Encoding::UTF16 ||
           encoding == Encoding::UTF32;
}

void check(bool condition) {
    if (!condition) std::abort();
}

String textObject(Encoding encoding, const std::string& bytes) {
    const int32_t length = int32_t(bytes.size());
    switch (encoding) {
    case Encoding::Wide: return String(make<CWCharString>(bytes.data(), length, CString::Copy));
    case Encoding::CodePage: return String(make<CCPString>(bytes.data(), length, CString::Copy));
    case Encoding::UTF8: return String(make<CUTF8String>(bytes.data(), length, CString::Copy));
    case Encoding::UTF16: return String(make<CUTF16String>(bytes.data(), length, CString::Copy));
    case Encoding::UTF32: return String(make<CUTF32String>(bytes.data(), length, CString::Copy));
    default: return String(make<CLatin1String>(bytes.data(), length, CString::Copy));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const Encoding encoding = Encodings[data[0] % std::size(Encodings)];
    const ICharEncoding& codec = getCharEncoding(encoding);
    const size_t unit = size_t(codec.getUnitSize());
    std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    bytes.resize(bytes.size() / unit * unit);  // whole code units

    std::u32string chars;
    codec.decode(bytes.data(), int32_t(bytes.size()), chars);
    check(codec.countChars(bytes.data(), int32_t(bytes.size())) == int32_t(chars.size()));
    std::string encoded;
    codec.encode(chars.data(), chars.size(), encoded);
    std::u32string again;
    codec.decode(encoded.data(), int32_t(encoded.size()), again);
    std::string reencoded;
    codec.encode(again.data(), again.size(), reencoded);
    check(reencoded == encoded);
    if (isUnicode(encoding)) check(again == chars);

    // A text object holds the bytes up to the first encoded NUL, as its codec reads them.
    const String text = textObject(encoding, bytes);
    const std::u32string held = text.getChars();
    check(text.length() == int32_t(held.size()));
    check(held == chars.substr(0, held.size()));
    for (const Encoding target : Encodings) {
        const String converted = text.convertTo(target);
        check(converted.getEncoding() == target);
        if (isUnicode(target)) check(converted.getChars() == held);
        check(converted.toWide().length() == converted.length());
    }
    if (encoding == Encoding::UTF8) check(String::fromUTF8ToWide(bytes.data(), int32_t(bytes.size())).getChars() == chars);
    return 0;
}
