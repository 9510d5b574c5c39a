#include "stores/storeFile.h"

#include <zuno/CURIError.h>
#include <zuno/IStringLocalizer.h>
#include <zuno/systemError.h>

#include <mutex>

namespace zuno::storeFile {

namespace {

std::mutex g_hookLock;
std::function<bool(WriteStep)> g_hook;

[[noreturn]] void throwFileError(const P<IURI>& uri, const String& operation, const String& key,
                                 const String& defaultText, uint32_t code) {
    String text = fillPlaceholder(localizeText(key, defaultText), L"FILE", uri->toString());
    text = fillPlaceholder(text, L"MSG", getSystemErrorText(code));
    throw CFileError(operation + L": " + text, uri);
}

} // namespace

void setStepHook(std::function<bool(WriteStep)> hook) {
    std::lock_guard lock(g_hookLock);
    g_hook = std::move(hook);
}

bool stepFails(WriteStep step) {
    std::lock_guard lock(g_hookLock);
    return g_hook && g_hook(step);
}

void throwReadError(const P<IURI>& uri, const String& operation, uint32_t code) {
    throwFileError(uri, operation, L"zuno.CValueStore.ReadFileFailed", L"Error reading the file '%FILE%' (%MSG%).",
                   code);
}

void throwWriteError(const P<IURI>& uri, const String& operation, uint32_t code) {
    throwFileError(uri, operation, L"zuno.CValueStore.WriteFileFailed", L"Error writing the file '%FILE%' (%MSG%).",
                   code);
}

void throwIsFolder(const P<IURI>& uri, const String& operation) {
    const String text = fillPlaceholder(
        localizeText(L"zuno.CValueStore.PathIsFolder", L"The path '%FILE%' is a folder, not a file."), L"FILE",
        uri->toString());
    throw CFileError(operation + L": " + text, uri);
}

} // namespace zuno::storeFile
