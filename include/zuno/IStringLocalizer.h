#pragma once

#include <zuno/IBase.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <vector>

namespace zuno {

// Translations of user-visible messages, keyed by dotted names such as
// "zuno.CFileNotFoundError.Desc". Nothing is stored by default, so the default texts show.
class IStringLocalizer : public virtual IBase {
public:
    virtual void clear() = 0;
    // A second localizer asked for keys this one has no (or an empty) text for; null removes it.
    virtual void setFallback(const P<IStringLocalizer>& fallback) = 0;
    virtual void setText(const String& key, const String& text) = 0;
    virtual String localize(const String& key, const String& defaultText) = 0;
};

// The process-wide localizer service.
P<IStringLocalizer> getStringLocalizer();

// The localized text of `key`, or `defaultText`.
String localizeText(const String& key, const String& defaultText);

// Every message key the framework knows, and the default English text of one (null for
// an unknown key).
std::vector<String> getMessageKeys();
String getDefaultMessageText(const String& key);
// The localized text of a known key, its default text when there is no translation.
String localizeText(const String& key);

// `text` with each "%NAME%" placeholder replaced by `value` (a null value counts as empty).
// `name` is given without the percent signs ("FILE"); "%FILE%" is accepted as well.
String fillPlaceholder(const String& text, const String& name, const String& value);

} // namespace zuno
