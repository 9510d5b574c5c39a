#include <zuno/CGlobalObjFactory.h>
#include <zuno/CObject.h>
#include <zuno/CObjectError.h>
#include <zuno/IURI.h>
#include <zuno/PFrail.h>
#include <zuno/TFrailArray.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

using namespace zuno;

namespace {

std::atomic<int> g_created{0};
std::atomic<int> g_destroyed{0};
bool g_reportDeaths = false;

class IGreeter : public virtual IBase {};

// Counts its creations (slowly) and destructions; takes and drops a reference to itself while
// dying, and tells on standard error when it dies if asked to.
class CGreeter : public CObject, public IGreeter {
public:
    explicit CGreeter(int id = 0) : m_id(id) {
        ++g_created;
        std::this_thread::yield();
    }
    ~CGreeter() override {
        P<IGreeter>::share(this).reset();
        ++g_destroyed;
        if (g_reportDeaths) std::fprintf(stderr, "[%d]", m_id);
    }

private:
    int m_id;
};

// Each instantiation is its own request site, so its own service.
template <int Site>
P<IGreeter> getService() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<IGreeter>(key, [] { return P<IGreeter>(make<CGreeter>(Site)); });
}

} // namespace

TEST(ObjectCore, AdoptTakesTheCreatorsReferenceShareAddsOneLastReleaseDestroysOnce) {
    const int destroyed = g_destroyed;
    auto* raw = new CGreeter;
    {
        P<IGreeter> owner = adopt<IGreeter>(raw);
        EXPECT_EQ(raw->getRefCount(), 1);
        P<IGreeter> second = share<IGreeter>(raw);
        const PC<IGreeter> constView = owner;
        P<IBase> base = owner;
        P<IGreeter> moved = std::move(second);
        EXPECT_EQ(raw->getRefCount(), 4);
        EXPECT_EQ(cast<IGreeter>(base), owner);
        EXPECT_FALSE(query<IURI>(base));
        EXPECT_FALSE(cast<IURI>(P<IBase>()));
        EXPECT_THROW(cast<IURI>(base), CCastError);
    }
    EXPECT_EQ(g_destroyed - destroyed, 1) << "the destructor's reference to itself must not destroy it again";
}

TEST(ObjectCore, FrailReferencesAreClearedWhenTheirObjectDies) {
    P<IGreeter> first = make<CGreeter>();
    const P<IGreeter> second = make<CGreeter>();
    const PFrail<IGreeter> frail(first);
    const PFrail<IGreeter> copy = frail;
    TFrailArray<IGreeter> listeners;
    listeners.add(first);
    listeners.add(second);
    const TFrailArray<IGreeter> listenersCopy = listeners;
    EXPECT_EQ(frail.lock(), first);
    first.reset();
    EXPECT_TRUE(frail.expired());
    EXPECT_FALSE(frail.lock() || copy.lock());
    EXPECT_EQ(listenersCopy.size(), 1u);
    EXPECT_EQ(listeners.lockAll(), std::vector<P<IGreeter>>{second});
    EXPECT_TRUE(listeners.remove(second) && listeners.empty());
}

TEST(ObjectCore, FrailUpgradeRacingWithTheLastReleaseNeverResurrects) {
    for (int round = 0; round < 200; ++round) {
        const int destroyed = g_destroyed;
        P<IGreeter> greeter = make<CGreeter>();
        const PFrail<IGreeter> frail(greeter);
        std::thread locker([&] {
            for (int i = 0; i < 50; ++i) {
                const P<IGreeter> alive = frail.lock();
                EXPECT_TRUE(!alive || g_destroyed == destroyed) << "a locked object is alive";
            }
        });
        greeter.reset();
        locker.join();
        EXPECT_EQ(g_destroyed - destroyed, 1);
        EXPECT_FALSE(frail.lock());
    }
}

TEST(GlobalObjFactory, ServiceRequestedByManyThreadsAtOnceIsCreatedOnce) {
    const int created = g_created;
    std::vector<IGreeter*> seen(8);
    std::vector<std::thread> threads;
    std::atomic<bool> go{false};
    for (size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&, i] {
            while (!go) std::this_thread::yield();
            seen[i] = getService<1>().get();
        });
    go = true;
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(g_created - created, 1);
    EXPECT_EQ(seen, std::vector<IGreeter*>(seen.size(), getService<1>().get()));
    EXPECT_NE(getService<2>().get(), seen.front()) << "another request site is another service";
}

TEST(GlobalObjFactoryDeathTest, ServicesAreReleasedInReverseOrderOfCreationAtExit) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            g_reportDeaths = true;
            getService<3>();
            getService<4>();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "\\[4\\]\\[3\\]");
}
