#pragma once

#include <zuno/CObject.h>
#include <zuno/IMail.h>

#include <string>
#include <vector>

namespace zuno {

// A mail collected for the user's mail client. The texts are kept as narrow code-page text,
// converted when an entry is added (subject and note when the mail is sent). The hand-off
// itself, send() and isMailClientRegistered(), is platform code: Simple MAPI on Windows
// (win32/CMail.cpp), the desktop's mail client on POSIX (posix/CMail.cpp).
class CMail : public CObject, public IMail {
public:
    static constexpr int32_t MaxSubjectLength = 255;

    void clear() override;
    bool isMailClientRegistered() override;
    void setSubject(const String& subject) override;
    void setNote(const String& note) override;
    void addAttachment(const P<IURI>& uri) override;
    void addAttachmentPath(const String& path) override;
    void addToRecipient(const String& recipient) override;
    void addCcRecipient(const String& recipient) override;
    void addBccRecipient(const String& recipient) override;
    int32_t send() override;

    String getSubject() const { return m_subject; }
    String getNote() const { return m_note; }
    const std::vector<std::string>& getAttachments() const { return m_attachments; }
    const std::vector<std::string>& getToRecipients() const { return m_toRecipients; }
    const std::vector<std::string>& getCcRecipients() const { return m_ccRecipients; }
    const std::vector<std::string>& getBccRecipients() const { return m_bccRecipients; }

private:
    static std::string toNarrow(const String& text);

    String m_subject = String::empty();
    String m_note = String::empty();
    std::vector<std::string> m_attachments;
    std::vector<std::string> m_toRecipients;
    std::vector<std::string> m_ccRecipients;
    std::vector<std::string> m_bccRecipients;
};

} // namespace zuno
