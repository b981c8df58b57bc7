#include "xml/WholePrimitive.h"

#include "metadata/Root.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::create;
using lumivard::platform::data::tWholePrimitive;
namespace Metadata = lumivard::platform::data::Metadata;

class WholePrimitive : public XmlTest {
protected:
    /// The record of a primitive that is made, changed field by field and put under its parent.
    std::string grown(metadata::tValue kind, const wchar_t* name, units::tUnit unit, const wchar_t* locale,
                      const std::string& value) {
        Design::Table parent(store(), L"t");
        Design::Primitive primitive(store(), kind, name);
        if (locale) primitive.valuelocale(locale);
        primitive.units(unit);
        if (!value.empty()) {
            const auto count = static_cast<unsigned int>(value.size()) / Design::Primitive::stride(kind);
            primitive.set(value.data(), 0, count);
        }
        parent.add(primitive.offset());
        _parent = parent.offset();
        return stored::bytes(store(), primitive.offset());
    }

    std::string whole(metadata::tValue kind, const std::wstring& name, units::tUnit unit, const std::wstring* locale,
                      const std::string& value) {
        return stored::bytes(store(), create(store(), {kind, unit, _parent, name, locale, value}, _scratch));
    }

    /// Without the count of the object that stands over it.
    static std::string closed(std::string record) { return record.replace(stored::kRefs, 4, std::string(4, '\0')); }

    unsigned int _parent = 0;
    std::vector<char> _scratch;
};
LVP_ON_EACH_STORE(WholePrimitive);

TEST_P(WholePrimitive, HasTheBytesOfOneThatHasGrown) {
    const std::wstring locale = L"de-de";
    const std::wstring none;
    const std::string real("\0\1\2\3\4\5\6\7", 8);
    std::string record = grown(metadata::kDouble, L"a", units::kMeter, nullptr, real);
    EXPECT_EQ(whole(metadata::kDouble, L"a", units::kMeter, nullptr, real), closed(record));
    record = grown(metadata::kString, L"\xe4\x1f600", units::kNoUnit, locale.c_str(), real);
    EXPECT_EQ(whole(metadata::kString, L"\xe4\x1f600", units::kNoUnit, &locale, real), closed(record));
    record = grown(metadata::kInt8, L"", units::kVolt, L"", "");
    EXPECT_EQ(whole(metadata::kInt8, L"", units::kVolt, &none, ""), closed(record));
}

TEST_P(WholePrimitive, LeavesNothingOfTheOneBefore) {
    const std::wstring locale = L"a long locale";
    const std::string fresh = whole(metadata::kInt8, L"x", units::kNoUnit, nullptr, "");
    whole(metadata::kBinary, L"a long name", units::kMeter, &locale, std::string(1000, '\xff'));
    EXPECT_EQ(whole(metadata::kInt8, L"x", units::kNoUnit, nullptr, ""), fresh);
}

TEST_P(WholePrimitive, IsRefusedWhereItDoesNotFitInARecord) {
    const unsigned long long before = store()->extent();
    const char byte = 0;
    const std::string_view longest(&byte, 0xFFFFFFFFu);  // of which nothing is read
    const std::wstring name = L"a";
    EXPECT_EQ(create(store(), {metadata::kBinary, units::kNoUnit, 0, name, nullptr, longest}, _scratch), kNoItem);
    EXPECT_EQ(store()->extent(), before);
}

}  // namespace
