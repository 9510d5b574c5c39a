#include <zuno/CMail.h>
#include "core/win32/windows.h"

#include <gtest/gtest.h>

#include <cwchar>

using namespace zuno;

TEST(CMail, findsAMailClientForAnyTextAsTheMailtoCommand) {
    // HKEY_CLASSES_ROOT is pointed at an empty key of the current user while the test runs.
    const wchar_t* const scratch = L"Software\\zuno-tests";
    HKEY classes = nullptr;
    RegDeleteTreeW(HKEY_CURRENT_USER, scratch);
    RegCreateKeyExW(HKEY_CURRENT_USER, scratch, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &classes, nullptr);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
    const auto registeredWith = [classes](const wchar_t* valueName, const wchar_t* text, DWORD type = REG_SZ) {
        RegSetKeyValueW(classes, L"mailto\\shell\\open\\command", valueName, type, text,
                        DWORD((std::wcslen(text) + 1) * sizeof(wchar_t)));
        return CMail().isMailClientRegistered();
    };

    EXPECT_FALSE(CMail().isMailClientRegistered());
    EXPECT_FALSE(registeredWith(L"other", L"x")) << "a key without a default value";
    EXPECT_FALSE(registeredWith(nullptr, L""));
    EXPECT_TRUE(registeredWith(nullptr, L"\"C:\\Program Files\\Gone\\client.exe\" -compose \"%1\""));
    EXPECT_TRUE(registeredWith(nullptr, L"%ProgramFiles%\\client.exe", REG_EXPAND_SZ));
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(classes);
    RegDeleteTreeW(HKEY_CURRENT_USER, scratch);
}
