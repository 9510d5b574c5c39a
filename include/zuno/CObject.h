#pragma once

#include <zuno/CReferencable.h>

#include <typeinfo>

namespace zuno {

// Common base of the framework's concrete classes.
class CObject : public CReferencable {
public:
    bool isObject() const override { return true; }
    String getDescription() const override;

    // Readable class name of a type, with its namespace ("zuno::CMail").
    static String className(const std::type_info& type);
};

} // namespace zuno
