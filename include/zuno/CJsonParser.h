#pragma once

#include <zuno/CParserBase.h>
#include <zuno/IPeekableInStream.h>
#include <zuno/IVariant.h>
#include <zuno/JsonMode.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <cstddef>
#include <cstdint>

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
// and no partial tree is returned. Text in memory (parse, parseUTF8) is read where it is;
// a stream is read a window at a time. Either way the grammar sees UTF-16 code units, and
// positions in messages count them from 0.
class CJsonParser : public CParserBase {
public:
    static constexpr int32_t MaxNesting = 512;

    explicit CJsonParser(P<IPeekableInStream> in, JsonMode mode = JsonMode::Default);

    // The root map or array of `text`; null for an empty text. The text is read where it
    // is, in its own encoding.
    static P<IVariant> parse(const String& text, JsonMode mode = JsonMode::Default);
    // The same from UTF-8 bytes (ill-formed ones read as U+FFFD), without a String first.
    static P<IVariant> parseUTF8(const char* text, size_t size, JsonMode mode = JsonMode::Default);

    // The root map or array of the stream; null when the stream is empty.
    P<IVariant> parseDocument();

protected:
    void raiseError(const String& message) const override;

private:
    // Where the characters come from: the stream, or text in memory. Positions in messages
    // count UTF-16 code units from 0 either way.
    struct StreamSource;
    template <class Unit>
    struct MemorySource;
    // The grammar, over one of the sources.
    template <class Source>
    class Reader;

    JsonMode m_mode;
};

} // namespace zuno
