#include <zuno/CStringLocalizer.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace zuno;

namespace {

const wchar_t* const Key = L"zuno.CTest.Reason";
const wchar_t* const Default = L"Default text";

// Leaves the process-wide localizer as it found it: empty and without fallback.
struct GlobalLocalizerTest : testing::Test {
    void TearDown() override {
        getStringLocalizer()->clear();
        getStringLocalizer()->setFallback(nullptr);
    }
};

} // namespace

TEST(Localizer, FallbackChain) {
    // nullptr: nothing stored for the key.
    struct Case {
        const wchar_t* own;
        const wchar_t* fallback;
        const wchar_t* expected;
    } const cases[] = {
        {nullptr, nullptr, L"Default text"}, {L"Own", nullptr, L"Own"},       {L"", nullptr, L"Default text"},
        {L"", L"Other", L"Other"},           {nullptr, L"Other", L"Other"}, {L"Own", L"Other", L"Own"},
        {nullptr, L"", L"Default text"},     {L"", L"", L"Default text"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::Message() << (test.own ? "own" : "-") << " / " << (test.fallback ? "fallback" : "-"));
        const P<CStringLocalizer> localizer = make<CStringLocalizer>();
        const P<CStringLocalizer> fallback = make<CStringLocalizer>();
        localizer->setFallback(fallback);
        if (test.own) localizer->setText(Key, test.own);
        if (test.fallback) fallback->setText(Key, test.fallback);
        EXPECT_EQ(localizer->localize(Key, Default), String(test.expected));
    }
}

TEST(Localizer, SetTextReplacesAndClearRemoves) {
    const P<CStringLocalizer> localizer = make<CStringLocalizer>();
    localizer->setText(Key, L"First");
    localizer->setText(Key, L"Second");
    // Keys match by their characters, whatever their storage encoding.
    EXPECT_EQ(localizer->localize(L"zuno.CTest.Reason", Default), String(L"Second"));
    EXPECT_EQ(localizer->localize(String::fromUTF8("zuno.CTest.Reason"), Default), String(L"Second"));
    EXPECT_EQ(localizer->localize(L"zuno.CTest.reason", Default), String(Default));
    localizer->clear();
    EXPECT_EQ(localizer->localize(Key, Default), String(Default));
}

TEST(Localizer, HoldsItsFallbackUntilReplaced) {
    const P<CStringLocalizer> localizer = make<CStringLocalizer>();
    const P<CStringLocalizer> fallback = make<CStringLocalizer>();
    fallback->setText(Key, L"Other");
    localizer->setFallback(fallback);
    EXPECT_EQ(fallback->getRefCount(), 2);
    localizer->setFallback(nullptr);
    EXPECT_EQ(fallback->getRefCount(), 1);
    EXPECT_EQ(localizer->localize(Key, Default), String(Default));
}

TEST(Localizer, FallbackCyclesEndWithTheDefault) {
    const P<CStringLocalizer> first = make<CStringLocalizer>();
    const P<CStringLocalizer> second = make<CStringLocalizer>();
    first->setFallback(second);
    second->setFallback(first);
    EXPECT_EQ(first->localize(Key, Default), String(Default));
    second->setText(Key, L"Second");
    EXPECT_EQ(first->localize(Key, Default), String(L"Second"));
    // Break the cycle, or neither would ever be freed.
    first->setFallback(nullptr);

    const P<CStringLocalizer> self = make<CStringLocalizer>();
    self->setFallback(self);
    EXPECT_EQ(self->localize(Key, Default), String(Default));
    self->setFallback(nullptr);
}

TEST_F(GlobalLocalizerTest, IsOneServiceUsedByMessages) {
    EXPECT_EQ(getStringLocalizer(), getStringLocalizer());
    EXPECT_EQ(localizeText(Key, Default), String(Default));

    getStringLocalizer()->setText("zuno.CFileNotFoundError.Desc", L"Datei '%FILE%' fehlt.");
    EXPECT_EQ(CFileNotFoundError(make<CURI>(L"file:///tmp/x")).getMessage(), String(L"Datei '/tmp/x' fehlt."));

    const P<CStringLocalizer> fallback = make<CStringLocalizer>();
    fallback->setText("zuno.CFileNotFoundError.GeneralDesc", L"Keine Datei.");
    getStringLocalizer()->setFallback(fallback);
    EXPECT_EQ(CFileNotFoundError().getMessage(), String(L"Keine Datei."));
}

TEST(Localizer, FillPlaceholder) {
    struct Case {
        const wchar_t* text;
        const wchar_t* name;
        const wchar_t* value;
        const wchar_t* expected;
    } const cases[] = {
        {L"The file '%FILE%' was not found.", L"FILE", L"/a b", L"The file '/a b' was not found."},
        {L"The file '%FILE%' was not found.", L"%FILE%", L"/a", L"The file '/a' was not found."},
        {L"Error copying file '%SRC%' to '%DEST%'.", L"DEST", L"b", L"Error copying file '%SRC%' to 'b'."},
        {L"No placeholder", L"FILE", L"x", L"No placeholder"},
        {L"%FILE%", L"FILE", L"%FILE%", L"%FILE%"},
        {L"%MSG%", L"MSG", L"", L""},
        {L"100%", L"", L"x", L"100%"},
        {L"%%", L"%", L"x", L"%%"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(String(test.text) + L" / " + String(test.name));
        EXPECT_EQ(fillPlaceholder(test.text, test.name, test.value), String(test.expected));
    }
    EXPECT_EQ(fillPlaceholder(L"[%MSG%]", L"MSG", String()), String(L"[]"));
}

TEST(Localizer, ConcurrentUse) {
    const P<CStringLocalizer> localizer = make<CStringLocalizer>();
    const P<CStringLocalizer> fallback = make<CStringLocalizer>();
    fallback->setText(Key, L"Fallback");
    std::atomic<int> wrongAnswers{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 500; ++i) {
                switch ((t + i) % 4) {
                case 0: localizer->setText(Key, L"Own"); break;
                case 1: localizer->setFallback(i % 3 ? fallback : nullptr); break;
                case 2: if (i % 50 == 0) localizer->clear(); break;
                default: break;
                }
                const String text = localizer->localize(Key, Default);
                if (text != L"Own" && text != L"Fallback" && text != Default) ++wrongAnswers;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrongAnswers.load(), 0);
    localizer->setFallback(nullptr);
}
