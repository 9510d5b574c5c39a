#pragma once

#include <zuno/CObject.h>
#include <zuno/P.h>
#include <zuno/String.h>

#include <exception>

namespace zuno {

// Root of the framework's exception tree: a reference-counted framework object and a
// standard exception at once. Thrown by value; clone() keeps the text beyond a handler.
class CException : public std::exception, public CObject {
public:
    // An empty name becomes "Error", an empty message "Unspecified error".
    explicit CException(const String& message = String(), const String& name = String());
    CException(const CException& other);
    CException& operator=(const CException&) = delete;
    ~CException() override;

    // The message as 8-bit text in the code page; the text stays valid as long as the
    // exception does.
    const char* what() const noexcept override;
    String getErrorName() const { return m_name; }
    String getMessage() const { return m_message; }
    // A heap copy that carries only the name and the message: always a plain CException.
    P<CException> clone() const;

protected:
    // Both apply the same fallbacks as the constructor.
    void setMessage(const String& message);
    void setName(const String& name);
    // `text`, or `fallback` when `text` is empty or null.
    static String orDefault(const String& text, const wchar_t* fallback);

private:
    String m_name;
    String m_message;
    mutable String m_whatText;
};

class COutOfmemoryException : public CException {
public:
    COutOfmemoryException();
};

} // namespace zuno
