#include <zuno/CJsonPrinter.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantDouble.h>
#include <zuno/CVariantInt32.h>
#include <zuno/CVariantInt64.h>
#include <zuno/CVariantMap.h>
#include <zuno/CVariantNull.h>
#include <zuno/CVariantString.h>
#include <zuno/CVariantUInt64.h>

#include "text/printfG.h"
#include "values/variantCast.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace zuno {

namespace {

// Asks for the next element's objects while this one prints: a tree is mostly pointers,
// and the wait for memory dominates printing otherwise.
void prefetch(const void* first, const void* second) {
#if defined(__GNUC__)
    __builtin_prefetch(first);
    if (second) __builtin_prefetch(second);
#else
    (void)first, (void)second;
#endif
}

bool isSurrogate(uint32_t c) { return (c & 0xFFFFF800u) == 0xD800; }

// Where wchar_t has 16 bits, whether the units at `i` are a high and a low surrogate, that
// is one character; where it has 32, every surrogate is a lone half.
bool isSurrogatePair(const wchar_t* chars, size_t i, size_t count) {
    if constexpr (sizeof(wchar_t) == 2) {
        return (uint32_t(chars[i]) & 0xFC00) == 0xD800 && i + 1 < count && (uint32_t(chars[i + 1]) & 0xFC00) == 0xDC00;
    } else {
        (void)chars, (void)i, (void)count;
        return false;
    }
}

} // namespace

CJsonPrinter::CJsonPrinter(bool pretty, JsonMode mode) : m_pretty(pretty), m_mode(mode) {}

String CJsonPrinter::print(const IVariant& variant) {
    m_out.clear();
    m_stack.clear();
    m_indentation = 0;
    printValue(variant);
    while (!m_stack.empty()) {
        Frame& frame = m_stack.back();
        if (frame.next == frame.count) {
            closeContainer();
            continue;
        }
        const size_t index = frame.next++;
        if (index > 0) m_out.append(L',');
        if (m_pretty) {
            if (index > 0) m_out.append(L'\n');
            m_out.appendRepeated(L'\t', size_t(m_indentation));
        }
        if (frame.isMap) {
            // The container is checked when opened; its entries stay put while printing.
            const CVariantMap::Entry* entries = static_cast<const CVariantMap*>(frame.container)->getEntries().data();
            if (index + 1 < frame.count) prefetch(entries[index + 1].value.get(), entries[index + 1].key.object().get());
            const CVariantMap::Entry& entry = entries[index];
            printString(entry.key);
            m_out.append(L':');
            if (m_pretty) m_out.append(L' ');
            printValue(*entry.value);
        } else {
            const P<IVariant>* values = static_cast<const CVariantArray*>(frame.container)->getValues().data();
            if (index + 1 < frame.count) prefetch(values[index + 1].get(), nullptr);
            printValue(*values[index]);
        }
    }
    return m_out.detachString();
}

void CJsonPrinter::printValue(const IVariant& variant) {
    switch (variant.getKind()) {
    case IVariant::Kind::Map: {
        const CVariantMap& map = variantCast<CVariantMap>(variant);
        openContainer(map, true, map.getEntries().size(), L'{');
        break;
    }
    case IVariant::Kind::Array: {
        const CVariantArray& array = variantCast<CVariantArray>(variant);
        openContainer(array, false, array.getValues().size(), L'[');
        break;
    }
    case IVariant::Kind::String: printString(variantCast<CVariantString>(variant).getValue()); break;
    case IVariant::Kind::Int32: printInteger(variantCast<CVariantInt32>(variant).getValue()); break;
    case IVariant::Kind::Int64: printInteger(variantCast<CVariantInt64>(variant).getValue()); break;
    case IVariant::Kind::UInt64: printInteger(variantCast<CVariantUInt64>(variant).getValue()); break;
    case IVariant::Kind::Boolean:
        if (variantCast<CVariantBoolean>(variant).getValue()) {
            m_out.append(L"true", 4);
        } else {
            m_out.append(L"false", 5);
        }
        break;
    case IVariant::Kind::Double: printDouble(variantCast<CVariantDouble>(variant).getValue()); break;
    case IVariant::Kind::Null:
        variantCast<CVariantNull>(variant);
        m_out.append(L"null", 4);
        break;
    default: break;  // a kind this printer does not know prints as nothing
    }
}

