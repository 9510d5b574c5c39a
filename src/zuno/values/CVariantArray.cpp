#include <zuno/CObjectError.h>
#include <zuno/CVariantArray.h>

#include "values/CVariantReleaser.h"

#include <iterator>
#include <string>

namespace zuno {

CVariantArray::CVariantArray(std::vector<P<IVariant>> values)
    : m_values(std::make_move_iterator(values.begin()), std::make_move_iterator(values.end())) {
    for (const P<IVariant>& value : m_values) checkValue(value, "CVariantArray::CVariantArray");
}

CVariantArray::~CVariantArray() {
    CVariantReleaser releaser;
    for (P<IVariant>& value : m_values) releaser.release(value);
}

const P<IVariant>& CVariantArray::getAt(int32_t index) const {
    checkIndex(index, getCount() - 1, "CVariantArray::getAt");
    return m_values[size_t(index)];
}

void CVariantArray::add(P<IVariant> value) {
    checkValue(value, "CVariantArray::add");
    m_values.push_back(std::move(value));
}

void CVariantArray::insertAt(int32_t index, P<IVariant> value) {
    checkIndex(index, getCount(), "CVariantArray::insertAt");
    checkValue(value, "CVariantArray::insertAt");
    m_values.insert(m_values.begin() + index, std::move(value));
}

void CVariantArray::setAt(int32_t index, P<IVariant> value) {
    checkIndex(index, getCount() - 1, "CVariantArray::setAt");
    checkValue(value, "CVariantArray::setAt");
    P<IVariant> old = std::exchange(m_values[size_t(index)], std::move(value));
    CVariantReleaser().release(old);
}

void CVariantArray::removeAt(int32_t index) {
    checkIndex(index, getCount() - 1, "CVariantArray::removeAt");
    P<IVariant> old = std::move(m_values[size_t(index)]);
    m_values.erase(m_values.begin() + index);
    CVariantReleaser().release(old);
}

void CVariantArray::clear() {
    Values old;
    old.swap(m_values);
    CVariantReleaser releaser;
    for (P<IVariant>& value : old) releaser.release(value);
}

void CVariantArray::reserve(int32_t count) {
    if (count > 0) m_values.reserve(size_t(count));
}

void CVariantArray::checkValue(const P<IVariant>& value, const char* method) const {
    if (!value) throw CInvalidArgError(this, nullptr, String(method), String(L"null value"));
}

void CVariantArray::checkIndex(int32_t index, int32_t limit, const char* method) const {
    if (index < 0 || index > limit) {
        throw CInvalidArgError(this, nullptr, String(method),
                               String::fromUTF8ToWide("index " + std::to_string(index) + " out of range"));
    }
}

} // namespace zuno
