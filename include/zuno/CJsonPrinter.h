#pragma once

#include <zuno/CObject.h>
#include <zuno/CWideTextBuffer.h>
#include <zuno/IVariant.h>
#include <zuno/String.h>

#include <cstdint>
#include <vector>

namespace zuno {

// Turns a tree of variants into JSON text, compact ([1,2,3]) or pretty (one element per
// line, indented by tabs). Strings escape only backslash, quote, backspace, form feed,
// line feed, carriage return and tab; every other character is written as it is. Doubles
// are written as printf's "%g" writes them, on every platform. A variant of an unknown
// kind prints as empty text; one that claims a kind without being of its class raises
// CCastError. Trees of any depth print without recursion (a tree that contains itself
// never finishes).
class CJsonPrinter : public CObject {
public:
    explicit CJsonPrinter(bool pretty = false);

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
    template <class T>
    void printInteger(T value);
    void openContainer(const IVariant& container, bool isMap, size_t count, wchar_t bracket);
    void closeContainer();
    void newLineAndIndent();

    bool m_pretty;
    int32_t m_indentation = 0;  // tabs
    CWideTextBuffer m_out;
    std::vector<Frame> m_stack;
};

} // namespace zuno
