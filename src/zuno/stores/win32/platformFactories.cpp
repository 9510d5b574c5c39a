#include "stores/platformFactories.h"
#include "stores/win32/CRegistryValueStoreFactory.h"

namespace zuno {

std::vector<P<IValueStoreFactory>> platformValueStoreFactories() {
    return {make<win32::CRegistryValueStoreFactory>()};
}

} // namespace zuno
