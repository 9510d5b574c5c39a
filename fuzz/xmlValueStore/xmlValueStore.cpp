// The XML value store's loader: a document from memory, then every sub-store walked, every
// value read as each kind, and the document written out again as the store would write it.
#include "stores/CXmlValueStore.h"

#include "../support/valueStoreFuzzing.h"

using namespace zuno;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const P<IValueStore> store = fuzz::emptyStore<CXmlValueStore>("zuno-fuzz-never-written.xml");
    fuzz::loadAndReadBack<CXmlValueStore>(store, data, size, [](CXmlValueStore& s) { s.toXml(); });
    return 0;
}
