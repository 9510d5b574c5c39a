#include "CMailerFileReader.h"
#include "xmlNestingDepth.h"

#include "text/utf8Decode.h"

#include <zuno/CURI.h>

#include <string>

namespace mailer {

using namespace zuno;

namespace {

std::string readAll(std::FILE* file) {
    std::string content;
    char buffer[65536];
    size_t read;
    while ((read = std::fread(buffer, 1, sizeof buffer, file)) > 0) content.append(buffer, read);
    return content;
}

} // namespace

void CMailerFileReader::load(std::FILE* file) {
    const std::string content = readAll(file);
    m_refused = !isWellFormedUTF8(content) || xmlNestingDepth(content) > MaxNestingDepth;
    if (m_refused) return;
    std::rewind(file);
    m_document.LoadFile(file, TIXML_ENCODING_UTF8);
}

bool CMailerFileReader::isMailerFile() const {
    const TiXmlElement* root = m_document.RootElement();
    return !m_refused && root && root->ValueStr() == "mailerfile";
}

void CMailerFileReader::fillMail(IMail& mail) const {
    const TiXmlElement* root = m_document.RootElement();
    if (const TiXmlElement* subject = root->FirstChildElement("subject")) mail.setSubject(textOf(*subject));
    if (const TiXmlElement* note = root->FirstChildElement("note")) mail.setNote(textOf(*note));
    forEachEntry("torecipients", "recipient", [&](const String& text) { mail.addToRecipient(text); });
    forEachEntry("ccrecipients", "recipient", [&](const String& text) { mail.addCcRecipient(text); });
    forEachEntry("bccrecipients", "recipient", [&](const String& text) { mail.addBccRecipient(text); });
    forEachEntry("attachments", "attachment", [&](const String& text) { mail.addAttachment(make<CURI>(text)); });
}

// The list starts at the first element named `entry`; from there every following sibling
// element counts, whatever its name.
template <class Add>
void CMailerFileReader::forEachEntry(const char* container, const char* entry, Add add) const {
    const TiXmlElement* list = m_document.RootElement()->FirstChildElement(container);
    if (!list) return;
    for (const TiXmlElement* item = list->FirstChildElement(entry); item; item = item->NextSiblingElement())
        add(textOf(*item));
}

// The text of the element's first child when that is a text node, else the empty text.
String CMailerFileReader::textOf(const TiXmlElement& element) {
    const TiXmlNode* first = element.FirstChild();
    const TiXmlText* text = first ? first->ToText() : nullptr;
    if (!text) return String::empty();
    const std::string& value = text->ValueStr();
    return String::fromUTF8ToWide(value.data(), int32_t(value.size()));
}

} // namespace mailer
