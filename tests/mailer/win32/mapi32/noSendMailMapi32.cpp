// A MAPI32.DLL that offers Simple MAPI's log-on but no MAPISendMail.
#include <zuno/win32/windows.h>

#include <mapi.h>

extern "C" __declspec(dllexport) ULONG WINAPI MAPILogon(ULONG_PTR, LPSTR, LPSTR, FLAGS, ULONG, LPLHANDLE) {
    return MAPI_E_FAILURE;
}
