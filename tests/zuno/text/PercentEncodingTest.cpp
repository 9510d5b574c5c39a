#include "text/percentEncoding.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

using namespace zuno;

TEST(PercentEncodingTest, EncodesEveryByteButUnreservedAndKeptOnes) {
    const std::tuple<std::string, const char*, std::string> cases[] = {
        {"AZaz09-._~", "", "AZaz09-._~"},
        {"a b,c'd=e\"f\r\n\\@+%", "", "a%20b%2Cc%27d%3De%22f%0D%0A%5C%40%2B%25"},
        {std::string("Gr\xC3\xBC\xC3\x9F" "e\0", 8), "", "Gr%C3%BC%C3%9Fe%00"},
        {"/dir/a b/c", "/", "/dir/a%20b/c"},
    };
    for (const auto& [text, keep, encoded] : cases) {
        EXPECT_EQ(percentEncode(text, keep), encoded) << text;
        EXPECT_EQ(percentDecode(encoded), text) << encoded;
    }
    for (const char* malformed : {"100%", "%4", "%zz"}) EXPECT_EQ(percentDecode(malformed), malformed);
    EXPECT_EQ(percentDecode("%zz%41%c3%a4"), "%zzA\xC3\xA4");
}
