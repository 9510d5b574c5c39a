// The Windows stand-in: a copy of the tool in the test's folder with a MAPI32.DLL beside
// it, which the tool loads before any system one. Wine needs to be told to prefer that
// native DLL to its own built-in one, which would hand the mail to the desktop.
#include "RecordingMailClient.h"
#include "mapiRecord.h"

#include <zuno/win32/windows.h>

#include <memory>
#include <stdexcept>

namespace {

const char* const RecordVariable = "ZUNO_TEST_MAPI_RECORD";
const char* const ResultVariable = "ZUNO_TEST_MAPI_RESULT";

void copyFile(const std::wstring& from, const std::wstring& to) {
    if (!CopyFileW(from.c_str(), to.c_str(), FALSE))
        throw std::runtime_error("cannot copy " + utf8FromWide(from) + " to " + utf8FromWide(to) + ", error "
                                 + std::to_string(GetLastError()));
}

const char* mapiLibrary(RecordingMailClient::Kind kind) {
    switch (kind) {
    case RecordingMailClient::Kind::Missing: return nullptr;
    case RecordingMailClient::Kind::NoSendFunction: return NOSENDMAIL_MAPI32_DLL;
    default: return RECORDING_MAPI32_DLL;
    }
}

// Wine takes WINEDLLOVERRIDES from the Unix environment it was started with, not from the
// environment block a Windows parent hands on; its per-program setting reaches the tool
// however it is started. Real Windows has no built-in MAPI32 to avoid.
class NativeMapiUnderWine {
public:
    NativeMapiUnderWine() {
        if (isWine())
            RegSetKeyValueW(HKEY_CURRENT_USER, Key, L"mapi32", REG_SZ, L"native", sizeof(L"native"));
    }
    ~NativeMapiUnderWine() {
        if (isWine()) RegDeleteKeyValueW(HKEY_CURRENT_USER, Key, L"mapi32");
    }

private:
    static constexpr const wchar_t* Key = L"Software\\Wine\\AppDefaults\\mailer.exe\\DllOverrides";

    static bool isWine() { return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }
};

} // namespace

struct RecordingMailClient::State {
    NativeMapiUnderWine nativeMapi;
    std::wstring workDir;
    int result = 0;

    std::wstring inWorkDir(const wchar_t* name) const { return workDir + L"\\" + name; }
    std::wstring recordFile() const { return inWorkDir(L"mapi-recording.txt"); }
};

RecordingMailClient::RecordingMailClient(const std::string& workDir, Kind kind) : m_state(nullptr) {
    auto state = std::make_unique<State>();
    state->workDir = windowsPath(workDir);
    copyFile(windowsPath(MAILER_EXE), state->inWorkDir(L"mailer.exe"));
    if (const char* library = mapiLibrary(kind)) copyFile(windowsPath(library), state->inWorkDir(L"MAPI32.DLL"));
    DeleteFileW(state->recordFile().c_str());
    m_state = state.release();
}

RecordingMailClient::~RecordingMailClient() {
    delete m_state;
}

void RecordingMailClient::setResult(int result) {
    m_state->result = result;
}

std::string RecordingMailClient::mailerPath() const {
    return utf8FromWide(m_state->inWorkDir(L"mailer.exe"));
}

std::map<std::string, std::string> RecordingMailClient::environment() const {
    return {
        {"WINEDLLOVERRIDES", "mapi32=n;mscoree,mshtml="},
        {RecordVariable, utf8FromWide(m_state->recordFile())},
        {ResultVariable, std::to_string(unsigned(m_state->result))},
    };
}

bool RecordingMailClient::wasCalled() const {
    return GetFileAttributesW(m_state->recordFile().c_str()) != INVALID_FILE_ATTRIBUTES;
}

RecordedMail RecordingMailClient::lastMail() const {
    const auto record = readMapiRecord(m_state->recordFile());
    const auto text = [&record](const std::string& key) { return utf8FromAnsi(recordedText(record, key)); };
    RecordedMail mail;
    mail.subject = text("message.lpszSubject");
    mail.note = text("message.lpszNoteText");
    for (int i = 0; record.count("recip." + std::to_string(i) + ".ulRecipClass"); ++i) {
        const std::string prefix = "recip." + std::to_string(i) + ".";
        const std::string recipientClass = record.at(prefix + "ulRecipClass");
        auto& list = recipientClass == "1" ? mail.to : recipientClass == "2" ? mail.cc : mail.bcc;
        list.push_back(text(prefix + "lpszName"));
    }
    for (int i = 0; record.count("file." + std::to_string(i) + ".lpszPathName"); ++i)
        mail.attachments.push_back(text("file." + std::to_string(i) + ".lpszPathName"));
    return mail;
}
