#include <zuno/CMail.h>
#include <zuno/CURI.h>
#include <zuno/IValueStoreManager.h>
#include <zuno/MailResult.h>
#include "core/win32/windows.h"

#include <mapi.h>

#include <string>
#include <vector>

namespace zuno {

namespace {

constexpr FLAGS SendFlags = MAPI_LOGON_UI | MAPI_DIALOG;
static_assert(SendFlags == 9);

// Simple MAPI takes non-const text pointers but does not write through them.
LPSTR text(const std::string& narrow) {
    return const_cast<LPSTR>(narrow.c_str());
}

void appendRecipients(std::vector<MapiRecipDesc>& recipients, const std::vector<std::string>& names,
                      ULONG recipientClass) {
    for (const std::string& name : names) {
        MapiRecipDesc recipient{};
        recipient.ulRecipClass = recipientClass;
        recipient.lpszName = text(name);
        recipients.push_back(recipient);
    }
}

std::vector<MapiFileDesc> fileDescriptions(const std::vector<std::string>& paths) {
    std::vector<MapiFileDesc> files;
    for (const std::string& path : paths) {
        MapiFileDesc file{};
        file.nPosition = 0xFFFFFFFF;  // the client places the attachment
        file.lpszPathName = text(path);
        file.lpszFileName = text(path);
        files.push_back(file);
    }
    return files;
}

} // namespace

// Opens the mail client's compose dialog through Simple MAPI. A missing MAPI32.DLL answers
// -1 and a library without MAPISendMail -2 (the library then stays loaded); otherwise the
// answer is MAPISendMail's own.
int32_t CMail::send() {
    const HMODULE library = LoadLibraryA("MAPI32.DLL");
    if (!library) return MailResult::NoMailClient;
    const auto sendMail =
        reinterpret_cast<LPMAPISENDMAIL>(reinterpret_cast<void*>(GetProcAddress(library, "MAPISendMail")));
    if (!sendMail) return MailResult::NoSendFunction;

    const std::string subject = toNarrow(m_subject);
    const std::string note = toNarrow(m_note);

    std::vector<MapiRecipDesc> recipients;
    appendRecipients(recipients, m_toRecipients, MAPI_TO);
    appendRecipients(recipients, m_ccRecipients, MAPI_CC);
    appendRecipients(recipients, m_bccRecipients, MAPI_BCC);
    std::vector<MapiFileDesc> files = fileDescriptions(m_attachments);

    MapiMessage message{};
    message.lpszSubject = text(subject);
    message.lpszNoteText = text(note);
    message.nRecipCount = ULONG(recipients.size());
    message.lpRecips = recipients.empty() ? nullptr : recipients.data();
    message.nFileCount = ULONG(files.size());
    message.lpFiles = files.empty() ? nullptr : files.data();

    const ULONG result = sendMail(0, 0, &message, SendFlags, 0);
    FreeLibrary(library);
    return int32_t(result);
}

// Whether a program is registered to open mailto links: the default value of the
// handler's command key, read through the registry value store, holds any text at all.
// Errors while opening or reading the key answer false.
bool CMail::isMailClientRegistered() {
    try {
        const String path = String(L"HKEY_CLASSES_ROOT\\mailto\\shell\\open\\command\\").replace(L"\\", L"/");
        const P<IURI> uri = make<CURI>(L"registry", L"", L"", L"", path, L"", L"");
        const P<IValueStore> store = getValueStoreManager()->openValueStore(uri, true);
        if (!store) return false;
        return !store->getString(L"", String::empty()).isEmpty();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace zuno
