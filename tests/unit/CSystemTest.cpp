#include <zuno/CError.h>
#include <zuno/CFileSystemManager.h>
#include <zuno/CLocalFileSystem.h>
#include <zuno/CSystem.h>
#include <zuno/CURI.h>
#include <zuno/CURIError.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace zuno;

namespace {

// A local file system that only writes down what it is asked to remove.
class RecordingFileSystem : public CObject, public IFileSystem {
public:
    bool answer = true;
    bool fails = false;
    std::vector<std::pair<std::string, bool>> calls;  // URI text, recycle-bin flag

    bool deleteFile(const P<IURI>& uri, bool toRecycleBin) override {
        calls.emplace_back(uri->toString().toStdString(), toRecycleBin);
        if (fails) throw CError(L"cannot delete");
        return answer;
    }
};

P<IURI> uri(const wchar_t* text) {
    return make<CURI>(String(text));
}

using Calls = std::vector<std::pair<std::string, bool>>;

} // namespace

TEST(CSystem, deleteFileAnswersFalseForANullOrEmptyURIWithoutAskingAnyFileSystem) {
    const auto local = make<RecordingFileSystem>();
    CSystem system(local);

    EXPECT_FALSE(system.deleteFile(nullptr));
    EXPECT_FALSE(system.deleteFile(uri(L"")));
    EXPECT_TRUE(local->calls.empty());
}

TEST(CSystem, handsFileURIsToItsLocalFileSystemWithTheRecycleBinFlag) {
    const auto local = make<RecordingFileSystem>();
    CSystem system(local);

    EXPECT_TRUE(system.deleteFile(uri(L"file:///C:/mail.xml")));
    EXPECT_TRUE(system.recycleFile(uri(L"FILE:///C:/old.txt")));
    local->answer = false;
    EXPECT_FALSE(system.deleteFile(uri(L"file:///C:/gone.txt")));

    EXPECT_EQ(local->calls, (Calls{{"file:///C:/mail.xml", false}, {"FILE:///C:/old.txt", true}, {"file:///C:/gone.txt", false}}));
}

TEST(CSystem, passesErrorsOfTheFileSystemOn) {
    const auto local = make<RecordingFileSystem>();
    local->fails = true;
    CSystem system(local);

    EXPECT_THROW(system.deleteFile(uri(L"file:///C:/locked.txt")), CError);
    EXPECT_THROW(system.recycleFile(uri(L"file:///C:/locked.txt")), CError);
}

TEST(CSystem, answersFalseForFileURIsWithoutALocalFileSystem) {
    CSystem system(nullptr);

    EXPECT_FALSE(system.deleteFile(uri(L"file:///C:/mail.xml")));
    EXPECT_FALSE(system.recycleFile(uri(L"file:///C:/mail.xml")));
}

TEST(CSystem, sendsOtherSchemesToTheFileSystemManager) {
    const auto local = make<RecordingFileSystem>();
    CSystem system(local);

    EXPECT_THROW(system.deleteFile(uri(L"http://example.org/mail.xml")), CURITypeNotSupportedError);
    // Only the first removal refuses an empty URI itself; the second asks the manager.
    EXPECT_THROW(system.recycleFile(uri(L"")), CURITypeNotSupportedError);
    EXPECT_THROW(system.recycleFile(nullptr), CURITypeNotSupportedError);
    EXPECT_TRUE(local->calls.empty());
}

TEST(CFileSystemManager, servesOnlyFileURIsWithOneLocalFileSystem) {
    CFileSystemManager manager;

    const P<IFileSystem> local = manager.getFileSystem(uri(L"file:///C:/a.txt"));
    EXPECT_TRUE(query<CLocalFileSystem>(local));
    EXPECT_EQ(manager.getFileSystem(uri(L"File://host/share/b.txt")), local);
    for (const wchar_t* text : {L"http://example.org/a.txt", L"mailto:ann@example.org", L"relative/a.txt", L""})
        EXPECT_THROW(manager.getFileSystem(uri(text)), CURITypeNotSupportedError) << String(text);
    EXPECT_THROW(manager.getFileSystem(nullptr), CURITypeNotSupportedError);
}
