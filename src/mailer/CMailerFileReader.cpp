#include "CMailerFileReader.h"
#include "xmlNestingDepth.h"

#include "text/utf8Decode.h"

#include <zuno/CURI.h>

#include <string>

namespace mailer {

using namespace zuno;

namespace {

// The whole file, in one buffer of its size: grown by doubling, its larger blocks, once freed,
// stay with the C library and add to the tool's peak (0.5 MB on a 1.5 MB file, measured).
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

} // namespace

void CMailerFileReader::load(std::FILE* file) {
    m_refused = !isSafeToParse(file);
    if (m_refused) return;
    std::rewind(file);
    m_document.LoadFile(file, TIXML_ENCODING_UTF8);
}

// Whether the text is well-formed UTF-8 and nested no deeper than the bound. The copy read for
// these checks is gone before the parser reads the file into a buffer of its own, so the two
// are never held together beside the document, which alone takes several times the file.
bool CMailerFileReader::isSafeToParse(std::FILE* file) {
    const std::string content = readAll(file);
    return isWellFormedUTF8(content) && xmlNestingDepth(content) <= MaxNestingDepth;
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

// The note is the one text that can be long. Where wide characters take four bytes (Linux)
// it stays UTF-8, a byte per character, unless a character reference made it ill-formed (a
// lone surrogate): such a note is decoded like every other text, which replaces what is not
// UTF-8. Where they take two (Windows), wide text is not much larger and is what the Simple
// MAPI hand-off converts fastest.
String CMailerFileReader::noteTextOf(const TiXmlElement& element) {
    const std::string* value = firstTextOf(element);
    if (sizeof(wchar_t) == 2 || !value || !isWellFormedUTF8(*value)) return textOf(element);
    return String::fromUTF8(*value);
}

} // namespace mailer
