#include "storeBackends.h"
#include "stores/CJsonValueStore.h"
#include "stores/CXmlValueStore.h"

#include <zuno/CURI.h>
#include <zuno/CObject.h>
#include <zuno/IValueStoreManager.h>

#include <gtest/gtest.h>

#include <string>
#include <typeinfo>

using namespace zuno;

TEST(ValueStoreManager, choosesTheStoreByTheURIsSchemeAndExtension) {
    ScratchFolder folder;
    const std::string base = fileURIText(folder / "store");
    const struct {
        std::string uri;
        const std::type_info* type;  // null: no store
    } cases[] = {
        {base + ".xml", &typeid(CXmlValueStore)},
        {base + ".XML", &typeid(CXmlValueStore)},
        {base + ".json", &typeid(CJsonValueStore)},
        {base + ".Json", &typeid(CJsonValueStore)},
        {base + ".txt", nullptr},
        {base + ".xml.bak", nullptr},
        {base, nullptr},
        {"http://example.org/store.xml", nullptr},
        {"store.json", nullptr},
    };
    for (const auto& c : cases) {
        const P<IValueStore> store = openStore(c.uri);
        if (!c.type) {
            EXPECT_FALSE(store) << c.uri;
        } else {
            ASSERT_TRUE(store) << c.uri;
            EXPECT_EQ(typeid(*store), *c.type) << c.uri;
        }
    }
    EXPECT_FALSE(getValueStoreManager()->openValueStore(nullptr, true));
}

TEST(ValueStoreManager, isOneServiceAndAsksTheFactoriesAddedToIt) {
    class RecordingFactory : public CObject, public IValueStoreFactory {
    public:
        bool accepts(const P<IURI>& uri) override { return uri->isScheme(L"memory"); }
        P<IValueStore> createValueStore(const P<IURI>& uri, ValueStoreAccess access) override {
            asked = true;
            lastAccess = access;
            return accepts(uri) ? openStore(fileURIText(folder / "memory.json"), access) : nullptr;
        }
        ScratchFolder folder;
        bool asked = false;
        ValueStoreAccess lastAccess = ValueStoreAccess::Read;
    };
    const P<IValueStoreManager> manager = getValueStoreManager();
    EXPECT_EQ(manager, getValueStoreManager());
    const P<RecordingFactory> factory = make<RecordingFactory>();
    manager->addFactory(factory);
    EXPECT_TRUE(manager->openValueStore(make<CURI>(L"memory:x"), true));
    EXPECT_TRUE(factory->asked);
    EXPECT_EQ(factory->lastAccess, ValueStoreAccess::Read);
    manager->openValueStore(make<CURI>(L"memory:x"), false);
    EXPECT_EQ(factory->lastAccess, ValueStoreAccess::ReadWrite);
    EXPECT_TRUE(manager->removeFactory(factory));
    EXPECT_FALSE(manager->removeFactory(factory));
    EXPECT_FALSE(manager->openValueStore(make<CURI>(L"memory:x"), true));
}
