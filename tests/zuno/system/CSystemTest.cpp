#include <zuno/CError.h>
#include <zuno/CSystem.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace zuno;

namespace {

using Calls = std::vector<std::pair<std::string, bool>>;  // URI text, recycle-bin flag

// A local file system that writes down what it is asked to remove. A file named "gone" is not
// there, one named "locked" cannot be removed.
class RecordingFileSystem : public CObject, public IFileSystem {
public:
    Calls calls;

    bool deleteFile(const P<IURI>& uri, bool toRecycleBin) override {
        calls.emplace_back(uri->toString().toStdString(), toRecycleBin);
        if (uri->toString().contains(L"locked")) throw CError(L"cannot delete");
        return !uri->toString().contains(L"gone");
    }
};

P<IURI> uri(const wchar_t* text) {
    return make<CURI>(String(text));
}

} // namespace

TEST(CSystem, handsFileURIsToItsLocalFileSystemWithTheRecycleBinFlag) {
    const auto local = make<RecordingFileSystem>();
    CSystem system(local);

    // Asking the file-system manager would raise: it serves no empty URI.
    EXPECT_FALSE(system.deleteFile(nullptr));
    EXPECT_FALSE(system.deleteFile(uri(L"")));
    EXPECT_TRUE(local->calls.empty());

    EXPECT_TRUE(system.deleteFile(uri(L"file:///C:/mail.xml")));
    EXPECT_TRUE(system.recycleFile(uri(L"FILE:///C:/old.txt")));
    EXPECT_THROW(system.recycleFile(uri(L"file:///C:/locked.txt")), CError);
    EXPECT_FALSE(system.deleteFile(uri(L"file:///C:/gone.txt")));
    EXPECT_EQ(local->calls, (Calls{{"file:///C:/mail.xml", false}, {"FILE:///C:/old.txt", true},
                                   {"file:///C:/locked.txt", true}, {"file:///C:/gone.txt", false}}));
}

TEST(CSystem, sendsOtherSchemesToTheFileSystemManagerAndFileURIsNowhereWithoutALocalFileSystem) {
    const auto local = make<RecordingFileSystem>();
    CSystem system(local), withoutLocal(nullptr);

    EXPECT_THROW(system.deleteFile(uri(L"http://example.org/mail.xml")), CURITypeNotSupportedError);
    // Only the first removal refuses an empty URI itself; the second asks the manager.
    EXPECT_THROW(system.recycleFile(uri(L"")), CURITypeNotSupportedError);
    EXPECT_THROW(system.recycleFile(nullptr), CURITypeNotSupportedError);
    EXPECT_TRUE(local->calls.empty());
    EXPECT_FALSE(withoutLocal.deleteFile(uri(L"file:///C:/mail.xml")));
    EXPECT_FALSE(withoutLocal.recycleFile(uri(L"file:///C:/mail.xml")));
}
