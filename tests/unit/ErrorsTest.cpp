#include <zuno/CObjectError.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>
#include <zuno/IStringLocalizer.h>
#include <zuno/systemError.h>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

using namespace zuno;

namespace {

P<IURI> uri(const wchar_t* text) {
    return make<CURI>(text);
}

struct ErrorCase {
    const char* label;
    std::function<void()> raise;
    const wchar_t* name;
    const wchar_t* message;
};

const IBase* someObject() {
    static const CURI object(L"http://example.com/");
    return &object;
}

const ErrorCase g_errorCases[] = {
    {"empty exception", [] { throw CException(); }, L"Error", L"Unspecified error"},
    {"empty error", [] { throw CError(L"", L""); }, L"Error", L"Unspecified error"},
    {"error", [] { throw CError(L"Disk full", L"IOError"); }, L"IOError", L"Disk full"},
    {"out of memory", [] { throw COutOfmemoryException(); }, L"OutOfMemoryError", L"Out of memory."},
    {"parse error", [] { throw CParseError(L"unknown object for parse value"); }, L"ParseError",
     L"unknown object for parse value"},
    {"object error without anything", [] { throw CObjectError(nullptr, nullptr, String()); }, L"Object error",
     L"unknown object"},
    {"object error with a type", [] { throw CObjectError(nullptr, &typeid(CURI), String()); }, L"Object error",
     L"object class: zuno::CURI"},
    {"object error with an object", [] { throw CObjectError(someObject(), &typeid(int), L"Bad %OBJECTDESC%."); },
     L"Object error", L"Bad object: zuno::CURI object."},
    {"method not implemented", [] { throw CMethodNotImplementedError(someObject(), nullptr, L"send"); },
     L"Object error", L"Method not implemented (object: zuno::CURI object): send."},
    {"unnamed method not implemented", [] { throw CMethodNotImplementedError(nullptr, nullptr, L""); },
     L"Object error", L"Method not implemented (unknown object): unspecified method."},
    {"invalid argument", [] { throw CInvalidArgError(nullptr, &typeid(CURI), L"parse", L"text"); },
     L"Object error", L"An invalid argument was passed to method 'parse' of 'object class: zuno::CURI': text"},
    {"unnamed invalid argument", [] { throw CInvalidArgError(nullptr, nullptr, String(), String()); },
     L"Object error",
     L"An invalid argument was passed to method 'unspecified method' of 'unknown object': unspecified argument"},
    {"invalid state", [] { throw CInvalidObjectStateError(nullptr, nullptr, L"closed"); }, L"Object error",
     L"The object is in an invalid state (unknown object): closed."},
    {"end of enumeration", [] { throw CEndOfEnumError(nullptr, &typeid(CURI)); }, L"Object error",
     L"The object is in an invalid state (object class: zuno::CURI): end of enumeration already reached."},
    {"cast", [] { throw CCastError(someObject(), typeid(IStringLocalizer)); }, L"Cast error",
     L"Error casting a 'zuno::CURI' object to 'zuno::IStringLocalizer'."},
    {"URI error without a URI", [] { throw CURIError(L"Cannot open %URI%.", nullptr); }, L"URIError",
     L"Cannot open <uri unknown>."},
    {"URI error", [] { throw CURIError(L"Cannot open %URI%.", uri(L"http://h/a%20b")); }, L"URIError",
     L"Cannot open http://h/a%20b."},
    {"URI error without a message", [] { throw CURIError(L"", uri(L"http://h/")); }, L"URIError",
     L"Unspecified error"},
    {"URI format", [] { throw CURIFormatError(L"http://h:x/"); }, L"URIFormatError",
     L"The URI ('http://h:x/') has an invalid format."},
    {"URI format without text", [] { throw CURIFormatError(); }, L"URIFormatError",
     L"The URI has an invalid format."},
    {"URI type", [] { throw CURITypeNotSupportedError(uri(L"ftp://h/")); }, L"URITypeNotSupportedError",
     L"This type of URI ('ftp://h/') is not supported."},
    {"URI type without text", [] { throw CURITypeNotSupportedError(String()); }, L"URITypeNotSupportedError",
     L"This type URI is not supported."},
    {"file error", [] { throw CFileError(L"Error reading %URI%", uri(L"file:///a")); }, L"FileError",
     L"Error reading file:///a"},
    {"file not found", [] { throw CFileNotFoundError(uri(L"file:///tmp/a%20b.txt")); }, L"FileNotFoundError",
     L"The file '/tmp/a b.txt' was not found."},
    {"file on a drive not found", [] { throw CFileNotFoundError(uri(L"file:///C:/a.txt")); },
     L"FileNotFoundError", L"The file 'C:/a.txt' was not found."},
    {"unknown file not found", [] { throw CFileNotFoundError(); }, L"FileNotFoundError",
     L"The file could not be found."},
    {"access denied", [] { throw CFileAccessDeniedError(uri(L"file:///etc/shadow")); }, L"FileAccessDeniedError",
     L"Access to the file '/etc/shadow' was denied."},
    {"stream error", [] { throw CStreamError(L"Input stream read error"); }, L"StreamError",
     L"Input stream read error"},
    {"stream closed", [] { throw CStreamClosedError(); }, L"StreamError", L"The stream has been closed."},
    {"end of stream", [] { throw CEndOfStreamError(uri(L"file:///a")); }, L"StreamError",
     L"Unexpected end of data stream (uri: 'file:///a')."},
    {"end of unknown stream", [] { throw CEndOfStreamError(); }, L"StreamError", L"Unexpected end of data stream."},
};

} // namespace

