#include "mapiRecord.h"

#include <zuno/win32/windows.h>

#include <filesystem>
#include <fstream>

namespace {

std::wstring convertToWide(UINT codePage, const std::string& text) {
    if (text.empty()) return {};
    const int count = MultiByteToWideChar(codePage, 0, text.data(), int(text.size()), nullptr, 0);
    std::wstring wide(size_t(count), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), int(text.size()), wide.data(), count);
    return wide;
}

std::string convertFromWide(UINT codePage, const std::wstring& text) {
    if (text.empty()) return {};
    const int size = WideCharToMultiByte(codePage, 0, text.data(), int(text.size()), nullptr, 0, nullptr, nullptr);
    std::string narrow(size_t(size), '\0');
    WideCharToMultiByte(codePage, 0, text.data(), int(text.size()), narrow.data(), size, nullptr, nullptr);
    return narrow;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

} // namespace

std::wstring wideFromUTF8(const std::string& text) {
    return convertToWide(CP_UTF8, text);
}

std::string utf8FromWide(const std::wstring& text) {
    return convertFromWide(CP_UTF8, text);
}

std::string utf8FromAnsi(const std::string& bytes) {
    return utf8FromWide(convertToWide(CP_ACP, bytes));
}

std::string ansiFromUTF8(const std::string& text) {
    return convertFromWide(CP_ACP, wideFromUTF8(text));
}

std::wstring windowsPath(const std::string& path) {
    const std::wstring wide = wideFromUTF8(path);
    return !wide.empty() && wide[0] == L'/' ? L"Z:" + wide : wide;
}

std::map<std::string, std::string> readMapiRecord(const std::wstring& path) {
    std::map<std::string, std::string> record;
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        const size_t equals = line.find('=');
        if (equals != std::string::npos) record[line.substr(0, equals)] = line.substr(equals + 1);
    }
    return record;
}

std::string recordedText(const std::map<std::string, std::string>& record, const std::string& key) {
    const auto entry = record.find(key);
    if (entry == record.end() || entry->second.compare(0, 2, "s:") != 0) return "<null>";
    const std::string& hex = entry->second;
    std::string bytes;
    for (size_t i = 2; i + 1 < hex.size(); i += 2) {
        const int high = hexDigit(hex[i]), low = hexDigit(hex[i + 1]);
        if (high < 0 || low < 0) return "<bad hex>";
        bytes += char(high * 16 + low);
    }
    return bytes;
}
