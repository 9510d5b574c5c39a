#include <zuno/xmlNestingDepth.h>

#include <gtest/gtest.h>

#include <string>

using zuno::xmlNestingDepth;

// The depth check guards the XML parser's stack: it may count too deep, never too shallow.
TEST(XmlNestingDepth, CountsElementsAsTheParserMeetsThem) {
    const std::pair<std::string, size_t> cases[] = {
        {"", 0},
        {"plain text", 0},
        {"<a/>", 1},
        {"<a><b/><c><d/></c></a>", 3},
        {"<?xml version=\"1.0\"?><!DOCTYPE a [<!ELEMENT a ANY>]><a><b/></a>", 2},
        {"<a><!-- <b><c><d> --></a>", 1},
        {"<a><![CDATA[<b><c>]]></a>", 1},
        {"<a x=\"<b>\" y='/>'><c/></a>", 2},
        {"<a x\"><b><c>", 3},          // a stray quote outside a value does not hide the tags after it
        {"<a></a><b><c></c></b>", 2},
        {"</a></a><b>", 1},            // stray end tags never make the count negative
        {"<a><b><c", 3},               // an unfinished tag still counts
    };
    for (const auto& [text, depth] : cases) EXPECT_EQ(xmlNestingDepth(text), depth) << text;

    std::string deep;
    for (int i = 0; i < 5000; ++i) deep += "<e>";
    EXPECT_EQ(xmlNestingDepth(deep), 5000u);
}
