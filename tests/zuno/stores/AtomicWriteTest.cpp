// Storing replaces the file in one step: a failure at any step leaves the old file whole.
#include "storeBackends.h"
#include "stores/storeFile.h"

#include <zuno/CURIError.h>

#include <gtest/gtest.h>

using namespace zuno;
using storeFile::WriteStep;

namespace {

// Makes one step of every write fail while it lives.
class FailingStep {
public:
    explicit FailingStep(WriteStep step) {
        storeFile::setStepHook([step, this](WriteStep now) {
            m_reached = m_reached || now == step;
            return now == step;
        });
    }
    ~FailingStep() { storeFile::setStepHook(nullptr); }
    bool reached() const { return m_reached; }

private:
    bool m_reached = false;
};

} // namespace

TEST(AtomicWrite, aFailureAtEveryStepLeavesTheOldFileWholeAndNoTemporaryFile) {
    ScratchFolder folder;
    for (const char* name : {"store.xml", "store.json"}) {
        std::filesystem::create_directories(folder / "only");
        const auto path = folder / "only" / name;
        const std::string uri = fileURIText(path);
        {
            P<IValueStore> store = openStore(uri);
            store->setString(L"value", L"old");
            store->store();
        }
        const std::string old = readFile(path);

        for (const WriteStep step : storeFile::writeSteps()) {
            P<IValueStore> store = openStore(uri);
            store->setString(L"value", L"new");
            {
                FailingStep failing(step);
                EXPECT_THROW(store->store(), CFileError) << name << " step " << int(step);
                EXPECT_TRUE(failing.reached());
            }
            EXPECT_EQ(filesIn(folder / "only"), std::vector<std::string>{name}) << "step " << int(step);
            // Once renamed, the new file is complete; only syncing its folder failed.
            const bool renamed = step == WriteStep::SyncFolder;
            EXPECT_EQ(openStore(uri)->getString(L"value", L""), String(renamed ? L"new" : L"old")) << int(step);
            if (!renamed) {
                EXPECT_EQ(readFile(path), old);
            }

            EXPECT_TRUE(store->isModified()) << "a failed store keeps its changes to try again";
            store->store();
            EXPECT_EQ(openStore(uri)->getString(L"value", L""), String(L"new"));
            store->setString(L"value", L"old");
            store->store();
        }
        std::filesystem::remove_all(folder / "only");
    }
}
