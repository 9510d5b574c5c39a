#pragma once

#include <cstdint>

// The results of handing a mail to the user's mail client, as IMail::send answers them and
// the mailer passes them on as its exit code: Simple MAPI's published codes on every
// platform, and two values of the tool's own.
namespace zuno::MailResult {

inline constexpr int32_t Success = 0;                  // SUCCESS_SUCCESS
inline constexpr int32_t UserAbort = 1;                // MAPI_USER_ABORT
inline constexpr int32_t Failure = 2;                  // MAPI_E_FAILURE
inline constexpr int32_t AttachmentNotFound = 11;      // MAPI_E_ATTACHMENT_NOT_FOUND
inline constexpr int32_t AttachmentOpenFailure = 12;   // MAPI_E_ATTACHMENT_OPEN_FAILURE
inline constexpr int32_t BadRecipientType = 15;        // MAPI_E_BAD_RECIPTYPE
inline constexpr int32_t TextTooLarge = 18;            // MAPI_E_TEXT_TOO_LARGE
inline constexpr int32_t NotSupported = 26;            // MAPI_E_NOT_SUPPORTED

// No mail client: MAPI32.DLL cannot be loaded, or no mailto handler is set up.
inline constexpr int32_t NoMailClient = -1;
// MAPI32.DLL offers no MAPISendMail.
inline constexpr int32_t NoSendFunction = -2;

} // namespace zuno::MailResult
