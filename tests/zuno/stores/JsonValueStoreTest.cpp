#include "storeBackends.h"

#include <zuno/CError.h>
#include <zuno/CObjectError.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <string>

using namespace zuno;

TEST(JsonValueStore, aBrokenFileRaisesTheParserErrorWithItsLineAndStaysUnlessTheCallerDiscardsIt) {
    const struct {
        const char* content;
        const char* error;
    } cases[] = {
        {"{\"a\": 1,\n \"b\" 2}", "line 2: Expected char ':' not found at postion 14 - found '2'"},
        {"{\n\n\"a\": tru}", "line 3: could not parse boolean value"},
        {"{\"a\": [1, 2,\n", "line 2: end of stream found while advancing ignored chars"},
        {"{\"text\": \"open", "line 1: unexspected end of stream"},
        {"not json at all", "line 1: could not parse Json String, first element must be an object or an array"},
    };
    ScratchFolder folder;
    const auto path = folder / "broken.json";
    const std::string uri = fileURIText(path);
    for (const auto& c : cases) {
        writeFile(path, c.content);
        try {
            openStore(uri);
            ADD_FAILURE() << c.content;
        } catch (const CJsonParserError& error) {
            EXPECT_EQ(error.getMessage().toStdString(), "JSON Parse Error in file '" + uri + "', " + c.error);
        }
        EXPECT_EQ(readFile(path), c.content);

        P<IValueStore> discarded = openStore(uri, ValueStoreAccess::ReadWrite | ValueStoreAccess::DiscardUnreadable);
        EXPECT_TRUE(discarded->getValueNames().empty());
        discarded->setString(L"fresh", L"start");
        discarded->store();
        EXPECT_EQ(openStore(uri)->getString(L"fresh", L""), String(L"start"));
    }
}

TEST(JsonValueStore, aRootThatIsNotAnObjectIsAFileError) {
    ScratchFolder folder;
    const auto path = folder / "array.json";
    writeFile(path, "[1, 2, 3]");
    try {
        openStore(fileURIText(path));
        ADD_FAILURE();
    } catch (const CFileError& error) {
        EXPECT_EQ(error.getMessage().toStdString(),
                  "The JSON file '" + fileURIText(path) + "' does not hold an object.");
    }
    EXPECT_TRUE(openStore(fileURIText(path), ValueStoreAccess::Read | ValueStoreAccess::DiscardUnreadable)
                    ->getValueNames()
                    .empty());
}

TEST(JsonValueStore, valuesAndSubStoresShareNamesSoNeitherReplacesTheOther) {
    ScratchFolder folder;
    P<IValueStore> store = openStore(fileURIText(folder / "shared.json"));
    store->setString(L"value", L"v");
    store->getSubStore(L"sub", true)->setInt64(L"n", 1);
    EXPECT_THROW(store->setString(L"sub", L"x"), CInvalidArgError);
    EXPECT_THROW(store->getSubStore(L"value", true), CInvalidArgError);
    EXPECT_EQ(store->getSubStore(L"value", false), nullptr);
    EXPECT_FALSE(store->removeValue(L"sub"));
    EXPECT_FALSE(store->removeSubStore(L"value"));
    EXPECT_EQ(store->getSubStore(L"sub", false)->getInt64(L"n", 0), 1);
}

TEST(JsonValueStore, theFileIsPrettyExactJsonAndKeepsWhatTheStoreDoesNotUse) {
    ScratchFolder folder;
    const auto path = folder / "kept.json";
    writeFile(path, "{\"list\": [1, \"two\", null], \"nothing\": null, \"n\": 1}");
    P<IValueStore> store = openStore(fileURIText(path));
    EXPECT_FALSE(store->hasValue(L"nothing")) << "null is no value";
    store->setDouble(L"tenth", 0.1);
    store->setUInt64(L"big", UINT64_MAX);
    store->getSubStore(L"sub", true)->setString(L"text", String::fromChars(U"tab\there \x01"));
    store->store();
    EXPECT_EQ(readFile(path), "{\n"
                              "\t\"list\": [\n\t\t1,\n\t\t\"two\",\n\t\tnull\n\t],\n"
                              "\t\"nothing\": null,\n"
                              "\t\"n\": 1,\n"
                              "\t\"tenth\": 0.1,\n"
                              "\t\"big\": 18446744073709551615,\n"
                              "\t\"sub\": {\n\t\t\"text\": \"tab\\there \\u0001\"\n\t}\n"
                              "}\n");
}
