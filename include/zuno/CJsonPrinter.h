#pragma once

#include <zuno/CObject.h>
#include <zuno/CWideTextBuffer.h>
#include <zuno/IVariant.h>
#include <zuno/JsonMode.h>
#include <zuno/String.h>

#include <cstdint>
#include <vector>

namespace zuno {

// Turns a tree of variants into JSON text, compact ([1,2,3]) or pretty (one element per
// line, indented by tabs). By default strings escape only backslash, quote, backspace,
// form feed, line feed, carriage return and tab, every other character being written as
// it is, and doubles are written as printf's "%g" writes them, on every platform;
// JsonMode::Exact writes text that reads back exactly (see JsonMode.h). A variant of an unknown
// kind prints as empty text; one that claims a kind without being of its class raises
// CCastError. Trees of any depth print without recursion (a tree that contains itself
// never finishes).
class CJsonPrinter : public CObject {
public:
    explicit CJsonPrinter(bool pretty = false, JsonMode mode = JsonMode::Default);

    String print(const IVariant& variant);

private:
    struct Frame {
        const IVariant* container;
        bool isMap;
        size_t next;   // index of the next element
        size_t count;
    };

    // Writes a scalar, or opens a container and pushes its frame.
    void printValue(const IVariant& variant);
    void printString(const String& text);
    void printDouble(double value);
    void printExactDouble(double value);
    // Writes `c` as \u followed by four hexadecimal digits.
    void printUnicodeEscape(uint32_t c);
    template <class T>
    void printInteger(T value);
    void openContainer(const IVariant& container, bool isMap, size_t count, wchar_t bracket);
    void closeContainer();
    void newLineAndIndent();

    bool m_pretty;
    JsonMode m_mode;
    int32_t m_indentation = 0;  // tabs
    CWideTextBuffer m_out;
    std::vector<Frame> m_stack;
};

} // namespace zuno
