#include <zuno/CException.h>

namespace zuno {

CException::CException(const String& message, const String& name)
    : m_name(orDefault(name, L"Error")), m_message(orDefault(message, L"Unspecified error")) {}

CException::CException(const CException& other) = default;

CException::~CException() = default;

const char* CException::what() const noexcept {
    try {
        // Shares the message when it already is code-page text; otherwise the converted
        // copy is kept here so that the pointer outlives the call.
        if (m_whatText.isNull()) m_whatText = m_message.toCP();
        return m_whatText.c_str();
    } catch (...) {
        return "Unspecified error";
    }
}

String CException::orDefault(const String& text, const wchar_t* fallback) {
    return text.isEmpty() ? String(fallback) : text;
}

P<CException> CException::clone() const {
    return make<CException>(m_message, m_name);
}

void CException::setMessage(const String& message) {
    m_message = orDefault(message, L"Unspecified error");
    m_whatText = String();
}

void CException::setName(const String& name) {
    m_name = orDefault(name, L"Error");
}

COutOfmemoryException::COutOfmemoryException() : CException(L"Out of memory.", L"OutOfMemoryError") {}

} // namespace zuno
