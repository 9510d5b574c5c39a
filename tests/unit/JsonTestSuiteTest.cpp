#include "JsonTestSuiteAnswers.h"

#include <zuno/CError.h>
#include <zuno/CJsonParser.h>
#include <zuno/CJsonPrinter.h>
#include <zuno/CUTF8InStream.h>

#include <sharedData.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

using namespace zuno;

namespace {

// What the parser makes of a text: "accept" and the compact tree, or the message of its
// error.
template <class Parse>
std::string answerFor(Parse parse) {
    try {
        const P<IVariant> root = parse();
        return root ? "accept " + CJsonPrinter().print(*root).toStdString() : "accept";
    } catch (const CJsonParserError& error) {
        return error.getMessage().toStdString();
    }
}

} // namespace

// Every file of the suite, in one process: each gives exactly our recorded answer, and none
// crashes, hangs or upsets the sanitizers.
TEST(JsonTestSuite, EveryFileGivesOurRecordedAnswer) {
    ZUNO_REQUIRE_SHARED_DATA(dataDir);
    const std::filesystem::path folder = std::filesystem::u8path(dataDir + "/JSONTestSuite/test_parsing");

    std::map<std::string, std::string> expected;
    for (const JsonTestSuiteAnswer& answer : jsonTestSuiteAnswers) {
        expected[answer.file] = answer.error ? answer.error : "accept";
    }
    size_t files = 0;
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder)) {
        const std::string name = entry.path().filename().u8string();
        const auto answer = expected.find(name);
        if (answer == expected.end()) {
            ADD_FAILURE() << name << " has no recorded answer";
            continue;
        }
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        // Through a String, and straight from the bytes: the same answer either way.
        const std::string fromString = answerFor([&] { return CJsonParser::parse(String::fromUTF8ToWide(bytes)); });
        const std::string fromBytes = answerFor([&] { return CJsonParser(make<CUTF8InStream>(bytes)).parseDocument(); });
        EXPECT_EQ(fromString.substr(0, 6) == "accept" ? "accept" : fromString, answer->second) << name;
        EXPECT_EQ(fromBytes, fromString) << name;
        ++files;
    }
    EXPECT_EQ(files, expected.size()) << "recorded answers for files that are missing";
    EXPECT_EQ(files, 318u);
}
