#pragma once

#include <filesystem>
#include <string>
#include <vector>

// What the recording MAPI32.DLL wrote down for one MAPISendMail call: one entry per structure
// it received (the call's own arguments, the message, each recipient, each file), holding the
// structure's name and then its fields in declaration order: numbers in decimal, texts in
// double quotes (turned from the ANSI code page into UTF-8), other pointers as "set" or "null".
// Empty when there was no call.
using MapiRecord = std::vector<std::vector<std::string>>;

MapiRecord readMapiRecord(const std::filesystem::path& file);
