#include "xml/ValueElements.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "xml/XMLContainer.h"
#include "xml/XMLPrimitive.h"
#include "xml/XMLRoot.h"
#include "xml/XMLTable.h"

namespace {

using namespace lumivard::platform::data;

TEST(ValueElements, AreNamedByTheirKind) {
    const char* kNames[] = {"binary", "uuid",    "string",  "time",    "uri",       "version",   "bool",      "int8",
                            "uint8",  "int16",   "uint16",  "int32",   "uint32",    "int64",     "uint64",    "scalar",
                            "double", "vector2", "vector3", "vector4", "matrix2x2", "matrix3x3", "matrix4x4", "struct"};
    ASSERT_EQ(std::size(kNames), 24u);
    for (unsigned int kind = 1; kind <= 24; ++kind) {
        const XMLPrimitive element(nullptr, static_cast<metadata::tValue>(kind), nullptr);
        EXPECT_STREQ(element.name(), kNames[kind - 1]);
        EXPECT_EQ(element.wname(), std::wstring(element.name(), element.name() + std::strlen(element.name())));
        EXPECT_EQ(element.type(), 1u);
    }
}

TEST(ValueElements, HaveNoNameForANumberThatIsNoKind) {
    for (const unsigned int kind : {0u, 25u, 0xFFFFFFFFu}) {
        const XMLPrimitive element(nullptr, static_cast<metadata::tValue>(kind), nullptr);
        EXPECT_EQ(element.name(), nullptr);
        EXPECT_EQ(element.wname(), nullptr);
    }
}

TEST(ValueElements, OtherElementsHaveTheirNamesToo) {
    EXPECT_STREQ(XMLRoot(nullptr).name(), "root");
    EXPECT_STREQ(XMLRoot(nullptr).wname(), L"root");
    EXPECT_EQ(XMLRoot(nullptr).type(), 0u);
    EXPECT_STREQ(XMLTable(nullptr, nullptr).name(), "table");
    EXPECT_STREQ(XMLTable(nullptr, nullptr).wname(), L"table");
    EXPECT_EQ(XMLTable(nullptr, nullptr).type(), 2u);
    const char* kNames[] = {"node", "group", "link", nullptr};
    const wchar_t* kWideNames[] = {L"node", L"group", L"link", nullptr};
    for (unsigned int type = 0; type < std::size(kNames); ++type) {
        const XMLContainer element(nullptr, static_cast<structure::IContainer::tType>(type), nullptr);
        EXPECT_STREQ(element.name(), kNames[type]);
        EXPECT_STREQ(element.wname(), kWideNames[type]);
        EXPECT_EQ(element.type(), 4u);
    }
}

TEST(ValueElements, AreNamedOtherwiseAsDefaultsOfATable) {
    const struct {
        const char* name;
        unsigned int kind;
    } kTypes[] = {
        {"string", 3},  {"binary", 1},  {"scalar", 16}, {"double", 17}, {"bool", 7},   {"string", 3},
        {"uuid", 2},    {"time", 4},    {"uri", 5},     {"version", 6}, {"int8", 8},   {"uint8", 9},
        {"int16", 10},  {"uint16", 11}, {"int32", 12},  {"uint32", 13}, {"int64", 14}, {"uint64", 15},
        {"mtx2x2", 21}, {"mtx3x3", 22}, {"mtx4x4", 23}, {"vec2", 18},   {"vec3", 19},  {"vec4", 20},
    };
    ASSERT_EQ(std::size(kTypes), std::size(kpTypes));
    for (std::size_t i = 0; i < std::size(kTypes); ++i) {
        EXPECT_STREQ(kpTypes[i].narrow, kTypes[i].name);
        EXPECT_EQ(kpTypes[i].wide, std::wstring(kTypes[i].name, kTypes[i].name + std::strlen(kTypes[i].name)));
        EXPECT_EQ(kpTypes[i].kind, kTypes[i].kind);
        EXPECT_EQ(typeNamed(kTypes[i].name)->kind, kTypes[i].kind);
        EXPECT_STREQ(typeOf(kpTypes[i].kind)->narrow, kTypes[i].name);
    }
}

TEST(ValueElements, DoNotNameDefaultsByTheNamesOfElements) {
    for (const char* name :
         {"vector2", "vector3", "vector4", "matrix2x2", "matrix3x3", "matrix4x4", "struct", "", "Bool"})
        EXPECT_EQ(typeNamed(name), nullptr) << name;
    EXPECT_EQ(typeOf(metadata::kStruct), nullptr);
    EXPECT_EQ(typeOf(static_cast<metadata::tValue>(0)), nullptr);
}

}  // namespace
