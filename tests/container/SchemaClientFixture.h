#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support {

using data::metadata::ISchemaLocator;

// Flags of what came from a schema: untouched, and shown since.
inline constexpr unsigned char kHiddenItem = 0x06;
inline constexpr unsigned char kShownItem = 0x02;

/// A schema that the library did not make.
class ForeignSchema final : public ISchema {
public:
    WideString path() const override { return L"kits.part"; }
    data::metadata::IStructLayout* layout() override { return nullptr; }
};

/// A client with schemas. They are tables in the top-level container "kits" of the other store:
///
///     kits.part   size: a double in metres, 2.5; name: a string without elements;
///                 rest: a table with item: an int32, and deep: a table with leaf: an int16
///     kits.extra  more: an int32; size: an int8
///     kits.empty  nothing
class SchemaClientTest : public ClientTest {
protected:
    SchemaClientTest() {
        const auto part = addSchema(L"part");
        const double size = 2.5;
        part->create(L"size", metadata::kDouble, units::kMeter)->set(&size, 0, 1);
        part->create(L"name", metadata::kString, units::kNoUnit);
        const auto rest = part->create(L"rest", kNoSchema);
        rest->create(L"item", metadata::kInt32, units::kNoUnit);
        rest->create(L"deep", kNoSchema)->create(L"leaf", metadata::kInt16, units::kNoUnit);
        const auto extra = addSchema(L"extra");
        extra->create(L"more", metadata::kInt32, units::kNoUnit);
        extra->create(L"size", metadata::kInt8, units::kNoUnit);
        addSchema(L"empty");
    }

    /// The container that the schemas stand in.
    SharedPtr<IContainer> kits() { return IContainerFrontEnd::toplevel(other(), L"kits"); }
    SharedPtr<ITable> addSchema(const wchar_t* name) { return kits()->create(name, kNoSchema); }

    /// The schema of a URI, or of several; alive as long as the test.
    ISchema* schema(const wchar_t* uri) {
        _schemas.push_back(_locator->resolve(uri));
        return _schemas.back().get();
    }

    /// One kind of child of "top" that can be made with a schema. Its name is the last name of its path.
    struct tMaker {
        const char* kind;
        std::wstring path;
        std::function<bool(ISchema*)> make;  ///< whether there was a result
        std::function<std::wstring()> base;
        unsigned int baseLength;  ///< where a record has the length of its list of schemas
    };

    /// All kinds: containers of each type, a table in a container, and a table in a table.
    std::vector<tMaker> makers() {
        std::vector<tMaker> makers;
        for (const auto type : {IContainer::kNode, IContainer::kGroup, IContainer::kLink}) {
            makers.push_back({"a container", L"made" + std::to_wstring(type), nullptr, nullptr, 23});
            const std::wstring path = makers.back().path;
            makers.back().make = [=, this](ISchema* schema) -> bool {
                return static_cast<bool>(top()->create(type, path.c_str(), schema));
            };
            makers.back().base = [=, this] { return text(top()->container(path.c_str())->base()); };
        }
        const auto base = [this](const wchar_t* path) { return text(asTable(property(path)).base()); };
        const auto inContainer = [this](ISchema* schema) -> bool {
            return static_cast<bool>(top()->create(L"table", schema));
        };
        makers.push_back({"a table", L"table", inContainer, [=] { return base(L"table"); }, 30});
        const auto inTable = [this](ISchema* schema) -> bool {
            if (!top()->has(L"holder")) top()->create(L"holder", kNoSchema);
            return static_cast<bool>(asTable(property(L"holder")).create(L"inner", schema));
        };
        makers.push_back({"a table in a table", L"holder.inner", inTable, [=] { return base(L"holder.inner"); }, 30});
        return makers;
    }

    /// The property at a path below a child that was made.
    SharedPtr<IProperty> below(const tMaker& maker, const wchar_t* path) {
        return property((maker.path + L"." + path).c_str());
    }

    /// The names of the properties of a child that was made, in their stored order.
    tNames items(const tMaker& maker) {
        if (const auto container = top()->container(maker.path.c_str())) return names(*container->properties());
        return names(*asTable(property(maker.path.c_str())).properties());
    }

private:
    SharedPtr<ISchemaLocator> _locator = ISchemaLocator::make(other());
    std::vector<SharedPtr<ISchema>> _schemas;
};

}  // namespace lumivard::platform::test_support
