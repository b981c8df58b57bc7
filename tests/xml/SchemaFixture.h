#pragma once

#include <string>
#include <vector>

#include "record/Entity.h"
#include "tests/xml/XmlFixture.h"

namespace lumivard::platform::test_support {

// Flags of what came from a schema: untouched, and filled in by the document.
inline constexpr unsigned char kUntouched = 0x06;
inline constexpr unsigned char kFilled = 0x02;

using tItems = std::vector<std::string>;
inline const tItems kNoItems;

inline unsigned char flagsOf(IDataStore* store, unsigned int offset) {
    return stored::byte(store, offset, stored::kFlags);
}

/// The names of what a root, container or table holds, in the stored order; those that are hidden in brackets.
inline tItems itemsOf(IDataStore* store, unsigned int owner = 0) {
    tItems items;
    for (const unsigned int offset : stored::children(store, owner)) {
        const std::string tag = WideString(data::Record::Entity(store, offset).name().c_str()).string();
        items.push_back(flagsOf(store, offset) & data::Record::kHidden ? "(" + tag + ")" : tag);
    }
    return items;
}

/// Documents in one store, and the schemas that they name in another, which the locator searches.
class SchemaXmlTest : public XmlTest {
protected:
    SchemaXmlTest() : locator(ISchemaLocator::make(other())) {}

    /// Makes the tables of a document the schemas; once for each test.
    void schemas(const std::string& tables) {
        ASSERT_EQ(readInto(other(), "<root name='schemas'>" + tables + "</root>", locator.get()), kNone);
    }

    tMessages read(const std::string& document) { return XmlTest::read(document, locator.get()); }
    std::string written(unsigned int offset = 0) { return XmlTest::written(offset, locator.get()); }

    /// What is written out again of a document that is read without a fault.
    std::string rewritten(const std::string& document) {
        EXPECT_EQ(read(document), kNone) << document;
        return written();
    }

    unsigned char flags(const wchar_t* path) { return flagsOf(store(), at(path)); }
    tItems items(unsigned int offset = 0) { return itemsOf(store(), offset); }
    tItems items(const wchar_t* path) { return itemsOf(store(), at(path)); }

    SharedPtr<ISchemaLocator> locator;
};

/// The elements that can have a class.
inline constexpr const char* kClassed[] = {"node", "group", "link", "table"};

}  // namespace lumivard::platform::test_support
