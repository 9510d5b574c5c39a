#pragma once

namespace zuno {

class IBase;

// Told when an object it watches is destroyed. Listeners are not owned by the objects
// they watch, so this callback interface is deliberately not reference counted.
class IObjectDestructListener {
public:
    virtual void objectDestroyed(const IBase* object) = 0;

protected:
    ~IObjectDestructListener() = default;
};

} // namespace zuno
