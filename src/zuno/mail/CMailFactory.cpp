#include <zuno/CGlobalObjFactory.h>
#include <zuno/CMail.h>
#include <zuno/CMailFactory.h>

namespace zuno {

P<IMail> CMailFactory::createMail() {
    return make<CMail>();
}

P<IMailFactory> getMailFactory() {
    static const CGlobalObjFactory::ServiceKey key;
    return CGlobalObjFactory::service<IMailFactory>(key, [] { return P<IMailFactory>(make<CMailFactory>()); });
}

} // namespace zuno
