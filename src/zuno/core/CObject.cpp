#include <zuno/CObject.h>
#include <zuno/String.h>

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

namespace zuno {

String CObject::getDescription() const {
    return className(typeid(*this)) + L" object";
}

String CObject::className(const std::type_info& type) {
    int status = 0;
    std::unique_ptr<char, decltype(&std::free)> name(abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                    &std::free);
    return String(status == 0 && name ? name.get() : type.name(), -1);
}

} // namespace zuno
