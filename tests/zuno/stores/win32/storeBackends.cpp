#include "../storeBackends.h"

#include "core/win32/windows.h"

#include <string>

// Keys below a key of the current user that only this test run uses.
std::vector<StoreBackend> platformStoreBackends() {
    static const std::wstring root = L"Software\\zuno-store-tests-" + std::to_wstring(GetCurrentProcessId());
    return {StoreBackend{"registry",
                         [](const std::string& place) {
                             return "registry:HKEY_CURRENT_USER/Software/zuno-store-tests-" +
                                    std::to_string(GetCurrentProcessId()) + "/" + place;
                         },
                         [] { RegDeleteTreeW(HKEY_CURRENT_USER, root.c_str()); }}};
}
