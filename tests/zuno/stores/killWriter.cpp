#include "killWriter.h"
#include "storeBackends.h"

#include <gtest/gtest.h>

using namespace zuno;

namespace {

// Large enough that writing a version takes a while.
String version(char letter) {
    return String::fromWide(std::wstring(200000, wchar_t(letter)));
}

// The version's content and, in a sub-store, its letter, stored together.
void setVersion(IValueStore& store, char letter, const String& content) {
    store.setString(L"content", content);
    store.getSubStore(L"sub", true)->setString(L"letter", letter == 'a' ? L"a" : L"b");
}

} // namespace

void storeFirstVersion(const std::string& uri) {
    const P<IValueStore> store = openStore(uri);
    setVersion(*store, 'a', version('a'));
    store->store();
}

void storeVersionsUntilKilled(const std::string& uri) {
    const P<IValueStore> store = openStore(uri);
    const String versions[] = {version('a'), version('b')};
    for (int i = 0;; i = 1 - i) {
        setVersion(*store, char('a' + i), versions[i]);
        store->store();
    }
}

void expectOneWholeVersion(const std::string& uri) {
    P<IValueStore> store;
    ASSERT_NO_THROW(store = openStore(uri, ValueStoreAccess::Read));
    const P<IValueStore> sub = store->getSubStore(L"sub", false);
    ASSERT_TRUE(sub);
    const String letter = sub->getString(L"letter", L"?");
    ASSERT_TRUE(letter == String(L"a") || letter == String(L"b"));
    ASSERT_EQ(store->getString(L"content", L""), version(char(letter.charAt(0))));
}
