#pragma once

#include <zuno/CError.h>

#include <typeinfo>

namespace zuno {

// An error about an object. Its description is "object: " + the object's own description,
// else "object class: " + the type's name, else "unknown object"; every "%OBJECTDESC%" in
// the message is replaced by it, and an empty message becomes the description alone.
class CObjectError : public CError {
public:
    CObjectError(const IBase* object, const std::type_info* type, const String& message);
    String getObjectDescription() const { return m_objectDescription; }

    static String describe(const IBase* object, const std::type_info* type);

protected:
    struct Described {};  // constructor tag: the subclass composes the message itself
    CObjectError(Described, const IBase* object, const std::type_info* type);

private:
    String m_objectDescription;
};

class CMethodNotImplementedError : public CObjectError {
public:
    CMethodNotImplementedError(const IBase* object, const std::type_info* type, const String& method);
    String getMethod() const { return m_method; }

private:
    String m_method;
};

class CInvalidArgError : public CObjectError {
public:
    CInvalidArgError(const IBase* object, const std::type_info* type, const String& method, const String& argument);
    String getMethod() const { return m_method; }
    String getArgument() const { return m_argument; }

private:
    String m_method;
    String m_argument;
};

class CCastError : public CObjectError {
public:
    CCastError(const IBase* object, const std::type_info& target);
};

class CInvalidObjectStateError : public CObjectError {
public:
    CInvalidObjectStateError(const IBase* object, const std::type_info* type, const String& reason);
};

class CEndOfEnumError : public CInvalidObjectStateError {
public:
    CEndOfEnumError(const IBase* object, const std::type_info* type);
};

} // namespace zuno
