// UTF-8 bytes to wide text: String::fromUTF8ToWide against the C library's mbstowcs (in a
// UTF-8 locale) and a plain decoder loop, each making its own buffer in every iteration as
// a caller would. And the unescaping of a URI made of nothing but escapes.
#include "allocationCounter.h"
#include "corpus.h"

#include <zuno/CURI.h>
#include <zuno/String.h>

#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdlib>
#include <memory>
#include <string>

using namespace zuno;

namespace {

// A mailer-file text (a subject with an umlaut), mostly-ASCII JSON and mixed-script JSON.
const std::string& sample(const std::string& name) {
    static const std::string subject = "Quarterly report for M\xC3\xBCnchen, draft 3";
    return name == "subject" ? subject : corpusBytes("json-corpora/" + name);
}

void reportBytes(benchmark::State& state, const std::string& bytes) {
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes.size()));
}

void zunoDecode(benchmark::State& state, std::string name) {
    const std::string& bytes = sample(name);
    measure(state, [&] { benchmark::DoNotOptimize(String::fromUTF8ToWide(bytes).length()); });
    reportBytes(state, bytes);
}

void mbstowcsDecode(benchmark::State& state, std::string name) {
    const std::string& bytes = sample(name);  // (no NUL inside, so the C function sees it all)
    if (!std::setlocale(LC_CTYPE, "C.UTF-8")) state.SkipWithError("no C.UTF-8 locale");
    measure(state, [&] {
        std::unique_ptr<wchar_t[]> out(new wchar_t[bytes.size() + 1]);
        benchmark::DoNotOptimize(std::mbstowcs(out.get(), bytes.c_str(), bytes.size() + 1));
    });
    std::setlocale(LC_CTYPE, "C");
    reportBytes(state, bytes);
}

// The textbook loop: the lead byte gives the length, continuation bytes are checked and
// added in; anything else is U+FFFD. No ASCII shortcut, no overlong or surrogate checks.
size_t plainDecode(const unsigned char* p, const unsigned char* end, wchar_t* out) {
    wchar_t* const start = out;
    while (p < end) {
        const unsigned char lead = *p++;
        int extra = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
        if (extra < 0) {
            *out++ = 0xFFFD;
            continue;
        }
        char32_t c = extra == 0 ? lead : lead & (0x3F >> extra);
        for (; extra > 0 && p < end && (*p & 0xC0) == 0x80; --extra) c = (c << 6) | (*p++ & 0x3F);
        *out++ = wchar_t(extra == 0 ? c : 0xFFFD);
    }
    return size_t(out - start);
}

void loopDecode(benchmark::State& state, std::string name) {
    const std::string& bytes = sample(name);
    const auto* begin = reinterpret_cast<const unsigned char*>(bytes.data());
    measure(state, [&] {
        std::unique_ptr<wchar_t[]> out(new wchar_t[bytes.size() + 1]);
        benchmark::DoNotOptimize(plainDecode(begin, begin + bytes.size(), out.get()));
    });
    reportBytes(state, bytes);
}

// A "file" URI of 3 MB of "%41", parsed and its path decoded.
void zunoURIEscapes(benchmark::State& state) {
    std::wstring text = L"file:///";
    for (int i = 0; i < 1000000; ++i) text += L"%41";
    const String uriText(text.c_str(), int32_t(text.size()));
    measure(state, [&] { benchmark::DoNotOptimize(CURI(uriText).getDecodedPath().length()); });
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(text.size()));
}

// Names are text/utf8-to-wide/<sample>/<implementation>; scripts/bench.sh relates zuno to
// mbstowcs and the plain loop.
const int Registered = [] {
    for (const char* name : {"subject", "citm_catalog.json", "twitter.json"}) {
        const std::string group = std::string("text/utf8-to-wide/") + name;
        benchmark::RegisterBenchmark((group + "/zuno").c_str(), zunoDecode, name);
        benchmark::RegisterBenchmark((group + "/mbstowcs").c_str(), mbstowcsDecode, name);
        benchmark::RegisterBenchmark((group + "/loop").c_str(), loopDecode, name);
    }
    benchmark::RegisterBenchmark("text/uri-3MB-of-escapes/zuno", zunoURIEscapes);
    return 0;
}();

} // namespace
