// The Windows stand-in: a copy of the tool in the test's folder with a MAPI32.DLL beside
// it, which the tool loads before any system one. Wine needs to be told to prefer that
// native DLL to its own built-in one, which would hand the mail to the desktop.
#include "RecordingMailClient.h"
#include "mapiRecord.h"

#include "core/win32/windows.h"

#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

// Build outputs are named by Unix paths, which Wine reaches through drive Z:.
fs::path builtFile(const std::string& path) {
    return path[0] == '/' ? "Z:" + path : path;
}

std::wstring wide(const std::string& utf8) {
    return fs::u8path(utf8).wstring();
}

// Simple MAPI's texts are in the ANSI code page.
std::string utf8FromAnsi(const std::string& bytes) {
    std::wstring text(bytes.size(), L'\0');
    text.resize(MultiByteToWideChar(CP_ACP, 0, bytes.data(), int(bytes.size()), text.data(), int(text.size())));
    return fs::path(text).u8string();
}

// A recorded text as UTF-8; a null pointer gives a text no quoted one can equal.
std::string text(const std::string& field) {
    return field == "null" ? "<null>" : field.substr(1, field.size() - 2);
}

// Wine takes WINEDLLOVERRIDES from the Unix environment it was started with, not from the
// environment block a Windows parent hands on; its per-program setting reaches the tool
// however it is started. Real Windows has no built-in MAPI32 to avoid.
class NativeMapiUnderWine {
public:
    NativeMapiUnderWine() {
        if (m_wine) RegSetKeyValueW(HKEY_CURRENT_USER, Key, L"mapi32", REG_SZ, L"native", sizeof(L"native"));
    }
    ~NativeMapiUnderWine() {
        if (m_wine) RegDeleteKeyValueW(HKEY_CURRENT_USER, Key, L"mapi32");
    }

private:
    static constexpr const wchar_t* Key = L"Software\\Wine\\AppDefaults\\mailer.exe\\DllOverrides";
    const bool m_wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
};

} // namespace

MapiRecord readMapiRecord(const fs::path& file) {
    MapiRecord record(1);
    std::ifstream in(file, std::ios::binary);
    for (std::string field; std::getline(in, field, '\0');) {
        if (field.empty()) record.emplace_back();
        else record.back().push_back(field[0] == '"' ? utf8FromAnsi(field) : field);
    }
    record.pop_back();  // the one after the last structure
    return record;
}

struct RecordingMailClient::State {
    NativeMapiUnderWine nativeMapi;
    fs::path dir;
    int result = 0;
    fs::path recordFile() const { return dir / "mapi-record"; }
};

RecordingMailClient::RecordingMailClient(const std::string& workDir, Kind kind) : m_state(nullptr) {
    const fs::path dir = fs::u8path(workDir);
    fs::copy_file(builtFile(MAILER_EXE), dir / "mailer.exe", fs::copy_options::overwrite_existing);
    fs::remove(dir / "MAPI32.DLL");
    if (kind != Kind::Missing)
        fs::copy_file(builtFile(kind == Kind::NoSendFunction ? NOSENDMAIL_MAPI32_DLL : RECORDING_MAPI32_DLL),
                      dir / "MAPI32.DLL");
    m_state = new State{{}, dir};
    fs::remove(m_state->recordFile());
}

RecordingMailClient::~RecordingMailClient() {
    delete m_state;
}

void RecordingMailClient::setResult(int result) {
    m_state->result = result;
}

std::string RecordingMailClient::mailerPath() const {
    return (m_state->dir / "mailer.exe").u8string();
}

std::map<std::string, std::string> RecordingMailClient::environment() const {
    return {
        {"ZUNO_TEST_MAPI_RECORD", m_state->recordFile().u8string()},
        {"ZUNO_TEST_MAPI_RESULT", std::to_string(unsigned(m_state->result))},
    };
}

bool RecordingMailClient::wasCalled() const {
    return fs::exists(m_state->recordFile());
}

RecordedMail RecordingMailClient::lastMail() const {
    RecordedMail mail;
    for (const auto& fields : readMapiRecord(m_state->recordFile())) {
        if (fields[0] == "message") {
            mail.subject = text(fields.at(2));
            mail.note = text(fields.at(3));
        } else if (fields[0] == "recip") {
            auto& list = fields.at(2) == "1" ? mail.to : fields[2] == "2" ? mail.cc : mail.bcc;
            list.push_back(text(fields.at(3)));
        } else if (fields[0] == "file") {
            mail.attachments.push_back(text(fields.at(4)));
        }
    }
    return mail;
}

int runMailer(const std::string& mailer, const std::vector<std::string>& args, const std::string& workDir,
              const std::map<std::string, std::string>& environment) {
    // The tool inherits this process's environment. Every run sets the same variables, so
    // none of one run's values is left for the next.
    for (const auto& [name, value] : environment) SetEnvironmentVariableW(wide(name).c_str(), wide(value).c_str());
    // The tests pass no arguments with quotes or a trailing backslash, so plain quoting does.
    std::wstring commandLine = L"\"" + wide(mailer) + L"\"";
    for (const std::string& argument : args) commandLine += L" \"" + wide(argument) + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(wide(mailer).c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        wide(workDir).c_str(), &startup, &process))
        throw std::runtime_error("cannot start " + mailer + ", error " + std::to_string(GetLastError()));
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return int(exitCode);
}
