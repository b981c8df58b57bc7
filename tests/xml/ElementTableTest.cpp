#include "xml/ElementTable.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "xml/ValueElements.h"
#include "xml/XMLPrimitive.h"

namespace {

using namespace lumivard::platform::data;

TEST(ElementTable, FindsEachElementByExactlyItsName) {
    std::vector<std::unique_ptr<XMLPrimitive>> elements;
    ElementTable table;
    for (unsigned int kind = metadata::kBinary; kind <= metadata::kStruct; ++kind) {
        elements.push_back(std::make_unique<XMLPrimitive>(nullptr, static_cast<metadata::tValue>(kind), nullptr));
        table.add(*elements.back());
    }
    for (const auto& element : elements) {
        const std::string name = element->name();
        EXPECT_EQ(table.find(name), element.get()) << name;
        for (const std::string& other : {name + " ", name + "x", "x" + name, "I" + name}) {
            EXPECT_EQ(table.find(other), nullptr) << other;
        }
    }
    EXPECT_EQ(table.find(""), nullptr);
    EXPECT_EQ(table.find(std::string(300, 'x')), nullptr);
    EXPECT_EQ(table.find("\xff\xfe\x80"), nullptr);
}

TEST(ElementTable, KeepsTheFirstOfAName) {
    XMLPrimitive first(nullptr, metadata::kDouble, nullptr);
    XMLPrimitive second(nullptr, metadata::kDouble, nullptr);
    ElementTable table;
    table.add(first);
    table.add(second);
    EXPECT_EQ(table.find("double"), &first);
}

}  // namespace
