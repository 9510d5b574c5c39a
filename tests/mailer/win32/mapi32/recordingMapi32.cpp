// A stand-in for the mail client's MAPI32.DLL. MAPISendMail writes every field it receives
// into the file named by ZUNO_TEST_MAPI_RECORD, one "key=value" line each, and answers
// with the number in ZUNO_TEST_MAPI_RESULT (0 when unset). Texts are written as "s:" and
// the hex digits of their bytes, so any byte survives; null pointers as "null".
#include <zuno/win32/windows.h>

#include <mapi.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

// Arrays longer than this are not walked: a count that does not match its array must not
// crash the recorder.
constexpr ULONG MaxEntries = 10000;

std::wstring environmentVariable(const wchar_t* name) {
    wchar_t value[4096];
    const DWORD length = GetEnvironmentVariableW(name, value, DWORD(std::size(value)));
    return length > 0 && length < std::size(value) ? std::wstring(value, length) : std::wstring();
}

class Record {
public:
    void number(const std::string& key, unsigned long long value) { line(key, std::to_string(value)); }
    void pointer(const std::string& key, const void* value) { line(key, value ? "set" : "null"); }

    void text(const std::string& key, const char* value) {
        if (!value) return line(key, "null");
        static const char digits[] = "0123456789abcdef";
        std::string hex = "s:";
        for (const char* c = value; *c; ++c) {
            hex += digits[(unsigned char)*c >> 4];
            hex += digits[(unsigned char)*c & 0xF];
        }
        line(key, hex);
    }

    void writeTo(const std::wstring& path) const {
        if (FILE* file = _wfopen(path.c_str(), L"wb")) {
            std::fwrite(m_text.data(), 1, m_text.size(), file);
            std::fclose(file);
        }
    }

private:
    void line(const std::string& key, const std::string& value) { m_text += key + "=" + value + "\n"; }

    std::string m_text;
};

void recordRecipient(Record& record, const std::string& prefix, const MapiRecipDesc& recipient) {
    record.number(prefix + "ulReserved", recipient.ulReserved);
    record.number(prefix + "ulRecipClass", recipient.ulRecipClass);
    record.text(prefix + "lpszName", recipient.lpszName);
    record.text(prefix + "lpszAddress", recipient.lpszAddress);
    record.number(prefix + "ulEIDSize", recipient.ulEIDSize);
    record.pointer(prefix + "lpEntryID", recipient.lpEntryID);
}

void recordFile(Record& record, const std::string& prefix, const MapiFileDesc& file) {
    record.number(prefix + "ulReserved", file.ulReserved);
    record.number(prefix + "flFlags", file.flFlags);
    record.number(prefix + "nPosition", file.nPosition);
    record.text(prefix + "lpszPathName", file.lpszPathName);
    record.text(prefix + "lpszFileName", file.lpszFileName);
    record.pointer(prefix + "lpFileType", file.lpFileType);
}

void recordMessage(Record& record, const MapiMessage& message) {
    record.number("message.ulReserved", message.ulReserved);
    record.text("message.lpszSubject", message.lpszSubject);
    record.text("message.lpszNoteText", message.lpszNoteText);
    record.text("message.lpszMessageType", message.lpszMessageType);
    record.text("message.lpszDateReceived", message.lpszDateReceived);
    record.text("message.lpszConversationID", message.lpszConversationID);
    record.number("message.flFlags", message.flFlags);
    record.pointer("message.lpOriginator", message.lpOriginator);
    record.number("message.nRecipCount", message.nRecipCount);
    record.pointer("message.lpRecips", message.lpRecips);
    if (message.lpRecips && message.nRecipCount <= MaxEntries)
        for (ULONG i = 0; i < message.nRecipCount; ++i)
            recordRecipient(record, "recip." + std::to_string(i) + ".", message.lpRecips[i]);
    record.number("message.nFileCount", message.nFileCount);
    record.pointer("message.lpFiles", message.lpFiles);
    if (message.lpFiles && message.nFileCount <= MaxEntries)
        for (ULONG i = 0; i < message.nFileCount; ++i)
            recordFile(record, "file." + std::to_string(i) + ".", message.lpFiles[i]);
}

} // namespace

extern "C" __declspec(dllexport) ULONG WINAPI MAPISendMail(LHANDLE session, ULONG_PTR uiParam, lpMapiMessage message,
                                                           FLAGS flags, ULONG reserved) {
    Record record;
    record.number("session", session);
    record.number("uiParam", uiParam);
    record.number("flags", flags);
    record.number("reserved", reserved);
    record.pointer("message", message);
    if (message) recordMessage(record, *message);
    record.writeTo(environmentVariable(L"ZUNO_TEST_MAPI_RECORD"));
    return ULONG(std::wcstoul(environmentVariable(L"ZUNO_TEST_MAPI_RESULT").c_str(), nullptr, 10));
}
