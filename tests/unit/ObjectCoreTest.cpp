#include <zuno/CGlobalObjFactory.h>
#include <zuno/CObject.h>
#include <zuno/CObjectError.h>
#include <zuno/PFrail.h>
#include <zuno/String.h>
#include <zuno/TFrailArray.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

using namespace zuno;

namespace {

class IGreeter : public virtual IBase {
public:
    virtual int greet() = 0;
};

class IUnrelated : public virtual IBase {};

// Counts its destructions and, when asked, takes and drops references to itself while dying.
class CGreeter : public CObject, public IGreeter {
public:
    explicit CGreeter(int* destroyed, bool selfReferenceInDestructor = false)
        : m_destroyed(destroyed), m_selfReference(selfReferenceInDestructor) {}
    ~CGreeter() override {
        if (m_selfReference) {
            P<IGreeter> again = P<IGreeter>::share(this);
            again.reset();
        }
        ++*m_destroyed;
    }
    int greet() override { return 42; }

private:
    int* m_destroyed;
    bool m_selfReference;
};

} // namespace

TEST(ObjectCore, AdoptTakesTheCreatorsReferenceShareAddsOne) {
    int destroyed = 0;
    auto* raw = new CGreeter(&destroyed);
    {
        P<IGreeter> owner = adopt<IGreeter>(raw);
        EXPECT_EQ(raw->getRefCount(), 1);
        P<IGreeter> second = share<IGreeter>(raw);
        EXPECT_EQ(raw->getRefCount(), 2);
        P<IBase> base = owner;
        EXPECT_EQ(raw->getRefCount(), 3);
        P<IGreeter> moved = std::move(second);
        EXPECT_EQ(raw->getRefCount(), 3);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ObjectCore, LastReleaseDestroysOnceEvenWhenTheDestructorReferencesItself) {
    int destroyed = 0;
    {
        P<IGreeter> greeter = make<CGreeter>(&destroyed, true);
        const PC<IGreeter> constView = greeter;
        EXPECT_EQ(dynamic_cast<const CReferencable*>(constView.get())->getRefCount(), 2);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(ObjectCore, DescriptionNamesTheClassWithItsNamespace) {
    int destroyed = 0;
    P<IGreeter> greeter = make<CGreeter>(&destroyed);
    const std::string description = greeter->getDescription().toStdString();
    EXPECT_NE(description.find("CGreeter object"), std::string::npos) << description;
    EXPECT_TRUE(greeter->isObject());
    EXPECT_EQ(CObject::className(typeid(CObject)), String(L"zuno::CObject"));
}

TEST(ObjectCore, CheckedCastRaisesCastErrorAndQueryAnswersNull) {
    int destroyed = 0;
    P<IBase> object = make<CGreeter>(&destroyed);
    EXPECT_EQ(cast<IGreeter>(object)->greet(), 42);
    EXPECT_FALSE(query<IUnrelated>(object));
    EXPECT_FALSE(cast<IUnrelated>(P<IBase>()));
    try {
        cast<IUnrelated>(object);
        FAIL() << "cast to an interface the object lacks succeeded";
    } catch (const CCastError& error) {
        EXPECT_EQ(error.getErrorName(), String(L"Cast error"));
        EXPECT_TRUE(error.getMessage().startsWith(L"Error casting a '")) << error.getMessage();
        EXPECT_TRUE(error.getMessage().contains(L"CGreeter' object to '")) << error.getMessage();
        EXPECT_TRUE(error.getMessage().endsWith(L"IUnrelated'.")) << error.getMessage();
    }
}

TEST(ObjectCore, FrailReferenceIsClearedWhenItsObjectDies) {
    int destroyed = 0;
    P<IGreeter> greeter = make<CGreeter>(&destroyed);
    PFrail<IGreeter> frail(greeter);
    PFrail<IGreeter> copy = frail;
    EXPECT_EQ(frail.lock()->greet(), 42);
    greeter.reset();
    EXPECT_EQ(destroyed, 1);
    EXPECT_TRUE(frail.expired());
    EXPECT_FALSE(frail.lock());
    EXPECT_FALSE(copy.lock());
}

TEST(ObjectCore, FrailArrayForgetsDeadObjects) {
    int destroyed = 0;
    TFrailArray<IGreeter> listeners;
    P<IGreeter> first = make<CGreeter>(&destroyed);
    P<IGreeter> second = make<CGreeter>(&destroyed);
    listeners.add(first);
    listeners.add(second);
    TFrailArray<IGreeter> copy = listeners;
    EXPECT_EQ(listeners.lockAll().size(), 2u);
    first.reset();
    EXPECT_EQ(listeners.size(), 1u);
    EXPECT_EQ(copy.size(), 1u);
    EXPECT_EQ(listeners.lockAll().front(), second);
    EXPECT_TRUE(listeners.remove(second));
    EXPECT_TRUE(listeners.empty());
    second.reset();
    EXPECT_EQ(destroyed, 2);
}

TEST(ObjectCore, FrailUpgradeRacingWithTheLastReleaseNeverResurrects) {
    for (int round = 0; round < 200; ++round) {
        int destroyed = 0;
        P<IGreeter> greeter = make<CGreeter>(&destroyed);
        PFrail<IGreeter> frail(greeter);
        std::thread locker([&] {
            for (int i = 0; i < 50; ++i) {
                if (P<IGreeter> alive = frail.lock()) {
                    EXPECT_EQ(alive->greet(), 42);
                }
            }
        });
        greeter.reset();
        locker.join();
        EXPECT_EQ(destroyed, 1);
        EXPECT_FALSE(frail.lock());
    }
}

namespace {

std::atomic<int> g_created{0};

class IClock : public virtual IBase {};
class CClock : public CObject, public IClock {
public:
    CClock() {
        ++g_created;
        std::this_thread::yield();
    }
};

P<IClock> getClock() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<IClock>(key, [] { return P<IClock>(make<CClock>()); });
}

P<IClock> getOtherClock() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<IClock>(key, [] { return P<IClock>(make<CClock>()); });
}

} // namespace

TEST(GlobalObjFactory, ServiceRequestedByManyThreadsAtOnceIsCreatedOnce) {
    std::vector<std::thread> threads;
    std::vector<IClock*> seen(8);
    std::atomic<bool> go{false};
    for (size_t i = 0; i < seen.size(); ++i)
        threads.emplace_back([&, i] {
            while (!go) std::this_thread::yield();
            seen[i] = getClock().get();
        });
    go = true;
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(g_created, 1);
    for (IClock* clock : seen) EXPECT_EQ(clock, seen.front());
    EXPECT_EQ(getClock().get(), seen.front());
    EXPECT_NE(getOtherClock().get(), seen.front()) << "another request site is another service";
    EXPECT_EQ(g_created, 2);
}

TEST(GlobalObjFactory, SlotCarriesTheAliveMarker) {
    CGlobalObjFactory::Slot& slot = CGlobalObjFactory::access();
    EXPECT_EQ(slot.alive.load(), CGlobalObjFactory::AliveMarker);
    EXPECT_EQ(slot.dead.load(), CGlobalObjFactory::DeadMarker);
    EXPECT_NE(slot.factory.load(), nullptr);
}

namespace {

class INoisy : public virtual IBase {};

// Tells on standard error when it is released, so a death test can see the order.
class CNoisy : public CObject, public INoisy {
public:
    explicit CNoisy(const char* name) : m_name(name) {}
    ~CNoisy() override { std::fprintf(stderr, "[%s]", m_name); }

private:
    const char* m_name;
};

P<INoisy> getFirstNoisy() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<INoisy>(key, [] { return P<INoisy>(make<CNoisy>("first")); });
}

P<INoisy> getSecondNoisy() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<INoisy>(key, [] { return P<INoisy>(make<CNoisy>("second")); });
}

} // namespace

TEST(GlobalObjFactoryDeathTest, ServicesAreReleasedInReverseOrderOfCreationAtExit) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            getFirstNoisy();
            getSecondNoisy();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "\\[second\\]\\[first\\]");
}
