#include "CMailerFileReader.h"
#include "xmlNestingDepth.h"

#include "text/utf8Decode.h"

#include <zuno/CURI.h>

#include <string>

namespace mailer {

using namespace zuno;

namespace {

// The whole file, in one buffer of its size.
std::string readAll(std::FILE* file) {
    std::string content;
    if (std::fseek(file, 0, SEEK_END) == 0) {
        const long size = std::ftell(file);
        if (size > 0) content.reserve(size_t(size));
        std::rewind(file);
    }
    char buffer[65536];
    size_t read;
    while ((read = std::fread(buffer, 1, sizeof buffer, file)) > 0) content.append(buffer, read);
    return content;
}

// XML reads every line break as LF: CR LF and a lone CR become LF before parsing.
void normalizeLineBreaks(std::string& text) {
    size_t out = 0;
    for (size_t in = 0; in < text.size(); ++in) {
        if (text[in] != '\r') {
            text[out++] = text[in];
            continue;
        }
        text[out++] = '\n';
        if (in + 1 < text.size() && text[in + 1] == '\n') ++in;
    }
    text.resize(out);
}

} // namespace

void CMailerFileReader::load(std::FILE* file) {
    std::string content = readAll(file);
    m_refused = !isWellFormedUTF8(content) || xmlNestingDepth(content) > MaxNestingDepth;
    if (m_refused) return;
    // Parsed from the text already read, rather than read again into a second buffer: the
    // document alone holds several times the file.
    normalizeLineBreaks(content);
    m_document.Parse(content.c_str(), nullptr, TIXML_ENCODING_UTF8);
}

bool CMailerFileReader::isMailerFile() const {
    const TiXmlElement* root = m_document.RootElement();
    return !m_refused && root && root->ValueStr() == "mailerfile";
}

void CMailerFileReader::fillMail(IMail& mail) {
    TiXmlElement* root = m_document.RootElement();
    if (const TiXmlElement* subject = root->FirstChildElement("subject")) mail.setSubject(textOf(*subject));
    if (TiXmlElement* note = root->FirstChildElement("note")) {
        mail.setNote(noteTextOf(*note));
        root->RemoveChild(note);
    }
    forEachEntry("torecipients", "recipient", [&](const String& text) { mail.addToRecipient(text); });
    forEachEntry("ccrecipients", "recipient", [&](const String& text) { mail.addCcRecipient(text); });
    forEachEntry("bccrecipients", "recipient", [&](const String& text) { mail.addBccRecipient(text); });
    forEachEntry("attachments", "attachment", [&](const String& text) { mail.addAttachment(make<CURI>(text)); });
}

// The list starts at the first element named `entry`; from there every following sibling
// element counts, whatever its name. Each leaves the document once added.
template <class Add>
void CMailerFileReader::forEachEntry(const char* container, const char* entry, Add add) {
    TiXmlElement* list = m_document.RootElement()->FirstChildElement(container);
    if (!list) return;
    TiXmlElement* item = list->FirstChildElement(entry);
    while (item) {
        add(textOf(*item));
        TiXmlElement* next = item->NextSiblingElement();
        list->RemoveChild(item);
        item = next;
    }
}

// The element's first child when that is a text node, else none.
const std::string* CMailerFileReader::firstTextOf(const TiXmlElement& element) {
    const TiXmlNode* first = element.FirstChild();
    const TiXmlText* text = first ? first->ToText() : nullptr;
    return text ? &text->ValueStr() : nullptr;
}

// The text of the element's first child when that is a text node, else the empty text.
String CMailerFileReader::textOf(const TiXmlElement& element) {
    const std::string* value = firstTextOf(element);
    return value ? String::fromUTF8ToWide(value->data(), int32_t(value->size())) : String::empty();
}

// The note is the one text that can be long, so it stays UTF-8: a byte per character where
// wide text takes four on Linux. A character reference can still have made it ill-formed
// (a lone surrogate); such a note is decoded like every other text, which replaces what is
// not UTF-8.
String CMailerFileReader::noteTextOf(const TiXmlElement& element) {
    const std::string* value = firstTextOf(element);
    if (!value || !isWellFormedUTF8(*value)) return textOf(element);
    return String::fromUTF8(*value);
}

} // namespace mailer
