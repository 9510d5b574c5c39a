// URI: whatever the parser accepts has a text form that parses back to the same parts,
// and that text form is stable. The part-wise constructor and the escape helpers run on
// the parts too.
#include <zuno/CException.h>
#include <zuno/CURI.h>

#include <cstdint>
#include <cstdlib>
#include <tuple>

using namespace zuno;

namespace {

auto parts(const IURI& uri) {
    return std::make_tuple(uri.getScheme(), uri.getAuthority(), uri.getRawUserInfo(), uri.getHost(),
                           uri.getPortText(), uri.getPort(), uri.getPath(), uri.getQuery(), uri.getFragment(),
                           uri.isRelative(), uri.isOpaque(), uri.toString());
}

void check(bool condition) {
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const String text = String::fromUTF8ToWide(reinterpret_cast<const char*>(data), int32_t(size));
    P<CURI> uri;
    try {
        uri = make<CURI>(text);
    } catch (const CException&) {
        return 0;  // refused with a URI error: fine
    }
    const CURI again(uri->toString());
    check(parts(*uri) == parts(again));

    // Reading every part must not fail, whatever the text.
    uri->getUserInfo();
    uri->getDecodedPath();
    uri->getFileName();
    uri->hasExtension(L".xml");
    uri->getSchemeSpecificPart();

    // Decoding what escaping made gives the part back.
    for (const String& part : {uri->getDecodedPath(), uri->getQuery(), uri->getFragment()}) {
        if (part.find(U'\0') >= 0) continue;  // "%00" is kept as text on purpose
        check(CURI::unescape(CURI::escape(part, CURI::QueryFragmentAllowed)) == part);
    }

    // Built from its parts, a URI is one the parser accepts.
    try {
        CURI(uri->getScheme(), uri->getUserInfo(), uri->getHost(), uri->getPortText(), uri->getDecodedPath(),
             uri->getQuery(), uri->getFragment());
    } catch (const CException&) {
        // Parts that cannot make a URI (an opaque path, a scheme with a "/") are refused.
    }
    return 0;
}
