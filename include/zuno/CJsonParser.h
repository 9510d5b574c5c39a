#pragma once

#include <zuno/CParserBase.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantMap.h>
#include <zuno/CVariantNull.h>
#include <zuno/CWideTextBuffer.h>
#include <zuno/IPeekableInStream.h>
#include <zuno/IVariant.h>
#include <zuno/JsonMode.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zuno {

// Turns JSON text into a tree of variants. The grammar is looser than standard JSON:
// - everything before the first "{" or "[" is skipped, and nothing after the root's
//   closing bracket is read;
// - numbers: "-" alone is 0, "-.5" is -0.5, "e-+5" is a valid exponent; after "." and
//   after the exponent's signs a digit is required ("not a number value"). By default
//   the value is computed digit by digit; a number is a CVariantDouble when its fraction
//   is at least 0.00001 or its exponent above 1, otherwise a CVariantInt64 (1.000001
//   gives 1, 1e1 gives 10, 5e-1 gives 0, 1e2 gives the double 100); an integer beyond the
//   64-bit range becomes a double rather than wrapping around. JsonMode::Exact reads
//   every number exactly instead (see JsonMode.h);
// - true and false are matched without regard to case, except that the final "e" of
//   false must be lower case; null must be lower case (its first letter may be "N" for
//   the dispatch, which then fails);
// - strings may hold any character but an unescaped quote or backslash; "\u" and "\U"
//   take four hexadecimal digits that make one UTF-16 code unit, appended as it is;
// - a repeated key in an object replaces the earlier value (CVariantMap::set).
// Objects and arrays may nest at most MaxNesting deep. Every error is a CJsonParserError,
// and no partial tree is returned.
class CJsonParser : public CParserBase {
public:
    static constexpr int32_t MaxNesting = 512;

    explicit CJsonParser(P<IPeekableInStream> in, JsonMode mode = JsonMode::Default);

    // The root map or array of `text`; null for an empty text.
    static P<IVariant> parse(const String& text, JsonMode mode = JsonMode::Default);

    // The root map or array of the stream; null when the stream is empty.
    P<IVariant> parseDocument();

protected:
    void raiseError(const String& message) const override;

private:
    P<IVariant> parseValue(int32_t depth);
    void checkNesting(int32_t depth) const;
    P<IVariant> parseObject(int32_t depth);
    P<IVariant> parseArray(int32_t depth);
    // Reads a string into m_text.
    void readString();
    // The key just read, shared with earlier equal keys.
    String internKey();
    void parseEscape();
    void parseUnicodeEscape();
    P<IVariant> parseNumber();
    // The number whose text is in m_number, read exactly.
    P<IVariant> makeExactNumber(bool hasFractionOrExponent) const;
    int32_t readRequiredDigit();
    P<IVariant> parseBoolean();
    void parseNull();

    static constexpr size_t KeyCacheSize = 1024;  // a power of two
    static constexpr size_t MaxCachedKeyLength = 64;

    JsonMode m_mode;
    CWideTextBuffer m_text;  // the string being read
    std::string m_number;    // in exact mode, the number being read (ASCII)
    // Elements and pairs of the arrays and objects being read, innermost last: each
    // container is made once it is complete, with room for exactly its elements.
    std::vector<P<IVariant>> m_values;
    std::vector<CVariantMap::Entry> m_entries;
    // Recent keys by hash: documents repeat their keys, which then share one text object.
    std::vector<P<IString>> m_keyCache;
    // Scalars are immutable, so one instance of each constant serves the whole tree.
    P<IVariant> m_null;
    P<IVariant> m_true;
    P<IVariant> m_false;
};

} // namespace zuno
