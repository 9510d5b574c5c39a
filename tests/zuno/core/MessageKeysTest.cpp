#include <zuno/IStringLocalizer.h>

#include <gtest/gtest.h>

#include <set>

using namespace zuno;

// The message keys users see, each with its default English text, as translators get them.
TEST(MessageKeys, everyKeyHasItsDefaultTextAndATranslationReplacesIt) {
    const std::pair<const wchar_t*, const wchar_t*> expected[] = {
        {L"zuno.CFileNotFoundError.Desc", L"The file '%FILE%' was not found."},
        {L"zuno.CFileNotFoundError.GeneralDesc", L"The file could not be found."},
        {L"zuno.CFileAccessDeniedError.Desc", L"Access to the file '%FILE%' was denied."},
        {L"zuno.CFileSystemManager.CopyFile.Error.FileExists", L"Error copying file '%SRC%' to '%DEST%'. The file already exists."},
        {L"zuno.CFileSystemManager.MoveFolderFailed", L"Error moving folder '%SRC%' to '%DEST%'."},
        {L"zuno.CFileSystemManager.MoveFolderFailed.FolderExists", L"Error moving folder '%SRC%' to '%DEST%'. The folder already exists."},
        {L"zuno.CFileSystemManager.MoveFolderFailed.CreateFolder", L"Error moving folder '%SRC%' to '%DEST%'. Could not create the folder."},
        {L"zuno.CFileSystem.CopyFileFailed", L"Error copying file '%SRC%' to '%DEST%' (%MSG%)."},
        {L"zuno.CFileSystem.DeleteFileFailed", L"Error deleting the file '%FILE%' (%MSG%)."},
        {L"zuno.CFileSystem.shellDeleteUndoable", L"Error deleting file '%FILE%' (%MSG%)."},
        {L"zuno.CFileSystem.DeleteFolderFailed", L"Error deleting folder '%FOLDER%' (%MSG%)."},
        {L"zuno.CFileSystem.CreateFolderFailed", L"Error creating folder '%DIR%' (%MSG%)."},
        {L"zuno.CFileSystem.CreateFolderFailed.FolderExists", L"Error creating folder '%DIR%' (%MSG%)."},
        {L"zuno.CFileSystem.CreateFolderFailed.FolderIsFile", L"Error creating folder '%DIR%' - the URI specified is not a folder."},
        {L"zuno.CSystem.MoveFileFailed", L"Error moving file '%SRC%' to '%DEST%'."},
        {L"zuno.CSystem.MoveFolderFailed", L"Error moving folder '%SRC%' to '%DEST%'."},
        {L"zuno.CVolumeManager.GetStoragePropertiesFailed", L"Error while retrieving storage properties for drive '%DRIVE%' (%MSG%)."},
        {L"zuno.CFileTypesManager.ImageFiles", L"Image Files"},
        {L"zuno.CFileTypesManager.AudioFiles", L"Audio Files"},
        {L"zuno.CFileTypesManager.VideoFiles", L"Video Files"},
        {L"zuno.CFileTypesManager.TextFiles", L"Text Files"},
        {L"zuno.CFileTypesManager.CompressedFiles", L"Compressed Files"},
        {L"zuno.CFileTypesManager.SystemFiles", L"System Files"},
    };
    std::set<String> keys;
    for (const String& key : getMessageKeys()) {
        EXPECT_TRUE(keys.insert(key).second) << "twice: " << key;
        EXPECT_TRUE(key.startsWith(L"zuno.")) << key;
        EXPECT_FALSE(getDefaultMessageText(key).isEmpty()) << key;
    }
    for (const auto& [key, text] : expected) {
        EXPECT_TRUE(keys.count(key)) << String(key);
        EXPECT_EQ(getDefaultMessageText(key), String(text)) << String(key);
        EXPECT_EQ(localizeText(key), String(text)) << String(key);
    }
    EXPECT_TRUE(getDefaultMessageText(L"zuno.NoSuch.Key").isNull());

    getStringLocalizer()->setText(L"zuno.CFileTypesManager.TextFiles", L"Textdateien");
    EXPECT_EQ(localizeText(L"zuno.CFileTypesManager.TextFiles"), String(L"Textdateien"));
    getStringLocalizer()->clear();
}
