// Parsing, compact printing and pretty printing of the standard JSON corpora with the
// framework, nlohmann-json, RapidJSON and (parsing only) simdjson. Every iteration builds (or prints) and frees the
// whole document; "allocs" counts the allocations of one iteration.
#include "allocationCounter.h"
#include "corpus.h"

#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CUTF8InStream.h>
#include <zuno/String.h>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

#include <map>
#include <string>

using namespace zuno;

namespace {

const char* const Corpora[] = {"canada.json", "citm_catalog.json", "twitter.json"};

std::string corpusPath(const std::string& name) { return "json-corpora/" + name; }

// Parsing ---------------------------------------------------------------------------------

void zunoParse(benchmark::State& state, std::string name) {
    const String text = String::fromUTF8ToWide(corpusBytes(corpusPath(name)));
    measure(state, [&] { benchmark::DoNotOptimize(CJsonParser::parse(text).get()); });
}

// The file's UTF-8 bytes read in place, decoding included, as the peers start.
void zunoParseBytes(benchmark::State& state, std::string name) {
    const std::string& bytes = corpusBytes(corpusPath(name));
    measure(state, [&] { benchmark::DoNotOptimize(CJsonParser::parseUTF8(bytes.data(), bytes.size()).get()); });
}

// The same through a stream that decodes a window at a time.
void zunoParseUTF8(benchmark::State& state, std::string name) {
    const std::string& bytes = corpusBytes(corpusPath(name));
    measure(state, [&] {
        benchmark::DoNotOptimize(CJsonParser(make<CUTF8InStream>(bytes)).parseDocument().get());
    });
}

// The same through a String made from the bytes.
void zunoParseUTF8String(benchmark::State& state, std::string name) {
    const std::string& bytes = corpusBytes(corpusPath(name));
    measure(state, [&] { benchmark::DoNotOptimize(CJsonParser::parse(String::fromUTF8ToWide(bytes)).get()); });
}

void nlohmannParse(benchmark::State& state, std::string name) {
    const std::string& bytes = corpusBytes(corpusPath(name));
    measure(state, [&] {
        nlohmann::json document = nlohmann::json::parse(bytes);
        benchmark::DoNotOptimize(document.size());
    });
}

void rapidjsonParse(benchmark::State& state, std::string name) {
    const std::string& bytes = corpusBytes(corpusPath(name));
    measure(state, [&] {
        rapidjson::Document document;
        document.Parse(bytes.c_str());
        benchmark::DoNotOptimize(document.HasParseError());
    });
}

// simdjson's DOM parser, reused across iterations as its documentation advises (it keeps
// its buffers); the tree lives inside the parser.
void simdjsonParse(benchmark::State& state, std::string name) {
    const simdjson::padded_string bytes(corpusBytes(corpusPath(name)));
    simdjson::dom::parser parser;
    measure(state, [&] {
        simdjson::dom::element root;
        benchmark::DoNotOptimize(parser.parse(bytes).get(root));
    });
}

// A document that is one string of `mebibytes` MiB, with a few escapes: the cost must grow
// linearly with the string, as the others' does.
const std::string& longString(int mebibytes) {
    static std::map<int, std::string> texts;
    std::string& text = texts[mebibytes];
    if (text.empty()) {
        std::string body;
        while (body.size() < (size_t(mebibytes) << 20)) body += "Lorem ipsum dolor sit amet, \\\"consectetur\\\" adipiscing elit\\n";
        text = "[\"" + body + "\"]";
    }
    return text;
}

void zunoLongString(benchmark::State& state, int mebibytes) {
    const std::string& bytes = longString(mebibytes);
    measure(state, [&] { benchmark::DoNotOptimize(CJsonParser::parseUTF8(bytes.data(), bytes.size()).get()); });
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes.size()));
}

void rapidjsonLongString(benchmark::State& state, int mebibytes) {
    const std::string& bytes = longString(mebibytes);
    measure(state, [&] {
        rapidjson::Document document;
        document.Parse(bytes.c_str());
        benchmark::DoNotOptimize(document.HasParseError());
    });
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes.size()));
}

// Printing --------------------------------------------------------------------------------

void zunoPrint(benchmark::State& state, std::string name, bool pretty) {
    const P<IVariant> tree = CJsonParser::parse(String::fromUTF8ToWide(corpusBytes(corpusPath(name))));
    measure(state, [&] {
        const String text = CJsonPrinter(pretty).print(*tree);
        benchmark::DoNotOptimize(text.length());
    });
}

void nlohmannPrint(benchmark::State& state, std::string name, bool pretty) {
    const nlohmann::json document = nlohmann::json::parse(corpusBytes(corpusPath(name)));
    measure(state, [&] {
        const std::string text = pretty ? document.dump(1, '\t') : document.dump();
        benchmark::DoNotOptimize(text.size());
    });
}

void rapidjsonPrint(benchmark::State& state, std::string name, bool pretty) {
    rapidjson::Document document;
    document.Parse(corpusBytes(corpusPath(name)).c_str());
    measure(state, [&] {
        rapidjson::StringBuffer buffer;
        if (pretty) {
            rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
            writer.SetIndent('\t', 1);
            document.Accept(writer);
        } else {
            rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
            document.Accept(writer);
        }
        benchmark::DoNotOptimize(buffer.GetSize());
    });
}

// Names are json/<operation>/<corpus>/<library>; scripts/bench.sh relates each library to
// nlohmann-json and the framework to RapidJSON.
const bool registered = [] {
    for (const std::string corpus : Corpora) {
        const std::string stem = corpus.substr(0, corpus.find('.'));
        auto name = [&](const char* operation, const char* library) {
            return "json/" + std::string(operation) + "/" + stem + "/" + library;
        };
        benchmark::RegisterBenchmark(name("parse", "zuno").c_str(), zunoParse, corpus);
        benchmark::RegisterBenchmark(name("parse", "zuno-bytes").c_str(), zunoParseBytes, corpus);
        benchmark::RegisterBenchmark(name("parse", "zuno-utf8").c_str(), zunoParseUTF8, corpus);
        benchmark::RegisterBenchmark(name("parse", "zuno-utf8-string").c_str(), zunoParseUTF8String, corpus);
        benchmark::RegisterBenchmark(name("parse", "nlohmann").c_str(), nlohmannParse, corpus);
        benchmark::RegisterBenchmark(name("parse", "rapidjson").c_str(), rapidjsonParse, corpus);
        benchmark::RegisterBenchmark(name("parse", "simdjson").c_str(), simdjsonParse, corpus);
        for (const bool pretty : {false, true}) {
            const char* operation = pretty ? "pretty" : "compact";
            benchmark::RegisterBenchmark(name(operation, "zuno").c_str(), zunoPrint, corpus, pretty);
            benchmark::RegisterBenchmark(name(operation, "nlohmann").c_str(), nlohmannPrint, corpus, pretty);
            benchmark::RegisterBenchmark(name(operation, "rapidjson").c_str(), rapidjsonPrint, corpus, pretty);
        }
    }
    for (const int mebibytes : {1, 8, 16}) {
        const std::string group = "json/parse/string-" + std::to_string(mebibytes) + "MiB/";
        benchmark::RegisterBenchmark((group + "zuno-bytes").c_str(), zunoLongString, mebibytes);
        benchmark::RegisterBenchmark((group + "rapidjson").c_str(), rapidjsonLongString, mebibytes);
    }
    return true;
}();

} // namespace
