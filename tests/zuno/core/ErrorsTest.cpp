#include <zuno/CObjectError.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>
#include <zuno/IStringLocalizer.h>
#include <zuno/systemError.h>

#include <gtest/gtest.h>

using namespace zuno;

static P<IURI> uri(const wchar_t* text) { return make<CURI>(text); }

TEST(Errors, NamesAndMessages) {
    const CURI object(L"http://example.com/");
    const struct {
        P<CException> error;
        const wchar_t* name;
        const wchar_t* message;
    } cases[] = {
        {make<CException>(), L"Error", L"Unspecified error"},
        {make<CError>(L"", L""), L"Error", L"Unspecified error"},
        {make<CError>(L"Gr\u00f6\u00dfe: 3 \u20ac", L"IOError"), L"IOError", L"Gr\u00f6\u00dfe: 3 \u20ac"},
        {make<COutOfmemoryException>(), L"OutOfMemoryError", L"Out of memory."},
        {make<CParseError>(L"unknown object for parse value"), L"ParseError", L"unknown object for parse value"},
        {make<CObjectError>(nullptr, nullptr, String()), L"Object error", L"unknown object"},
        {make<CObjectError>(nullptr, &typeid(CURI), String()), L"Object error", L"object class: zuno::CURI"},
        {make<CObjectError>(&object, &typeid(int), L"Bad %OBJECTDESC%."), L"Object error",
         L"Bad object: zuno::CURI object."},
        {make<CMethodNotImplementedError>(&object, nullptr, L"send"), L"Object error",
         L"Method not implemented (object: zuno::CURI object): send."},
        {make<CMethodNotImplementedError>(nullptr, nullptr, L""), L"Object error",
         L"Method not implemented (unknown object): unspecified method."},
        {make<CInvalidArgError>(nullptr, &typeid(CURI), L"parse", L"text"), L"Object error",
         L"An invalid argument was passed to method 'parse' of 'object class: zuno::CURI': text"},
        {make<CInvalidArgError>(nullptr, nullptr, String(), String()), L"Object error",
         L"An invalid argument was passed to method 'unspecified method' of 'unknown object': unspecified argument"},
        {make<CInvalidObjectStateError>(nullptr, nullptr, L"closed"), L"Object error",
         L"The object is in an invalid state (unknown object): closed."},
        {make<CEndOfEnumError>(nullptr, &typeid(CURI)), L"Object error",
         L"The object is in an invalid state (object class: zuno::CURI): end of enumeration already reached."},
        {make<CURIError>(L"Cannot open %URI%.", nullptr), L"URIError", L"Cannot open <uri unknown>."},
        {make<CURIError>(L"Cannot open %URI%.", uri(L"http://h/a%20b")), L"URIError", L"Cannot open http://h/a%20b."},
        {make<CURIError>(L"", uri(L"http://h/")), L"URIError", L"Unspecified error"},
        {make<CCastError>(&object, typeid(IStringLocalizer)), L"Cast error",
         L"Error casting a 'zuno::CURI' object to 'zuno::IStringLocalizer'."},
        {make<CURIFormatError>(L"http://h:x/"), L"URIFormatError", L"The URI ('http://h:x/') has an invalid format."},
        {make<CURIFormatError>(L"a%URI%"), L"URIFormatError", L"The URI ('a%URI%') has an invalid format."},
        {make<CURIFormatError>(), L"URIFormatError", L"The URI has an invalid format."},
        {make<CURITypeNotSupportedError>(uri(L"ftp://h/")), L"URITypeNotSupportedError",
         L"This type of URI ('ftp://h/') is not supported."},
        {make<CURITypeNotSupportedError>(String()), L"URITypeNotSupportedError", L"This type URI is not supported."},
        {make<CFileError>(L"Error reading %URI%", uri(L"file:///a")), L"FileError", L"Error reading file:///a"},
        {make<CFileNotFoundError>(uri(L"file:///tmp/a%20b.txt")), L"FileNotFoundError",
         L"The file '/tmp/a b.txt' was not found."},
        {make<CFileNotFoundError>(uri(L"file:///C:/a.txt")), L"FileNotFoundError", L"The file 'C:/a.txt' was not found."},
        {make<CFileNotFoundError>(), L"FileNotFoundError", L"The file could not be found."},
        {make<CFileAccessDeniedError>(uri(L"file:///etc/shadow")), L"FileAccessDeniedError",
         L"Access to the file '/etc/shadow' was denied."},
        {make<CStreamClosedError>(), L"StreamError", L"The stream has been closed."},
        {make<CEndOfStreamError>(uri(L"file:///a")), L"StreamError", L"Unexpected end of data stream (uri: 'file:///a')."},
        {make<CEndOfStreamError>(), L"StreamError", L"Unexpected end of data stream."},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(String(test.message));
        EXPECT_EQ(test.error->getErrorName(), String(test.name));
        EXPECT_EQ(test.error->getMessage(), String(test.message));
        EXPECT_STREQ(test.error->what(), String(test.message).toCP().c_str());
    }
}

