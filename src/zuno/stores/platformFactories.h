#pragma once

#include <zuno/IValueStoreFactory.h>

#include <vector>

namespace zuno {

// The factories of the platform's own stores, asked after the file stores: the registry
// store on Windows, none on POSIX.
std::vector<P<IValueStoreFactory>> platformValueStoreFactories();

} // namespace zuno
