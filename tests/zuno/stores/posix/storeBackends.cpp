#include "../storeBackends.h"

std::vector<StoreBackend> platformStoreBackends() {
    return {};
}
