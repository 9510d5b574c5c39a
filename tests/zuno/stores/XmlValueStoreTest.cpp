#include "storeBackends.h"
#include "stores/CXmlValueStore.h"

#include <zuno/CObjectError.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <string>

using namespace zuno;

namespace {

// The message of the CFileError that opening the store raises.
std::string openError(const std::string& uri, ValueStoreAccess access = ValueStoreAccess::ReadWrite) {
    try {
        openStore(uri, access);
    } catch (const CFileError& error) {
        return error.getMessage().toStdString();
    }
    return "(no error)";
}

} // namespace

TEST(XmlValueStore, namesAreEncodedAsTheFileHoldsThemAndDecodedWhenEnumerated) {
    const struct {
        const wchar_t* name;
        const char* encoded;
    } cases[] = {
        {L"1st value", "__L__1st__32__value"}, {L"-dash", "__L__-dash"}, {L"9", "__L__9"},
        {L"a b c", "a__32__b__32__c"},         {L"plain", "plain"},      {L"x-1", "x-1"},
    };
    ScratchFolder folder;
    const std::string uri = fileURIText(folder / "names.xml");
    P<IValueStore> store = openStore(uri);
    for (const auto& c : cases) {
        EXPECT_EQ(CXmlValueStore::encodeName(c.name).toStdString(), c.encoded);
        EXPECT_EQ(CXmlValueStore::decodeName(String::fromUTF8(c.encoded)), String(c.name));
        store->setString(c.name, L"v");
        store->getSubStore(c.name, true);
    }
    store->store();
    const std::string text = readFile(folder / "names.xml");
    for (const auto& c : cases) {
        EXPECT_NE(text.find(std::string(c.encoded) + "=\"v\""), std::string::npos) << c.encoded << "\n" << text;
        EXPECT_NE(text.find("<" + std::string(c.encoded) + " />"), std::string::npos) << c.encoded << "\n" << text;
    }
    EXPECT_EQ(openStore(uri)->getString(L"1st value", L""), String(L"v"));
}

TEST(XmlValueStore, namesThatCannotBeXmlNamesAreRefusedAndTheFileStaysReadable) {
    ScratchFolder folder;
    const std::string uri = fileURIText(folder / "refused.xml");
    P<IValueStore> store = openStore(uri);
    store->setString(L"good", L"1");
    for (const wchar_t* name : {L"", L"a/b", L".hidden", L"a<b", L"a=b", L"quote\"", L"semi;colon"}) {
        EXPECT_THROW(store->setString(name, L"x"), CInvalidArgError) << String(name);
        EXPECT_THROW(store->getSubStore(name, true), CInvalidArgError) << String(name);
    }
    store->store();
    EXPECT_EQ(openStore(uri)->getValueNames(), std::vector<String>{L"good"});
}

TEST(XmlValueStore, controlCharactersAreWrittenAsCharacterReferencesTinyXmlReadsBack) {
    ScratchFolder folder;
    const std::string uri = fileURIText(folder / "controls.xml");
    P<IValueStore> store = openStore(uri);
    store->setString(L"text", String::fromChars(U"a\x01" U"b\tc\nd\re\x1F" U"f<&>\"'"));
    store->store();
    const std::string text = readFile(folder / "controls.xml");
    EXPECT_NE(text.find("a&#x01;b&#x09;c&#x0A;d&#x0D;e&#x1F;f&lt;&amp;&gt;&quot;&apos;"), std::string::npos) << text;
    EXPECT_EQ(openStore(uri)->getString(L"text", L""), String::fromChars(U"a\x01" U"b\tc\nd\re\x1F" U"f<&>\"'"));
}

TEST(XmlValueStore, emptyFilesAndDocumentsWithoutARootGetTheValuestoreRoot) {
    ScratchFolder folder;
    for (const std::string& content : {std::string(), std::string(" \n\t"), std::string("<?xml version=\"1.0\"?>"),
                                       std::string("<?xml version=\"1.0\"?><!-- nothing -->")}) {
        writeFile(folder / "empty.xml", content);
        P<IValueStore> store = openStore(fileURIText(folder / "empty.xml"));
        EXPECT_TRUE(store->getValueNames().empty());
        store->setInt64(L"n", 1);
        store->store();
        EXPECT_NE(readFile(folder / "empty.xml").find("<valuestore n=\"1\" />"), std::string::npos) << content;
    }
    writeFile(folder / "other.xml", "<settings><window width=\"640\"/></settings>");
    EXPECT_EQ(openStore(fileURIText(folder / "other.xml"))->getSubStore(L"window", false)->getInt64(L"width", 0), 640)
        << "any root element is the store";
}

TEST(XmlValueStore, aBrokenFileRaisesItsLineAndStaysUnlessTheCallerDiscardsIt) {
    const struct {
        const char* content;
        int line;
    } cases[] = {
        {"<valuestore a=\"1\">", 1},
        {"<valuestore>\n<a>\n</b>\n</valuestore>", 3},
        {"<valuestore>\n\n  <a x y=\"2\"/>\n</valuestore>", 3},
        {"<valuestore a=\"1\" a=\"2\"/>", 1},
        {"<valuestore>\n<a b=\"1\">\n", 3},
        {"\n<valuestore>\n<a b=\"unterminated/>\n</valuestore>", 3},
        {"<valuestore>\n<a b=\"1\"/>\xF2", 2},  // ends in a UTF-8 lead byte
        {"<valuestore>\n\n<a b=\"\xC0\xAF\"/>\n</valuestore>", 3},  // an overlong form
    };
    ScratchFolder folder;
    const auto path = folder / "broken.xml";
    const std::string uri = fileURIText(path);
    for (const auto& c : cases) {
        writeFile(path, c.content);
        EXPECT_EQ(openError(uri), "XML Parse Error in file '" + uri + "', line " + std::to_string(c.line) + ".")
            << c.content;
        EXPECT_EQ(readFile(path), c.content);

        P<IValueStore> discarded = openStore(uri, ValueStoreAccess::ReadWrite | ValueStoreAccess::DiscardUnreadable);
        EXPECT_TRUE(discarded->getValueNames().empty());
        EXPECT_EQ(readFile(path), c.content) << "nothing is written before store()";
        discarded->setString(L"fresh", L"start");
        discarded->store();
        EXPECT_EQ(openStore(uri)->getString(L"fresh", L""), String(L"start"));
    }
}

TEST(XmlValueStore, aDocumentNestedTooDeeplyForTheParserIsRefused) {
    ScratchFolder folder;
    std::string deep;
    for (int i = 0; i < 100000; ++i) deep += "<a>";
    writeFile(folder / "deep.xml", deep);
    EXPECT_NE(openError(fileURIText(folder / "deep.xml")).find("nests its elements too deeply"), std::string::npos);
}

TEST(XmlValueStore, loadBinaryReplacesTheContentOrRaisesWithoutChangingIt) {
    ScratchFolder folder;
    P<IValueStore> store = openStore(fileURIText(folder / "binary.xml"));
    store->setString(L"old", L"1");
    const P<IValueStore> sub = store->getSubStore(L"sub", true);
    EXPECT_THROW(store->loadBinary("<valuestore"), CFileError);
    EXPECT_EQ(store->getString(L"old", L""), String(L"1"));
    store->loadBinary("<valuestore new=\"2\"><sub/></valuestore>");
    EXPECT_EQ(store->getValueNames(), std::vector<String>{L"new"});
    EXPECT_THROW(sub->getValueNames(), CInvalidObjectStateError) << "the old sub-store went with the old content";
}
