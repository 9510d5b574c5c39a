#include "RecordingMailClient.h"
#include "mapiRecord.h"

#include <zuno/win32/windows.h>

#include <algorithm>
#include <cwctype>
#include <stdexcept>
#include <vector>

namespace {

// One argument as the C runtime's command-line parser reads it back: quoted when it holds
// blanks or quotes (or is empty), backslashes doubled only before a quote.
std::wstring quoted(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == std::wstring::npos) return argument;
    std::wstring result = L"\"";
    size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        result.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        result += c;
        backslashes = 0;
    }
    result.append(2 * backslashes, L'\\');
    return result + L"\"";
}

std::wstring upper(std::wstring text) {
    std::transform(text.begin(), text.end(), text.begin(), [](wchar_t c) { return wchar_t(std::towupper(c)); });
    return text;
}

// This process's environment with `extra` set on top; names compare without letter case,
// as Windows does.
std::wstring environmentBlock(const std::map<std::string, std::string>& extra) {
    std::vector<std::wstring> entries;
    if (wchar_t* block = GetEnvironmentStringsW()) {
        for (const wchar_t* entry = block; *entry; entry += wcslen(entry) + 1) entries.emplace_back(entry);
        FreeEnvironmentStringsW(block);
    }
    for (const auto& [name, value] : extra) {
        const std::wstring prefix = upper(wideFromUTF8(name) + L"=");
        entries.erase(std::remove_if(entries.begin(), entries.end(),
                                     [&](const std::wstring& entry) { return upper(entry.substr(0, prefix.size())) == prefix; }),
                      entries.end());
        entries.push_back(wideFromUTF8(name + "=" + value));
    }
    std::wstring result;
    for (const std::wstring& entry : entries) result += entry + L'\0';
    return result + L'\0';
}

} // namespace

int runMailer(const std::string& mailer, const std::vector<std::string>& args, const std::string& workDir,
              const std::map<std::string, std::string>& environment) {
    const std::wstring program = windowsPath(mailer);
    std::wstring commandLine = quoted(program);
    for (const std::string& argument : args) commandLine += L" " + quoted(wideFromUTF8(argument));
    std::wstring block = environmentBlock(environment);
    const std::wstring directory = windowsPath(workDir);

    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, CREATE_UNICODE_ENVIRONMENT,
                        block.data(), directory.c_str(), &startup, &process))
        throw std::runtime_error("cannot start " + mailer + ", error " + std::to_string(GetLastError()));
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return int(int32_t(exitCode));
}
