#pragma once

#include <zuno/CObject.h>
#include <zuno/IStringLocalizer.h>

#include <mutex>
#include <unordered_map>

namespace zuno {

class CStringLocalizer : public CObject, public IStringLocalizer {
public:
    void clear() override;
    void setFallback(const P<IStringLocalizer>& fallback) override;
    void setText(const String& key, const String& text) override;
    // Holds the lock while asking the fallback. A chain of fallbacks that leads back to a
    // localizer already asking on this thread ends there with the default text.
    String localize(const String& key, const String& defaultText) override;

private:
    std::mutex m_lock;
    std::unordered_map<String, String> m_texts;
    P<IStringLocalizer> m_fallback;
};

} // namespace zuno
