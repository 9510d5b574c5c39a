#pragma once

#include <map>
#include <string>

// Text and path helpers of the Windows end-to-end tests, and the reading of what the
// recording MAPI32.DLL wrote down.

std::wstring wideFromUTF8(const std::string& text);
std::string utf8FromWide(const std::wstring& text);
// Bytes in the ANSI code page, as Simple MAPI passes text, and UTF-8 text in it.
std::string utf8FromAnsi(const std::string& bytes);
std::string ansiFromUTF8(const std::string& text);
// A path the Windows API accepts: a POSIX absolute path (as CMake names build outputs)
// is reached through Wine's drive Z:.
std::wstring windowsPath(const std::string& path);

// The "key=value" lines of one recorded MAPISendMail call; empty when there is none.
std::map<std::string, std::string> readMapiRecord(const std::wstring& path);
// The bytes of a recorded text ("s:" and hex digits); a recorded null pointer or a missing
// key gives "<null>", which no hex text decodes to.
std::string recordedText(const std::map<std::string, std::string>& record, const std::string& key);
