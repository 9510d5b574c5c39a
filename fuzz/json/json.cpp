// JSON: whatever the parser accepts, the printer writes as text the parser reads back into
// the same tree. In the default mode numbers are only required to stay numbers: the
// printer's "%g" (six significant digits) and the parser's number rules do not promise
// more. In the exact mode they come back of the same kind with the same value.
#include <zuno/CException.h>
#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CUTF8InStream.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantMap.h>
#include <zuno/JsonMode.h>

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

bool sameNumber(const IVariant& a, const IVariant& b) {
    switch (a.getKind()) {
    case IVariant::Kind::Int32:
    case IVariant::Kind::Int64: return a.getInt64() == b.getInt64();
    case IVariant::Kind::UInt64: return a.getUInt64() == b.getUInt64();
    default: return a.getDouble() == b.getDouble();
    }
}

// Numbers compare by kind and value when `exact`, otherwise only as numbers.
bool sameTree(const IVariant& a, const IVariant& b, JsonMode mode) {
    const bool exact = mode == JsonMode::Exact;
    if (!exact && a.isNumber() && b.isNumber()) return true;
    if (a.getKind() != b.getKind()) return false;
    if (a.isNumber()) return sameNumber(a, b);
    switch (a.getKind()) {
    case IVariant::Kind::Boolean: return a.getBoolean() == b.getBoolean();
    case IVariant::Kind::String: return a.getString() == b.getString();
    case IVariant::Kind::Array: {
        const auto& x = a.asArray().getValues();
        const auto& y = b.asArray().getValues();
        if (x.size() != y.size()) return false;
        for (size_t i = 0; i < x.size(); ++i)
            if (!sameTree(*x[i], *y[i], mode)) return false;
        return true;
    }
    case IVariant::Kind::Map: {
        const auto& x = a.asMap().getEntries();
        const auto& y = b.asMap().getEntries();
        if (x.size() != y.size()) return false;
        for (size_t i = 0; i < x.size(); ++i)
            if (x[i].key != y[i].key || !sameTree(*x[i].value, *y[i].value, mode)) return false;
        return true;
    }
    default: return true;
    }
}

// Parses as zuno-json does (a UTF-8 stream) or from a String, by the first byte.
P<IVariant> parse(const uint8_t* data, size_t size, JsonMode mode) {
    const char* text = reinterpret_cast<const char*>(data + 1);
    if (data[0] & 1) return CJsonParser(make<CUTF8InStream>(std::string(text, size - 1)), mode).parseDocument();
    return CJsonParser::parse(String::fromUTF8ToWide(text, int32_t(size - 1)), mode);
}

// Prints the tree compact and pretty in `mode` and parses each printout back in `mode`: the
// parser must take it, and the tree must come back the same unless `compare` is false.
void checkPrintedTree(const IVariant& tree, JsonMode mode, bool compare) {
    for (const bool pretty : {false, true}) {
        const String printed = CJsonPrinter(pretty, mode).print(tree);
        P<IVariant> again;
        try {
            again = CJsonParser::parse(printed, mode);
        } catch (const CException&) {
            std::abort();  // printed text that the parser refuses
        }
        if (!again || (compare && !sameTree(tree, *again, mode))) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    for (const JsonMode mode : {JsonMode::Default, JsonMode::Exact}) {
        P<IVariant> tree;
        try {
            tree = parse(data, size, mode);
        } catch (const CException&) {
            continue;  // refused with the parser's error: fine
        }
        if (!tree) continue;
        const bool finite = !hasNonFiniteDouble(*tree);
        if (mode == JsonMode::Exact) {
            // Infinities print as null: such a tree must still print as JSON, but comes
            // back with nulls in their place.
            checkPrintedTree(*tree, mode, finite);
        } else if (finite) {
            // The default printer writes infinities as "inf", which no JSON reader takes.
            checkPrintedTree(*tree, mode, true);
        }
    }
    return 0;
}
