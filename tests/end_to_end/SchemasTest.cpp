#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>

#include "tests/end_to_end/Documents.h"
#include "tests/support/TemporaryFolder.h"

// Schemas on real input: engineering materials that name the schemas of their properties.

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using structure::IContainer;
using structure::IContainerFrontEnd;
using test_support::read;
using test_support::written;

const std::string kMaterials = LVP_SOURCE_DIR "/examples/data/materials.xml";
const std::string kSchemas = LVP_SOURCE_DIR "/examples/data/schemas.xml";

constexpr unsigned char kInherited = 0x02;
constexpr unsigned char kHidden = 0x04;

using tNames = std::vector<std::string>;

const std::map<std::string, tNames> kItems{
    {"Mechanical",
     {"Density", "YoungsModulus", "PoissonRatio", "ShearModulus", "UltimateTensileStrength", "YieldStrength",
      "UltimateStrain", "CompressiveStrength"}},
    {"Thermal", {"ThermalConductivity", "SpecificHeat", "ThermalExpansionCoefficient"}}};

/// A material as its document has it.
struct tMaterial {
    std::string path;
    tNames schemas;
    tNames values;
};

/// Gathers the materials of a document.
class MaterialList : public core::xml::XMLCallback {
public:
    explicit MaterialList(const std::string& document) {
        core::io::MemoryReader reader(document);
        reader.open();
        core::xml::XMLParser(this, nullptr).parseDocument(&reader);
    }

    void notifyStartElement(const char* element, const char** attributes) override {
        std::map<std::string, std::string> given;
        for (; *attributes; attributes += 2) given[attributes[0]] = attributes[1];
        const std::string kind = element;
        if (kind == "group") _group = given["name"];
        if (kind == "node") {
            const std::string uris = given["class"];
            const std::size_t separator = uris.find(';');
            tNames schemas{uris.substr(0, separator)};
            if (separator != std::string::npos) schemas.push_back(uris.substr(separator + 1));
            all.push_back({_group + "." + given["name"], schemas, {}});
        }
        if (kind == "double" || kind == "string") all.back().values.push_back(given["name"]);
    }
    void notifyEndElement(const char*) override {}
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char*, int) override {}

    std::vector<tMaterial> all;

private:
    std::string _group;
};

tNames namesOf(IContainer& container) {
    tNames names;
    const auto properties = container.properties();
    for (bool more = true; more; more = properties->next()) {
        const auto property = properties->current();
        if (property) names.push_back(property->tag().string());
    }
    return names;
}

/// The items that the schemas give, in their order.
tNames itemsOf(const tNames& schemas) {
    tNames items;
    for (const std::string& schema : schemas) {
        items.insert(items.end(), kItems.at(schema).begin(), kItems.at(schema).end());
    }
    return items;
}

std::string joined(const tNames& names) {
    std::string all;
    for (const std::string& name : names) all += (all.empty() ? "" : ";") + name;
    return all;
}

WideString wide(const std::string& text) {
    return core::string::StringAlgorithm::UTF8Decode(text.c_str()).c_str();
}

/// The schemas in one store file, the materials in another that was read with a locator over the first.
class MaterialSchemas : public testing::Test {
    TemporaryFolder _folder;

protected:
    MaterialSchemas() {
        {
            const auto made = stores::file(_folder / "schemas.lvp", stores::tMode::kWrite);
            read(made.get(), bytesOf(kSchemas));
        }
        schemas = stores::file(_folder / "schemas.lvp", stores::tMode::kRead);
        locator = metadata::ISchemaLocator::make(schemas.get());
        {
            const auto made = stores::file(_folder / "materials.lvp", stores::tMode::kWrite);
            read(made.get(), bytesOf(kMaterials), locator.get());
        }
        store = stores::file(_folder / "materials.lvp", stores::tMode::kWrite);
    }

    SharedPtr<IContainer> find(const std::string& path) { return IContainerFrontEnd::find(store.get(), wide(path)); }

    /// A group of no class with doubles of these names, and one kind of its own for "*".
    SharedPtr<IContainer> groupOf(const tNames& names) {
        const auto group = IContainerFrontEnd::toplevel(store.get(), L"group");
        for (const std::string& name : names) {
            const bool text = name[0] == '*';
            group->create(wide(text ? name.substr(1) : name), text ? metadata::kString : metadata::kDouble);
        }
        return group;
    }

    std::unique_ptr<IDataStore> schemas;
    SharedPtr<metadata::ISchemaLocator> locator;
    std::unique_ptr<IDataStore> store;
};

TEST_F(MaterialSchemas, GiveEachMaterialTheirItemsAndHideWhatTheDocumentDoesNotName) {
    const MaterialList document(bytesOf(kMaterials));
    ASSERT_EQ(document.all.size(), 119u);
    for (const tMaterial& material : document.all) {
        SCOPED_TRACE(material.path);
        const auto container = find(material.path);
        ASSERT_TRUE(container);
        EXPECT_EQ(container->base().string(), joined(material.schemas));
        tNames expected = itemsOf(material.schemas);
        const std::set<std::string> inherited(expected.begin(), expected.end());
        const std::set<std::string> shown(material.values.begin(), material.values.end());
        for (const std::string& value : material.values) {
            if (!inherited.contains(value)) expected.push_back(value);
        }
        EXPECT_EQ(namesOf(*container), expected) << "the schemas' items, and behind them the document's own";
        for (const std::string& name : expected) {
            const auto property = container->property(wide(name));
            const int flags = (inherited.contains(name) ? kInherited : 0) | (shown.contains(name) ? 0 : kHidden);
            EXPECT_EQ(property->flags(), flags) << name;
        }
    }
}

