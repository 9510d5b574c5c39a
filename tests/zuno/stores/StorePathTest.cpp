// Store files at places that cannot be store files.
#include "storeBackends.h"

#include <zuno/CURIError.h>

#include <gtest/gtest.h>

using namespace zuno;

TEST(StorePaths, aFolderOrAMissingFolderRaisesAFileErrorForEveryFileStore) {
    ScratchFolder folder;
    std::filesystem::create_directories(folder / "folder.xml");
    std::filesystem::create_directories(folder / "folder.json");
    for (const char* extension : {".xml", ".json"}) {
        const std::string folderURI = fileURIText(folder / (std::string("folder") + extension));
        const std::string missingURI = fileURIText(folder / "missing" / (std::string("store") + extension));
        for (const ValueStoreAccess access : {ValueStoreAccess::Read, ValueStoreAccess::ReadWrite}) {
            EXPECT_THROW(openStore(folderURI, access), CFileError) << folderURI;
            EXPECT_THROW(openStore(missingURI, access), CFileError) << missingURI;
        }
        try {
            openStore(folderURI);
        } catch (const CFileError& error) {
            EXPECT_NE(error.getMessage().toStdString().find("is a folder"), std::string::npos) << error.what();
            EXPECT_EQ(error.getURI()->toString().toStdString(), folderURI);
        }
    }
}

TEST(StorePaths, aFileThatIsMissingOpensAsAnEmptyStoreAndIsCreatedWhenStored) {
    ScratchFolder folder;
    for (const char* name : {"new.xml", "new.json"}) {
        P<IValueStore> store = openStore(fileURIText(folder / name));
        EXPECT_TRUE(store->getValueNames().empty());
        store->store();
        EXPECT_FALSE(std::filesystem::exists(folder / name)) << "nothing to write yet";
        store->setBoolean(L"flag", true);
        store->store();
        EXPECT_TRUE(openStore(fileURIText(folder / name), ValueStoreAccess::Read)->getBoolean(L"flag", false)) << name;
    }
}
