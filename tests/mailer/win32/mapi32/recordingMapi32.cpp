// A stand-in for the mail client's MAPI32.DLL. MAPISendMail writes what it receives into the
// file named by ZUNO_TEST_MAPI_RECORD (the format is described in mapiRecord.h) and answers
// the number in ZUNO_TEST_MAPI_RESULT (0 when unset).
#include "core/win32/windows.h"

#include <mapi.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string field(unsigned long long number) { return std::to_string(number); }
std::string field(const char* text) { return text ? '"' + std::string(text) + '"' : "null"; }
std::string field(const void* pointer) { return pointer ? "set" : "null"; }

// One structure: its name and its fields, each ended by a NUL, and one more NUL.
template <typename... Fields>
std::string structure(const char* name, const Fields&... fields) {
    return ((std::string(name) + '\0') + ... + (field(fields) + '\0')) + '\0';
}

} // namespace

extern "C" __declspec(dllexport) ULONG WINAPI MAPISendMail(LHANDLE session, ULONG_PTR uiParam, lpMapiMessage message,
                                                           FLAGS flags, ULONG reserved) {
    std::string record = structure("MAPISendMail", session, uiParam, flags, reserved, message);
    if (message) {
        const MapiMessage& m = *message;
        record += structure("message", m.ulReserved, m.lpszSubject, m.lpszNoteText, m.lpszMessageType,
                            m.lpszDateReceived, m.lpszConversationID, m.flFlags, m.lpOriginator, m.nRecipCount,
                            m.lpRecips, m.nFileCount, m.lpFiles);
        for (const MapiRecipDesc* r = m.lpRecips; r && r < m.lpRecips + m.nRecipCount; ++r)
            record += structure("recip", r->ulReserved, r->ulRecipClass, r->lpszName, r->lpszAddress, r->ulEIDSize,
                                r->lpEntryID);
        for (const MapiFileDesc* f = m.lpFiles; f && f < m.lpFiles + m.nFileCount; ++f)
            record += structure("file", f->ulReserved, f->flFlags, f->nPosition, f->lpszPathName, f->lpszFileName,
                                f->lpFileType);
    }
    if (const wchar_t* path = _wgetenv(L"ZUNO_TEST_MAPI_RECORD"))
        std::ofstream(std::filesystem::path(path), std::ios::binary) << record;
    const wchar_t* result = _wgetenv(L"ZUNO_TEST_MAPI_RESULT");
    return result ? ULONG(std::wcstoul(result, nullptr, 10)) : 0;
}
