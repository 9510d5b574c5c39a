// JSON: whatever the parser accepts, the printer writes as text the parser reads back into
// the same tree. Numbers are only required to stay numbers: the printer's default rules
// ("%g", six significant digits) and the parser's number rules do not promise more.
#include <zuno/CException.h>
#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CUTF8InStream.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantMap.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

using namespace zuno;

namespace {

bool hasNonFiniteDouble(const IVariant& value) {
    switch (value.getKind()) {
    case IVariant::Kind::Double: return !std::isfinite(value.getDouble());
    case IVariant::Kind::Array:
        for (const P<IVariant>& element : value.asArray().getValues())
            if (hasNonFiniteDouble(*element)) return true;
        return false;
    case IVariant::Kind::Map:
        for (const CVariantMap::Entry& entry : value.asMap().getEntries())
            if (hasNonFiniteDouble(*entry.value)) return true;
        return false;
    default: return false;
    }
}

bool sameTree(const IVariant& a, const IVariant& b) {
    if (a.isNumber() && b.isNumber()) return true;
    if (a.getKind() != b.getKind()) return false;
    switch (a.getKind()) {
    case IVariant::Kind::Boolean: return a.getBoolean() == b.getBoolean();
    case IVariant::Kind::String: return a.getString() == b.getString();
    case IVariant::Kind::Array: {
        const auto& x = a.asArray().getValues();
        const auto& y = b.asArray().getValues();
        if (x.size() != y.size()) return false;
        for (size_t i = 0; i < x.size(); ++i)
            if (!sameTree(*x[i], *y[i])) return false;
        return true;
    }
    case IVariant::Kind::Map: {
        const auto& x = a.asMap().getEntries();
        const auto& y = b.asMap().getEntries();
        if (x.size() != y.size()) return false;
        for (size_t i = 0; i < x.size(); ++i)
            if (x[i].key != y[i].key || !sameTree(*x[i].value, *y[i].value)) return false;
        return true;
    }
    default: return true;
    }
}

// Parses as zuno-json does (a UTF-8 stream) or from a String, by the first byte.
P<IVariant> parse(const uint8_t* data, size_t size) {
    const char* text = reinterpret_cast<const char*>(data + 1);
    if (data[0] & 1) return CJsonParser(make<CUTF8InStream>(std::string(text, size - 1))).parseDocument();
    return CJsonParser::parse(String::fromUTF8ToWide(text, int32_t(size - 1)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    P<IVariant> tree;
    try {
        tree = parse(data, size);
    } catch (const CException&) {
        return 0;  // refused with the parser's error: fine
    }
    if (!tree) return 0;
    // A non-finite double prints as "inf" or "nan", which no JSON reader takes back.
    if (hasNonFiniteDouble(*tree)) return 0;
    for (const bool pretty : {false, true}) {
        const String printed = CJsonPrinter(pretty).print(*tree);
        P<IVariant> again;
        try {
            again = CJsonParser::parse(printed);
        } catch (const CException&) {
            std::abort();  // printed text that the parser refuses
        }
        if (!again || !sameTree(*tree, *again)) std::abort();
    }
    return 0;
}
