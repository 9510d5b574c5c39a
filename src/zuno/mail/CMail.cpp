#include <zuno/CMail.h>
#include <zuno/IPathes.h>

namespace zuno {

void CMail::clear() {
    m_subject = String::empty();
    m_note = String::empty();
    m_attachments.clear();
    m_toRecipients.clear();
    m_ccRecipients.clear();
    m_bccRecipients.clear();
}

void CMail::setSubject(const String& subject) {
    m_subject = subject.length() > MaxSubjectLength ? subject.substring(0, MaxSubjectLength) : subject;
}

void CMail::setNote(const String& note) {
    m_note = note;
}

void CMail::addAttachment(const P<IURI>& uri) {
    const String path = getPathes()->uriToPath(uri, false);
    static_cast<IMail*>(this)->addAttachmentPath(path);
}

void CMail::addAttachmentPath(const String& path) {
    m_attachments.push_back(toNarrow(path));
}

void CMail::addToRecipient(const String& recipient) {
    m_toRecipients.push_back(toNarrow(recipient));
}

void CMail::addCcRecipient(const String& recipient) {
    m_ccRecipients.push_back(toNarrow(recipient));
}

void CMail::addBccRecipient(const String& recipient) {
    m_bccRecipients.push_back(toNarrow(recipient));
}

std::string CMail::toNarrow(const String& text) {
    const String narrow = text.toCP();
    return std::string(narrow.c_str(), size_t(narrow->getByteLength()));
}

} // namespace zuno
