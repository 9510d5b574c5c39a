// The JSON value store's loader: a document from memory, then every sub-store walked, every
// value read as each kind, and the document written out again as the store would write it.
#include "stores/CJsonValueStore.h"

#include "../support/valueStoreFuzzing.h"

using namespace zuno;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const P<IValueStore> store = fuzz::emptyStore<CJsonValueStore>("zuno-fuzz-never-written.json");
    fuzz::loadAndReadBack<CJsonValueStore>(store, data, size, [](CJsonValueStore& s) { s.toJson(); });
    return 0;
}
