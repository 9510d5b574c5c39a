#include <zuno/CMail.h>
#include <zuno/win32/windows.h>

#include <gtest/gtest.h>

#include <cwchar>

using namespace zuno;

namespace {

const wchar_t* const ScratchKey = L"Software\\zuno-tests\\classes";

// Points HKEY_CLASSES_ROOT at an empty key of the current user while a test runs.
class ScratchClassesRoot {
public:
    ScratchClassesRoot() {
        RegDeleteTreeW(HKEY_CURRENT_USER, ScratchKey);
        RegCreateKeyExW(HKEY_CURRENT_USER, ScratchKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_key, nullptr);
        RegOverridePredefKey(HKEY_CLASSES_ROOT, m_key);
    }

    ~ScratchClassesRoot() {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        RegCloseKey(m_key);
        RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\zuno-tests");
    }

    void setCommand(DWORD type, const void* data, DWORD size) {
        RegSetKeyValueW(m_key, L"mailto\\shell\\open\\command", nullptr, type, data, size);
    }

    void setCommand(const wchar_t* text, DWORD type = REG_SZ) {
        setCommand(type, text, DWORD((std::wcslen(text) + 1) * sizeof(wchar_t)));
    }

private:
    HKEY m_key = nullptr;
};

} // namespace

TEST(CMail, findsNoMailClientWithoutAMailtoCommand) {
    ScratchClassesRoot classes;
    CMail mail;
    EXPECT_FALSE(mail.isMailClientRegistered());

    RegSetKeyValueW(HKEY_CLASSES_ROOT, L"mailto\\shell\\open\\command", L"other", REG_SZ, L"x", 4);
    EXPECT_FALSE(mail.isMailClientRegistered()) << "a key without a default value";
    classes.setCommand(L"");
    EXPECT_FALSE(mail.isMailClientRegistered()) << "an empty command";
    const DWORD number = 1;
    classes.setCommand(REG_DWORD, &number, sizeof(number));
    EXPECT_FALSE(mail.isMailClientRegistered()) << "a command that is no text";
}

TEST(CMail, findsAMailClientForAnyCommandText) {
    ScratchClassesRoot classes;
    CMail mail;

    classes.setCommand(L"\"C:\\Program Files\\Gone\\client.exe\" -compose \"%1\"");
    EXPECT_TRUE(mail.isMailClientRegistered());
    classes.setCommand(L"%ProgramFiles%\\client.exe", REG_EXPAND_SZ);
    EXPECT_TRUE(mail.isMailClientRegistered());
}