TEST_F(MaterialSchemas, AreFilledByTheDocument) {
    const auto density = find("Carbon.Graphite")->property(L"Density");
    auto* value = metadata::IPrimitive::to(density.get());
    double number = 0;
    ASSERT_EQ(value->dimension(), 1u) << "the document's value lies over the schema's";
    ASSERT_TRUE(value->get(&number, 0, 1));
    EXPECT_EQ(number, 1750);
    const auto yield = find("Carbon.Graphite")->property(L"YieldStrength");
    ASSERT_TRUE(metadata::IPrimitive::to(yield.get())->get(&number, 0, 1));
    EXPECT_EQ(number, 0) << "the schema's own";
    EXPECT_EQ(metadata::IPrimitive::to(yield.get())->units(), units::kMegaPascal);
}

TEST_F(MaterialSchemas, AreMetByAllMaterialsThatNameThem) {
    unsigned int checked = 0;
    for (const tMaterial& material : MaterialList(bytesOf(kMaterials)).all) {
        SCOPED_TRACE(material.path);
        const auto schema = locator->resolve(wide(joined(material.schemas)));
        ASSERT_TRUE(schema);
        EXPECT_TRUE(find(material.path)->validates(schema.get(), true));
        EXPECT_TRUE(find(material.path)->validates(schema.get(), false));
        ++checked;
    }
    EXPECT_EQ(checked, 119u);
}

TEST_F(MaterialSchemas, AreMetInFullByWhatHasAllItemsInOrderWithStrangersBetween) {
    const auto group =
        groupOf({"ThermalConductivity", "Stranger", "*Note", "SpecificHeat", "ThermalExpansionCoefficient", "Last"});
    const auto thermal = locator->resolve(L"Thermal");
    EXPECT_FALSE(group->validates(thermal.get(), true));
    EXPECT_TRUE(group->validates(thermal.get(), false));
}

TEST_F(MaterialSchemas, AreNotMetWithAnItemMissing) {
    EXPECT_FALSE(
        groupOf({"ThermalConductivity", "SpecificHeat"})->validates(locator->resolve(L"Thermal").get(), false));
}

TEST_F(MaterialSchemas, AreNotMetWithAnItemOfAnotherKind) {
    const auto group = groupOf({"ThermalConductivity", "*SpecificHeat", "ThermalExpansionCoefficient"});
    EXPECT_FALSE(group->validates(locator->resolve(L"Thermal").get(), false));
}

TEST_F(MaterialSchemas, AreNotMetOutOfOrder) {
    const auto group = groupOf({"SpecificHeat", "ThermalConductivity", "ThermalExpansionCoefficient"});
    EXPECT_FALSE(group->validates(locator->resolve(L"Thermal").get(), false));
}

TEST_F(MaterialSchemas, DoNotReachTheMaterialsWhenTheyAreEditedAfterwards) {
    const std::string before = written(store.get(), locator.get());
    std::string document = bytesOf(kSchemas);
    const auto replace = [&](const std::string& what, const std::string& by) {
        const auto at = document.find(what);
        ASSERT_NE(at, std::string::npos);
        document.replace(at, what.size(), by);
    };
    replace("<double name=\"YieldStrength\" units=\"MegaPascal\">0</double>", "<string name=\"Remark\">none</string>");
    replace(">0</double>", ">9</double>");
    const auto edited = stores::memory();
    read(edited.get(), document);
    const auto other = metadata::ISchemaLocator::make(edited.get());

    EXPECT_EQ(written(store.get(), other.get()), before);
    EXPECT_TRUE(find("Carbon.Graphite")->has(L"YieldStrength"));
    EXPECT_FALSE(find("Carbon.Graphite")->has(L"Remark"));
    EXPECT_TRUE(find("Carbon.Graphite")->validates(other->resolve(L"Mechanical").get(), false))
        << "what says that it has a schema is not looked into";
}

TEST_F(MaterialSchemas, KeepWhatIsHiddenOutOfDocumentsAndBringItBack) {
    const std::string first = written(store.get(), locator.get());
    const auto occurrences = [](const std::string& text, const std::string& piece) {
        unsigned int found = 0;
        for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) ++found;
        return found;
    };
    EXPECT_EQ(occurrences(first, "<double "), occurrences(bytesOf(kMaterials), "<double ")) << "none of the hidden";
    const auto second = stores::memory();
    read(second.get(), first, locator.get());
    EXPECT_EQ(written(second.get(), locator.get()), first);
    const auto again = IContainerFrontEnd::find(second.get(), L"Carbon.Graphite");
    EXPECT_EQ(namesOf(*again), namesOf(*find("Carbon.Graphite")));
    EXPECT_EQ(again->property(L"YieldStrength")->flags(), kInherited | kHidden);
}

TEST_F(MaterialSchemas, AreHeldInUseByTheirLocatorAlone) {
    const auto library = stores::memory();
    const auto top = IContainerFrontEnd::toplevel(library.get(), L"top");
    top->create(L"Schema", nullptr);
    auto own = metadata::ISchemaLocator::make(library.get());
    const auto made = top->create(IContainer::kNode, L"made", own->resolve(L"top.Schema").get());
    EXPECT_FALSE(top->destroy(L"Schema"));
    own.reset();
    EXPECT_TRUE(top->destroy(L"Schema")) << "the container has copies and no longer needs it";
}

}  // namespace