TEST(Errors, CaughtByTheirBaseClasses) {
    EXPECT_THROW(throw CFileNotFoundError(), CFileError);
    EXPECT_THROW(throw CFileNotFoundError(), CURIError);
    EXPECT_THROW(throw CEndOfStreamError(), CStreamError);
    EXPECT_THROW(throw CEndOfEnumError(nullptr, nullptr), CInvalidObjectStateError);
    EXPECT_THROW(throw CCastError(nullptr, typeid(int)), CObjectError);
    EXPECT_THROW(throw CJsonParserError(), CError);
    EXPECT_THROW(throw COutOfmemoryException(), std::exception);
}

TEST(Errors, URIIsKeptOnlyWithAMessage) {
    const P<IURI> file = uri(L"file:///a");
    EXPECT_EQ(CURIError(L"Error with %URI%", file).getURI(), file);
    EXPECT_EQ(CURIError(L"Error with %URI%", nullptr).getURI(), nullptr);
    EXPECT_EQ(CURIError(String(), file).getURI(), nullptr);
    EXPECT_EQ(CFileNotFoundError(file).getURI(), file);
    EXPECT_EQ(CURITypeNotSupportedError(file).getURI(), file);
}

TEST(Errors, CloneIsAPlainExceptionThatOutlivesTheHandler) {
    P<CException> kept;
    try {
        throw CFileNotFoundError(uri(L"file:///missing.txt"));
    } catch (const CException& e) {
        kept = e.clone();
    }
    ASSERT_TRUE(kept);
    EXPECT_EQ(kept->getRefCount(), 1);
    EXPECT_EQ(dynamic_cast<CURIError*>(kept.get()), nullptr);
    EXPECT_EQ(kept->getErrorName(), String(L"FileNotFoundError"));
    EXPECT_EQ(kept->getMessage(), String(L"The file '/missing.txt' was not found."));
    EXPECT_THROW(throw *kept, CException);
}

TEST(Errors, CopiesStartWithTheirOwnCount) {
    CError original(L"text");
    const P<CError> extra = P<CError>::share(&original);
    ASSERT_EQ(original.getRefCount(), 2);
    try {
        throw original;
    } catch (const CError& e) {
        EXPECT_EQ(e.getRefCount(), 1);
        EXPECT_EQ(e.getMessage(), String(L"text"));
    }
}

TEST(Errors, SystemErrorText) {
    // 2 is "file not found" on both platforms.
    const String text = getSystemErrorText(2);
    EXPECT_TRUE(text.toLower().contains(L"file")) << text;
    EXPECT_FALSE(text.endsWith(L"\n") || text.endsWith(L"\r"));
    EXPECT_FALSE(getSystemErrorText(0x7FFFFFF0u).isEmpty());
}