void CJsonPrinter::openContainer(const IVariant& container, bool isMap, size_t count, wchar_t bracket) {
    m_out.append(bracket);
    if (m_pretty) m_out.append(L'\n');
    ++m_indentation;
    m_stack.push_back(Frame{&container, isMap, 0, count});
}

void CJsonPrinter::closeContainer() {
    const bool isMap = m_stack.back().isMap;
    m_stack.pop_back();
    --m_indentation;
    if (m_pretty) {
        m_out.append(L'\n');
        m_out.appendRepeated(L'\t', size_t(m_indentation));
    }
    m_out.append(isMap ? L'}' : L']');
}

void CJsonPrinter::printString(const String& text) {
    // Wide text is read in place; other encodings are converted first.
    const IString& object = *text.object();
    if (object.getEncoding() != Encoding::Wide) {
        printString(text.toWide());
        return;
    }
    const wchar_t* chars = static_cast<const wchar_t*>(object.getData());
    const size_t count = size_t(object.getByteLength()) / sizeof(wchar_t);

    const bool exact = m_mode == JsonMode::Exact;
    m_out.append(L'"');
    size_t runStart = 0;
    for (size_t i = 0; i < count; ++i) {
        const wchar_t c = chars[i];
        if (c > L'\\' && !(exact && isSurrogate(uint32_t(c)))) continue;
        wchar_t escaped;
        switch (c) {
        case L'\\': escaped = L'\\'; break;
        case L'"': escaped = L'"'; break;
        case L'\b': escaped = L'b'; break;
        case L'\f': escaped = L'f'; break;
        case L'\n': escaped = L'n'; break;
        case L'\r': escaped = L'r'; break;
        case L'\t': escaped = L't'; break;
        default:
            // Exact mode escapes what JSON forbids raw and what UTF-8 cannot carry.
            if (!exact || (c >= 0x20 && !isSurrogate(uint32_t(c)))) continue;
            if (isSurrogatePair(chars, i, count)) {
                ++i;
                continue;
            }
            m_out.append(chars + runStart, i - runStart);
            printUnicodeEscape(uint32_t(c));
            runStart = i + 1;
            continue;
        }
        m_out.append(chars + runStart, i - runStart);
        wchar_t* out = m_out.extend(2);
        out[0] = L'\\';
        out[1] = escaped;
        runStart = i + 1;
    }
    m_out.append(chars + runStart, count - runStart);
    m_out.append(L'"');
}

void CJsonPrinter::printUnicodeEscape(uint32_t c) {
    static const char Hex[] = "0123456789ABCDEF";
    wchar_t* out = m_out.extend(6);
    out[0] = L'\\';
    out[1] = L'u';
    for (int i = 0; i < 4; ++i) out[2 + i] = wchar_t(Hex[(c >> (12 - 4 * i)) & 0xF]);
}

void CJsonPrinter::printDouble(double value) {
    if (m_mode == JsonMode::Exact) {
        printExactDouble(value);
        return;
    }
    char text[32];
    m_out.appendBytes(text, printfG(value, text));
}

void CJsonPrinter::printExactDouble(double value) {
    if (!std::isfinite(value)) {
        m_out.append(L"null", 4);
        return;
    }
    // The shortest text that reads back as `value`; a bare integer gets ".0" so that it
    // reads back as a double.
    char text[32];
    size_t length = size_t(std::to_chars(text, text + sizeof text, value).ptr - text);
    if (std::string_view(text, length).find_first_of(".e") == std::string_view::npos) {
        text[length++] = '.';
        text[length++] = '0';
    }
    m_out.appendBytes(text, length);
}

template <class T>
void CJsonPrinter::printInteger(T value) {
    char text[24];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, value);
    m_out.appendBytes(text, size_t(result.ptr - text));
}

} // namespace zuno
