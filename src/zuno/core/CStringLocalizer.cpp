#include <zuno/CGlobalObjFactory.h>
#include <zuno/CStringLocalizer.h>

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

String fillPlaceholder(const String& text, const String& name, const String& value) {
    if (name.isEmpty()) return text;
    const bool wrapped = name.length() > 2 && name.startsWith(L"%") && name.endsWith(L"%");
    const String placeholder = wrapped ? name : L"%" + name + L"%";
    return text.replace(placeholder, value.isNull() ? String::empty() : value);
}

} // namespace zuno
