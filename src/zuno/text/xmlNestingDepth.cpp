#include <zuno/xmlNestingDepth.h>

#include <algorithm>

namespace zuno {

namespace {

// Position just past `terminator` at or after `from`, or the end of the text.
size_t skipPast(std::string_view text, size_t from, std::string_view terminator) {
    const size_t found = text.find(terminator, from);
    return found == std::string_view::npos ? text.size() : found + terminator.size();
}

// Whether the quote at `i` opens an attribute value: it follows "=" (blanks between).
bool opensValue(std::string_view text, size_t from, size_t i) {
    while (i > from && (text[i - 1] == ' ' || text[i - 1] == '\t' || text[i - 1] == '\n' || text[i - 1] == '\r')) --i;
    return i > from && text[i - 1] == '=';
}

// Position just past the '>' closing a tag that starts at `from`, quoted values skipped;
// `selfClosing` tells whether it ended in "/>".
size_t skipTag(std::string_view text, size_t from, bool& selfClosing) {
    selfClosing = false;
    for (size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if ((c == '"' || c == '\'') && opensValue(text, from, i)) {
            const size_t close = text.find(c, i + 1);
            if (close == std::string_view::npos) return text.size();
            i = close;
        } else if (c == '>') {
            selfClosing = i > from && text[i - 1] == '/';
            return i + 1;
        }
    }
    return text.size();
}

} // namespace

size_t xmlNestingDepth(std::string_view text) {
    size_t depth = 0, deepest = 0;
    size_t i = 0;
    while ((i = text.find('<', i)) != std::string_view::npos) {
        const std::string_view rest = text.substr(i);
        if (rest.rfind("<!--", 0) == 0) {
            i = skipPast(text, i + 4, "-->");
        } else if (rest.rfind("<![CDATA[", 0) == 0) {
            i = skipPast(text, i + 9, "]]>");
        } else if (rest.rfind("<?", 0) == 0) {
            i = skipPast(text, i + 2, "?>");
        } else if (rest.rfind("<!", 0) == 0) {
            bool ignored;
            i = skipTag(text, i + 2, ignored);
        } else if (rest.rfind("</", 0) == 0) {
            depth = depth > 0 ? depth - 1 : 0;
            i = skipPast(text, i + 2, ">");
        } else {
            bool selfClosing;
            i = skipTag(text, i + 1, selfClosing);
            if (!selfClosing) deepest = std::max(deepest, ++depth);
            else deepest = std::max(deepest, depth + 1);
        }
    }
    return deepest;
}

} // namespace zuno
