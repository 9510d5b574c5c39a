#include <zuno/CStringLocalizer.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace zuno;

static const wchar_t* const Key = L"zuno.CTest.Reason";
static const wchar_t* const Default = L"Default text";

TEST(Localizer, FallbackChain) {
    // Own text, fallback's text (nullptr: nothing stored for the key), expected result.
    const wchar_t* const cases[][3] = {
        {nullptr, nullptr, L"Default text"}, {L"Own", nullptr, L"Own"},       {L"", nullptr, L"Default text"},
        {L"", L"Other", L"Other"},           {nullptr, L"Other", L"Other"}, {L"Own", L"Other", L"Own"},
        {nullptr, L"", L"Default text"},     {L"", L"", L"Default text"},
    };
    for (const auto& [own, other, expected] : cases) {
        SCOPED_TRACE(testing::Message() << (own ? "own" : "-") << " / " << (other ? "fallback" : "-"));
        const P<CStringLocalizer> localizer = make<CStringLocalizer>();
        const P<CStringLocalizer> fallback = make<CStringLocalizer>();
        localizer->setFallback(fallback);
        if (own) localizer->setText(Key, own);
        if (other) fallback->setText(Key, other);
        EXPECT_EQ(localizer->localize(Key, Default), String(expected));
        localizer->setFallback(nullptr);
        EXPECT_EQ(fallback->getRefCount(), 1) << "a replaced fallback is released";
    }
}

TEST(Localizer, KeysMatchByCharactersAndCyclesEndWithTheDefault) {
    const P<CStringLocalizer> first = make<CStringLocalizer>();
    const P<CStringLocalizer> second = make<CStringLocalizer>();
    first->setFallback(second);
    second->setFallback(first);
    EXPECT_EQ(first->localize(Key, Default), String(Default));
    second->setText(Key, L"Replaced");
    second->setText(String::fromUTF8("zuno.CTest.Reason"), L"Second");
    EXPECT_EQ(first->localize(Key, Default), String(L"Second"));
    EXPECT_EQ(first->localize(L"zuno.CTest.reason", Default), String(Default));
    first->setFallback(first);
    EXPECT_EQ(first->localize(Key, Default), String(Default));
    second->clear();
    EXPECT_EQ(second->localize(Key, Default), String(Default));
    // Break the cycles, or neither would ever be freed.
    first->setFallback(nullptr);
    second->setFallback(nullptr);
}

TEST(Localizer, TheServiceLocalizesMessages) {
    const P<IStringLocalizer> global = getStringLocalizer();
    EXPECT_EQ(global, getStringLocalizer());
    global->setText("zuno.CFileNotFoundError.Desc", L"Datei '%FILE%' fehlt.");
    EXPECT_EQ(CFileNotFoundError(make<CURI>(L"file:///tmp/x")).getMessage(), String(L"Datei '/tmp/x' fehlt."));
    const P<CStringLocalizer> fallback = make<CStringLocalizer>();
    fallback->setText("zuno.CFileNotFoundError.GeneralDesc", L"Keine Datei.");
    global->setFallback(fallback);
    EXPECT_EQ(CFileNotFoundError().getMessage(), String(L"Keine Datei."));
    global->clear();
    global->setFallback(nullptr);
}

TEST(Localizer, FillPlaceholder) {
    // Text, placeholder name, value (nullptr: the null string), expected result.
    const wchar_t* const cases[][4] = {
        {L"The file '%FILE%' was not found.", L"FILE", L"/a b", L"The file '/a b' was not found."},
        {L"The file '%FILE%' was not found.", L"%FILE%", L"/a", L"The file '/a' was not found."},
        {L"Error copying file '%SRC%' to '%DEST%'.", L"DEST", L"b", L"Error copying file '%SRC%' to 'b'."},
        {L"No placeholder", L"FILE", L"x", L"No placeholder"},
        {L"%FILE%", L"FILE", L"%FILE%", L"%FILE%"},
        {L"%MSG%", L"MSG", L"", L""},
        {L"[%MSG%]", L"MSG", nullptr, L"[]"},
        {L"100%", L"", L"x", L"100%"},
        {L"%%", L"%", L"x", L"%%"},
    };
    for (const auto& [text, name, value, expected] : cases)
        EXPECT_EQ(fillPlaceholder(text, name, value), String(expected)) << String(text) << " / " << String(name);
}

TEST(Localizer, ConcurrentUse) {
    const P<CStringLocalizer> localizer = make<CStringLocalizer>();
    const P<CStringLocalizer> fallback = make<CStringLocalizer>();
    fallback->setText(Key, L"Fallback");
    std::atomic<int> wrongAnswers{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 500; ++i) {
                if (t == 0) localizer->setText(Key, L"Own");
                if (t == 1) localizer->setFallback(i % 3 ? fallback : nullptr);
                if (t == 2 && i % 50 == 0) localizer->clear();
                const String text = localizer->localize(Key, Default);
                wrongAnswers += text != L"Own" && text != L"Fallback" && text != Default;
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrongAnswers.load(), 0);
    localizer->setFallback(nullptr);
}
