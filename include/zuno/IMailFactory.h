#pragma once

#include <zuno/IBase.h>
#include <zuno/IMail.h>
#include <zuno/P.h>

namespace zuno {

class IMailFactory : public virtual IBase {
public:
    // A new, empty, independent mail.
    virtual P<IMail> createMail() = 0;
};

// The process-wide mail factory service.
P<IMailFactory> getMailFactory();

} // namespace zuno
