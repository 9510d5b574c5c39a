#pragma once

#include <zuno/CObject.h>
#include <zuno/IMailFactory.h>

namespace zuno {

class CMailFactory : public CObject, public IMailFactory {
public:
    P<IMail> createMail() override;
};

} // namespace zuno
