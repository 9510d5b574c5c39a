#pragma once

namespace zuno {

class String;

// Root of every framework interface. Interfaces derive from it virtually so that an
// object implementing several of them has exactly one IBase and one reference count.
class IBase {
public:
    virtual ~IBase() = default;
    virtual void addRef() const = 0;
    virtual void release() const = 0;
    // True for objects built on the framework's CObject.
    virtual bool isObject() const = 0;
    // The object's run-time class name followed by " object".
    virtual String getDescription() const = 0;
};

} // namespace zuno
