#pragma once

#include <zuno/CObject.h>
#include <zuno/CSmallObject.h>
#include <zuno/IVariant.h>
#include <zuno/P.h>

#include <cstdint>
#include <vector>

namespace zuno {

// An ordered sequence of variants. Elements are never null: adding a null pointer raises
// CInvalidArgError, as does an index outside the array. Releasing a deeply nested array
// does not recurse.
class CVariantArray final : public CObject, public IVariant, public CSmallObject {
public:
    using Values = std::vector<P<IVariant>, CSmallObject::Allocator<P<IVariant>>>;

    CVariantArray() = default;
    explicit CVariantArray(std::vector<P<IVariant>> values);
    ~CVariantArray() override;

    Kind getKind() const override { return Kind::Array; }
    using IVariant::asArray;
    const CVariantArray& asArray() const override { return *this; }

    int32_t getCount() const { return int32_t(m_values.size()); }
    const Values& getValues() const { return m_values; }
    const P<IVariant>& getAt(int32_t index) const;

    void add(P<IVariant> value);
    void insertAt(int32_t index, P<IVariant> value);
    void setAt(int32_t index, P<IVariant> value);
    void removeAt(int32_t index);
    void clear();
    void reserve(int32_t count);

private:
    void checkValue(const P<IVariant>& value, const char* method) const;
    void checkIndex(int32_t index, int32_t limit, const char* method) const;

    Values m_values;
};

} // namespace zuno
