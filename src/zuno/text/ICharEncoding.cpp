#include "text/CCPCharEncoding.h"
#include "text/CLatin1CharEncoding.h"
#include "text/CUTF16CharEncoding.h"
#include "text/CUTF32CharEncoding.h"
#include "text/CUTF8CharEncoding.h"

#include <zuno/CGlobalObjFactory.h>

namespace zuno {

namespace {

template <class Codec>
P<ICharEncoding> createCodec() {
    return make<Codec>();
}

template <class Codec>
const ICharEncoding& pinnedCodec() {
    static const CGlobalObjFactory::ServiceKey key;
    static const ICharEncoding* codec = CGlobalObjFactory::pinned<ICharEncoding>(key, &createCodec<Codec>);
    return *codec;
}

} // namespace

const ICharEncoding& getCharEncoding(Encoding encoding) {
    switch (encoding) {
    case Encoding::Wide:
        if constexpr (sizeof(wchar_t) == 2) return pinnedCodec<CUTF16CharEncoding>();
        else return pinnedCodec<CUTF32CharEncoding>();
    case Encoding::CodePage: return pinnedCodec<CCPCharEncoding>();
    case Encoding::UTF8: return pinnedCodec<CUTF8CharEncoding>();
    case Encoding::UTF16: return pinnedCodec<CUTF16CharEncoding>();
    case Encoding::UTF32: return pinnedCodec<CUTF32CharEncoding>();
    case Encoding::Latin1: break;
    }
    return pinnedCodec<CLatin1CharEncoding>();
}

} // namespace zuno
