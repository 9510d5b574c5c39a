#include "stores/platformFactories.h"

namespace zuno {

std::vector<P<IValueStoreFactory>> platformValueStoreFactories() {
    return {};
}

} // namespace zuno
