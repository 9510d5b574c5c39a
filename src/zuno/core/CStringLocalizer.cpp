#include <zuno/CGlobalObjFactory.h>
#include <zuno/CStringLocalizer.h>

#include <utility>
#include <vector>

namespace zuno {

namespace {

// The localizers whose localize() is running on this thread, innermost first. A fallback
// chain that leads back to a localizer already asking ends there with the default text
// instead of deadlocking on its lock.
class AskingGuard {
public:
    explicit AskingGuard(const IStringLocalizer* localizer) : m_localizer(localizer), m_outer(t_innermost) {
        m_reentered = isAsking(localizer);
        t_innermost = this;
    }
    ~AskingGuard() { t_innermost = m_outer; }
    AskingGuard(const AskingGuard&) = delete;
    AskingGuard& operator=(const AskingGuard&) = delete;

    bool reentered() const { return m_reentered; }

private:
    static bool isAsking(const IStringLocalizer* localizer) {
        for (const AskingGuard* guard = t_innermost; guard; guard = guard->m_outer) {
            if (guard->m_localizer == localizer) return true;
        }
        return false;
    }

    static thread_local const AskingGuard* t_innermost;

    const IStringLocalizer* m_localizer;
    const AskingGuard* m_outer;
    bool m_reentered = false;
};

thread_local const AskingGuard* AskingGuard::t_innermost = nullptr;

// Every message key of the framework with its default English text.
const std::pair<const wchar_t*, const wchar_t*> MessageKeys[] = {
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
    // The framework's own further keys.
    {L"zuno.CPathes.InvalidPath", L"The path '%PATH%' is not valid (%MSG%)."},
    {L"zuno.CValueStore.ReadFileFailed", L"Error reading the file '%FILE%' (%MSG%)."},
    {L"zuno.CValueStore.WriteFileFailed", L"Error writing the file '%FILE%' (%MSG%)."},
    {L"zuno.CValueStore.PathIsFolder", L"The path '%FILE%' is a folder, not a file."},
    {L"zuno.CJsonValueStore.RootNotObject", L"The JSON file '%FILE%' does not hold an object."},
};

P<IStringLocalizer> createLocalizer() {
    return make<CStringLocalizer>();
}

// Pinned: exceptions, and so their messages, may be raised while the process exits.
IStringLocalizer& localizer() {
    static const CGlobalObjFactory::ServiceKey key;
    static IStringLocalizer* const instance = CGlobalObjFactory::pinned<IStringLocalizer>(key, &createLocalizer);
    return *instance;
}

} // namespace

void CStringLocalizer::clear() {
    std::lock_guard lock(m_lock);
    m_texts.clear();
}

void CStringLocalizer::setFallback(const P<IStringLocalizer>& fallback) {
    P<IStringLocalizer> old = fallback;
    std::lock_guard lock(m_lock);
    m_fallback.swap(old);
    // The old fallback is released after the lock, when `old` goes out of scope.
}

void CStringLocalizer::setText(const String& key, const String& text) {
    std::lock_guard lock(m_lock);
    m_texts.insert_or_assign(key, text);
}

String CStringLocalizer::localize(const String& key, const String& defaultText) {
    AskingGuard guard(this);
    if (guard.reentered()) return defaultText;
    std::lock_guard lock(m_lock);
    auto found = m_texts.find(key);
    if (found != m_texts.end() && !found->second.isEmpty()) return found->second;
    if (m_fallback) return m_fallback->localize(key, defaultText);
    return defaultText;
}

P<IStringLocalizer> getStringLocalizer() {
    return P<IStringLocalizer>::share(&localizer());
}

String localizeText(const String& key, const String& defaultText) {
    return localizer().localize(key, defaultText);
}

std::vector<String> getMessageKeys() {
    std::vector<String> keys;
    for (const auto& [key, text] : MessageKeys) keys.emplace_back(key);
    return keys;
}

String getDefaultMessageText(const String& key) {
    for (const auto& [known, text] : MessageKeys) {
        if (key == String(known)) return text;
    }
    return String();
}

String localizeText(const String& key) {
    return localizeText(key, getDefaultMessageText(key));
}

String fillPlaceholder(const String& text, const String& name, const String& value) {
    if (name.isEmpty()) return text;
    const bool wrapped = name.length() > 2 && name.startsWith(L"%") && name.endsWith(L"%");
    const String placeholder = wrapped ? name : L"%" + name + L"%";
    return text.replace(placeholder, value.isNull() ? String::empty() : value);
}

} // namespace zuno
