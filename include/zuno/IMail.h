#pragma once

#include <zuno/IBase.h>
#include <zuno/IURI.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <cstdint>

namespace zuno {

// One e-mail to hand to the user's mail client. The order of the operations is part of
// the interface.
class IMail : public virtual IBase {
public:
    // Empties subject and note and removes all recipients and attachments.
    virtual void clear() = 0;
    // Whether the system has a registered handler for mail links.
    virtual bool isMailClientRegistered() = 0;
    // Subjects longer than 255 characters are cut to their first 255.
    virtual void setSubject(const String& subject) = 0;
    virtual void setNote(const String& note) = 0;
    // The file URI is turned into a local path by the path service.
    virtual void addAttachment(const P<IURI>& uri) = 0;
    virtual void addAttachmentPath(const String& path) = 0;
    virtual void addToRecipient(const String& recipient) = 0;
    virtual void addCcRecipient(const String& recipient) = 0;
    virtual void addBccRecipient(const String& recipient) = 0;
    // Opens the mail client's compose window; the result is 0 or a Simple MAPI code
    // (-1: no mail client could be started, -2: it offers no way to send).
    virtual int32_t send() = 0;
};

} // namespace zuno
