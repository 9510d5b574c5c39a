#include <zuno/CJsonPrinter.h>
#include <zuno/CObjectError.h>
#include <zuno/CVariantArray.h>
#include <zuno/CVariantBoolean.h>
#include <zuno/CVariantDouble.h>
#include <zuno/CVariantInt32.h>
#include <zuno/CVariantInt64.h>
#include <zuno/CVariantMap.h>
#include <zuno/CVariantNull.h>
#include <zuno/CVariantString.h>
#include <zuno/CVariantUInt64.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

using namespace zuno;

namespace {

// A variant that claims a kind without being of that kind's class.
class CImpostorVariant : public CObject, public IVariant {
public:
    explicit CImpostorVariant(Kind kind) : m_kind(kind) {}
    Kind getKind() const override { return m_kind; }

private:
    Kind m_kind;
};

P<IVariant> integer(int64_t value) { return make<CVariantInt64>(value); }

String key(int i) { return String::fromUTF8("key" + std::to_string(i)); }

// An array nested `depth` levels deep, built without recursion.
P<CVariantArray> deepArray(int depth) {
    P<CVariantArray> root = make<CVariantArray>();
    CVariantArray* inner = root.get();
    for (int i = 1; i < depth; ++i) {
        P<CVariantArray> next = make<CVariantArray>();
        inner->add(next);
        inner = next.get();
    }
    return root;
}

} // namespace

