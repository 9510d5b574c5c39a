#pragma once

#include <zuno/CException.h>

namespace zuno {

// A framework error. The message comes first; the name falls back to "Error".
class CError : public CException {
public:
    explicit CError(const String& message = String(), const String& name = String()) : CException(message, name) {}
};

// Errors that differ from CError only by class and name.
template <const wchar_t* DefaultName>
class TNamedError : public CError {
public:
    explicit TNamedError(const String& message = String()) : CError(message, DefaultName) {}
};

namespace errorNames {
inline constexpr wchar_t NoSuchObject[] = L"NoSuchObjectError";
inline constexpr wchar_t ReadOnly[] = L"ReadOnlyError";
inline constexpr wchar_t Parse[] = L"ParseError";
inline constexpr wchar_t JsonParser[] = L"JSONParser Error";
inline constexpr wchar_t InvalidVolumeID[] = L"InvalidVolumeIDError";
} // namespace errorNames

class CNoSuchObjectError : public TNamedError<errorNames::NoSuchObject> { using TNamedError::TNamedError; };
class CReadOnlyError : public TNamedError<errorNames::ReadOnly> { using TNamedError::TNamedError; };
class CParseError : public TNamedError<errorNames::Parse> { using TNamedError::TNamedError; };
class CJsonParserError : public TNamedError<errorNames::JsonParser> { using TNamedError::TNamedError; };
class CInvalidVolumeIDError : public TNamedError<errorNames::InvalidVolumeID> { using TNamedError::TNamedError; };

} // namespace zuno
