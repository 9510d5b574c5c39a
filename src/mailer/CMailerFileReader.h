#pragma once

#include <zuno/IMail.h>

#include <tinyxml.h>

#include <cstdio>

namespace mailer {

// Reads a mailer file: XML whose root element is "mailerfile", holding "subject", "note",
// "torecipients", "ccrecipients", "bccrecipients" and "attachments".
class CMailerFileReader {
public:
    // Deeper nesting than any mailer file needs; deeper documents are refused unread, as
    // the XML parser recurses once per level and would exhaust the stack. So is text that
    // is not well-formed UTF-8, which the parser would read past its end.
    static constexpr size_t MaxNestingDepth = 1000;

    // Loads the document from the open file (UTF-8). Whether the XML is well-formed is not
    // judged here: only the root element decides whether the file is usable.
    void load(std::FILE* file);
    // True when the document's first element is named "mailerfile" (case-sensitive).
    bool isMailerFile() const;
    // Copies subject, note, recipients and attachments into the mail, in document order.
    // The note and every entry leave the document once copied, so that the document and the
    // mail never both hold all of the text: the reader is spent afterwards.
    void fillMail(zuno::IMail& mail);

private:
    static bool isSafeToParse(std::FILE* file);
    template <class Add>
    void forEachEntry(const char* container, const char* entry, Add add);
    static const std::string* firstTextOf(const TiXmlElement& element);
    static zuno::String textOf(const TiXmlElement& element);
    static zuno::String noteTextOf(const TiXmlElement& element);

    TiXmlDocument m_document;
    bool m_refused = false;  // by the checks before parsing
};

} // namespace mailer