TEST(Variant, EachClassHasItsKindAndValue) {
    EXPECT_TRUE(make<CVariantNull>()->isNull());
    EXPECT_TRUE(make<CVariantBoolean>(true)->getBoolean());
    EXPECT_EQ(make<CVariantInt32>(-5)->getInt64(), -5);
    EXPECT_EQ(make<CVariantInt32>(-5)->getValue(), -5);
    EXPECT_EQ(make<CVariantInt64>(std::numeric_limits<int64_t>::min())->getInt64(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(make<CVariantUInt64>(std::numeric_limits<uint64_t>::max())->getUInt64(), std::numeric_limits<uint64_t>::max());
    EXPECT_EQ(make<CVariantUInt64>(7)->getInt64(), 7);
    EXPECT_DOUBLE_EQ(make<CVariantDouble>(0.25)->getDouble(), 0.25);
    EXPECT_DOUBLE_EQ(make<CVariantInt32>(3)->getDouble(), 3.0);
    EXPECT_EQ(make<CVariantString>(String(L"text"))->getString(), String(L"text"));
    EXPECT_TRUE(make<CVariantArray>()->isArray());
    EXPECT_TRUE(make<CVariantMap>()->isMap());
    EXPECT_TRUE(make<CVariantUInt64>(1)->isNumber());
    EXPECT_FALSE(make<CVariantString>(String(L"1"))->isNumber());
}

TEST(Variant, ValueAccessOfTheWrongKindIsACastError) {
    EXPECT_THROW(make<CVariantString>(String(L"true"))->getBoolean(), CCastError);
    EXPECT_THROW(make<CVariantDouble>(1.0)->getInt64(), CCastError);
    EXPECT_THROW(make<CVariantUInt64>(std::numeric_limits<uint64_t>::max())->getInt64(), CCastError);
    EXPECT_THROW(make<CVariantInt64>(-1)->getUInt64(), CCastError);
    EXPECT_THROW(make<CVariantNull>()->getString(), CCastError);
    EXPECT_THROW(make<CVariantMap>()->asArray(), CCastError);
    EXPECT_THROW(make<CImpostorVariant>(IVariant::Kind::Map)->asMap(), CCastError);
    EXPECT_THROW(make<CImpostorVariant>(IVariant::Kind::Int32)->getInt64(), CCastError);
}

TEST(Variant, ArraysKeepOrderAndRejectBadIndexesAndNulls) {
    P<CVariantArray> array = make<CVariantArray>();
    array->add(integer(1));
    array->add(integer(3));
    array->insertAt(1, integer(2));
    array->insertAt(3, integer(4));
    ASSERT_EQ(array->getCount(), 4);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(array->getAt(i)->getInt64(), i + 1);
    array->setAt(0, integer(0));
    array->removeAt(3);
    EXPECT_EQ(CJsonPrinter().print(*array), String(L"[0,2,3]"));

    EXPECT_THROW(array->getAt(3), CInvalidArgError);
    EXPECT_THROW(array->getAt(-1), CInvalidArgError);
    EXPECT_THROW(array->insertAt(4, integer(0)), CInvalidArgError);
    EXPECT_THROW(array->add(nullptr), CInvalidArgError);
    array->clear();
    EXPECT_EQ(array->getCount(), 0);
}

TEST(Variant, MapsKeepInsertionOrderAndReplaceRepeatedKeysInPlace) {
    P<CVariantMap> map = make<CVariantMap>();
    map->set(String("b"), integer(1));
    map->set(String(L"a"), integer(2));
    map->set(String::fromUTF8("b"), integer(3));  // a key in another encoding is the same key
    ASSERT_EQ(map->getCount(), 2);
    EXPECT_EQ(map->getKeyAt(0), String(L"b"));
    EXPECT_EQ(map->getValueAt(0)->getInt64(), 3);
    EXPECT_EQ(map->indexOf(String("a")), 1);
    EXPECT_EQ(map->get(String("missing")), nullptr);
    EXPECT_FALSE(map->contains(String("B")));
    EXPECT_TRUE(map->remove(String("b")));
    EXPECT_FALSE(map->remove(String("b")));
    EXPECT_EQ(map->getKeyAt(0), String(L"a"));

    EXPECT_THROW(map->set(String(), integer(1)), CInvalidArgError);
    EXPECT_THROW(map->set(String("k"), nullptr), CInvalidArgError);
    EXPECT_THROW(map->getKeyAt(1), CInvalidArgError);
}

TEST(Variant, LargeMapsFindEveryKeyThroughTheirIndex) {
    P<CVariantMap> map = make<CVariantMap>();
    const int count = 1000;
    for (int i = 0; i < count; ++i) map->set(key(i), integer(i));
    for (int i = 0; i < count; i += 2) map->set(key(i), integer(-i));
    ASSERT_EQ(map->getCount(), count);
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(map->indexOf(key(i)), i);
        ASSERT_EQ(map->get(key(i).toUTF8())->getInt64(), i % 2 ? i : -i);
    }
    for (int i = 0; i < count; i += 3) ASSERT_TRUE(map->remove(key(i)));
    for (int i = 0; i < count; ++i) ASSERT_EQ(map->contains(key(i)), i % 3 != 0) << i;
    EXPECT_FALSE(map->contains(String("key")));
}

TEST(Variant, CopiesAreDeepForContainersAndShareScalars) {
    P<CVariantMap> original = make<CVariantMap>();
    P<CVariantArray> list = make<CVariantArray>();
    P<IVariant> text = make<CVariantString>(String(L"shared"));
    list->add(text);
    original->set(String("list"), list);

    P<IVariant> copy = original->copy();
    ASSERT_NE(copy, original);
    const CVariantArray& copiedList = copy->asMap().get(String("list"))->asArray();
    EXPECT_NE(&copiedList, list.get());
    EXPECT_EQ(copiedList.getAt(0), text);
    list->add(integer(1));
    EXPECT_EQ(copiedList.getCount(), 1);
    EXPECT_EQ(text->copy(), text);
}

TEST(Variant, DeepTreesAreCopiedPrintedAndReleasedWithoutRecursion) {
    // Far deeper than any stack would take recursively.
    const int depth = 200000;
    P<CVariantArray> deep = deepArray(depth);
    P<IVariant> copy = deep->copy();
    const String text = CJsonPrinter().print(*copy);
    ASSERT_EQ(text.length(), 2 * depth);
    EXPECT_EQ(text.charAt(depth - 1), U'[');
    EXPECT_EQ(text.charAt(depth), U']');
    deep.reset();
    copy.reset();

    // A deep map chain, released through a replaced value.
    P<CVariantMap> root = make<CVariantMap>();
    CVariantMap* inner = root.get();
    for (int i = 0; i < depth; ++i) {
        P<CVariantMap> next = make<CVariantMap>();
        inner->set(String("k"), next);
        inner = next.get();
    }
    root->set(String("k"), integer(0));
    EXPECT_EQ(CJsonPrinter().print(*root), String(L"{\"k\":0}"));
}