TEST(Errors, NamesAndMessages) {
    for (const ErrorCase& test : g_errorCases) {
        SCOPED_TRACE(test.label);
        try {
            test.raise();
            ADD_FAILURE() << "nothing thrown";
        } catch (const CException& e) {
            EXPECT_EQ(e.getErrorName(), String(test.name));
            EXPECT_EQ(e.getMessage(), String(test.message));
            EXPECT_STREQ(e.what(), String(test.message).toCP().c_str());
        }
    }
}

TEST(Errors, CaughtByTheirBaseClasses) {
    EXPECT_THROW(throw CFileNotFoundError(), CFileError);
    EXPECT_THROW(throw CFileNotFoundError(), CURIError);
    EXPECT_THROW(throw CEndOfStreamError(), CStreamError);
    EXPECT_THROW(throw CEndOfEnumError(nullptr, nullptr), CInvalidObjectStateError);
    EXPECT_THROW(throw CCastError(nullptr, typeid(int)), CObjectError);
    EXPECT_THROW(throw CJsonParserError(), CError);
    EXPECT_THROW(throw COutOfmemoryException(), CException);
    try {
        throw CURIFormatError(L"x");
    } catch (const CFileError&) {
        ADD_FAILURE() << "a format error is no file error";
    } catch (const std::exception& e) {
        EXPECT_STREQ(e.what(), "The URI ('x') has an invalid format.");
    }
}

TEST(Errors, URIIsKeptOnlyWithAMessage) {
    const P<IURI> file = uri(L"file:///a");
    EXPECT_EQ(CURIError(L"Error with %URI%", file).getURI(), file);
    EXPECT_EQ(CURIError(L"Error with %URI%", nullptr).getURI(), nullptr);
    EXPECT_EQ(CURIError(String(), file).getURI(), nullptr);
    EXPECT_EQ(CFileNotFoundError(file).getURI(), file);
    EXPECT_EQ(CURITypeNotSupportedError(file).getURI(), file);
    // A URI whose text holds the placeholder is not expanded again.
    EXPECT_EQ(CURIFormatError(L"a%URI%").getMessage(), String(L"The URI ('a%URI%') has an invalid format."));
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
    EXPECT_EQ(dynamic_cast<CFileError*>(kept.get()), nullptr);
    EXPECT_EQ(dynamic_cast<CURIError*>(kept.get()), nullptr);
    EXPECT_EQ(kept->getErrorName(), String(L"FileNotFoundError"));
    EXPECT_EQ(kept->getMessage(), String(L"The file '/missing.txt' was not found."));
    EXPECT_THROW(throw *kept, CException);
}

TEST(Errors, CopiesStartWithTheirOwnCount) {
    CError original(L"text");
    const P<CError> extra = P<CError>::share(&original);
    ASSERT_EQ(original.getRefCount(), 2);
    const CError copy(original);
    EXPECT_EQ(copy.getRefCount(), 1);
    EXPECT_EQ(copy.getMessage(), String(L"text"));
    try {
        throw original;
    } catch (const CError& e) {
        EXPECT_EQ(e.getRefCount(), 1);
    }
}

TEST(Errors, WhatStaysValidAndSharesCodePageText) {
    const String message = String(L"Größe: 3 €");
    const CError wide(message);
    const char* text = wide.what();
    EXPECT_EQ(text, wide.what());
    EXPECT_STREQ(text, message.toCP().c_str());

    const String narrow = String("narrow text", -1);
    const CError fromNarrow(narrow);
    EXPECT_EQ(fromNarrow.what(), narrow.c_str());
}

TEST(Errors, CastThroughSmartPointer) {
    const P<IBase> object = make<CURI>(L"http://h/");
    try {
        cast<IStringLocalizer>(object);
        ADD_FAILURE() << "nothing thrown";
    } catch (const CCastError& e) {
        EXPECT_EQ(e.getErrorName(), String(L"Cast error"));
        EXPECT_EQ(e.getMessage(), String(L"Error casting a 'zuno::CURI' object to 'zuno::IStringLocalizer'."));
        EXPECT_EQ(e.getObjectDescription(), String(L"object: zuno::CURI object"));
    }
    EXPECT_EQ(object->getDescription(), String(L"zuno::CURI object"));
    EXPECT_TRUE(cast<IURI>(object));
    EXPECT_FALSE(cast<IURI>(P<IBase>()));
}

TEST(Errors, SystemErrorText) {
    // 2 is "file not found" on both platforms.
    const String text = getSystemErrorText(2);
    ASSERT_FALSE(text.isEmpty());
    EXPECT_TRUE(text.toLower().contains(L"file")) << text;
    EXPECT_FALSE(text.endsWith(L"\n") || text.endsWith(L"\r"));
    EXPECT_FALSE(getSystemErrorText(0x7FFFFFF0u).isEmpty());
}
