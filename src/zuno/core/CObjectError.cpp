#include <zuno/CObjectError.h>

namespace zuno {

namespace {

const wchar_t* const ObjectErrorName = L"Object error";

} // namespace

String CObjectError::describe(const IBase* object, const std::type_info* type) {
    if (object) return L"object: " + object->getDescription();
    if (type) return L"object class: " + CObject::className(*type);
    return L"unknown object";
}

CObjectError::CObjectError(const IBase* object, const std::type_info* type, const String& message)
    : CError(String(), ObjectErrorName), m_objectDescription(describe(object, type)) {
    setMessage(message.isEmpty() ? m_objectDescription : message.replace(L"%OBJECTDESC%", m_objectDescription));
}

CObjectError::CObjectError(Described, const IBase* object, const std::type_info* type)
    : CError(String(), ObjectErrorName), m_objectDescription(describe(object, type)) {}

CMethodNotImplementedError::CMethodNotImplementedError(const IBase* object, const std::type_info* type,
                                                       const String& method)
    : CObjectError(Described(), object, type), m_method(method) {
    setMessage(L"Method not implemented (" + getObjectDescription() + L"): " +
               orDefault(method, L"unspecified method") + L".");
}

CInvalidArgError::CInvalidArgError(const IBase* object, const std::type_info* type, const String& method,
                                   const String& argument)
    : CObjectError(Described(), object, type), m_method(method), m_argument(argument) {
    setMessage(L"An invalid argument was passed to method '" + orDefault(method, L"unspecified method") +
               L"' of '" + getObjectDescription() + L"': " + orDefault(argument, L"unspecified argument"));
}

CCastError::CCastError(const IBase* object, const std::type_info& target)
    : CObjectError(Described(), object, nullptr) {
    setName(L"Cast error");
    const String source = object ? CObject::className(typeid(*object)) : String(L"null");
    setMessage(L"Error casting a '" + source + L"' object to '" + CObject::className(target) + L"'.");
}

CInvalidObjectStateError::CInvalidObjectStateError(const IBase* object, const std::type_info* type,
                                                   const String& reason)
    : CObjectError(Described(), object, type) {
    setMessage(L"The object is in an invalid state (" + getObjectDescription() + L"): " +
               orDefault(reason, L"unspecified reason") + L".");
}

CEndOfEnumError::CEndOfEnumError(const IBase* object, const std::type_info* type)
    : CInvalidObjectStateError(object, type, L"end of enumeration already reached") {}

void throwCastError(const IBase* object, const std::type_info& target) {
    throw CCastError(object, target);
}

} // namespace zuno
