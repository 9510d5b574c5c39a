#pragma once

namespace zuno::messageTexts {

// The fixed English texts the framework passes to its exception classes (parser and store
// messages keep their wording, misspellings included). %NAME% placeholders are filled by
// the code that raises them.
inline constexpr wchar_t InputStreamReadError[] = L"Input stream read error";
inline constexpr wchar_t NoMoreLines[] = L"Error readline. No more lines to read";
inline constexpr wchar_t XmlParseError[] = L"XML Parse Error in file '%FILE%', line %LINE%.";
inline constexpr wchar_t UnknownParseValue[] = L"unknown object for parse value";
inline constexpr wchar_t CreateEventFailed[] = L"Error creating event (%ERRORDESC%).";
inline constexpr wchar_t CreateThreadFailed[] = L"Error creating thread (%ERRORDESC%).";
inline constexpr wchar_t UniqueFileNameFailed[] = L"Error creating unique file name. %ERRORDESC%";
inline constexpr wchar_t UniqueFolderNameFailed[] = L"Error creating unique folder name. %ERRORDESC%";
inline constexpr wchar_t NotAPathItemIdList[] = L"The ITEMIDLIST does not refer to a path.";
inline constexpr wchar_t InvalidDriveLetter[] = L"Invalid drive letter";
inline constexpr wchar_t StreamClosed[] = L"The stream has been closed.";
inline constexpr wchar_t UnknownRegistryBaseKey[] = L"Unknown registry base key: ";
inline constexpr wchar_t RegistryAssignToFailed[] = L"CRegistryValueStore::assignTo failed with '%d'";
inline constexpr wchar_t NoReadAccess[] = L"No read access";
inline constexpr wchar_t NoWriteAccess[] = L"No write access";
inline constexpr wchar_t NotImplemented[] = L"Not implemented";

} // namespace zuno::messageTexts
