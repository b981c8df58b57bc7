#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/fuzz/RoundTrip.h"
#include "xml/EmptyPlaces.h"

// What a `dim` may reserve, and what becomes of one that asks for more.

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::fuzz;
using data::EmptyPlaces;
using data::metadata::IPrimitive;
using data::structure::IContainerFrontEnd;

class Places : public testing::Test {
protected:
    /// Reads values into the group "g" and gives the faults.
    std::vector<std::string> read(const std::string& values) {
        Listener listener;
        core::io::MemoryReader reader("<root name='r'><group name='g'>" + values + "</group></root>");
        IXMLFrontEnd::parse(_store.get(), &reader, nullptr, nullptr, &listener);
        EXPECT_EQ(listener.broken, "");
        return listener.faults;
    }

    unsigned int dimension(const wchar_t* name) {
        const auto property = IContainerFrontEnd::find(_store.get(), L"g")->property(name);
        return property ? IPrimitive::to(property.get())->dimension() : 0;
    }

private:
    std::unique_ptr<IDataStore> _store = stores::memory();
};

using tFaults = std::vector<std::string>;

std::string bytes(std::uint64_t count) {
    return std::to_string(count);
}

TEST_F(Places, AreMadeUpToTheBoundOfADocument) {
    EXPECT_EQ(read("<binary name='a' dim='" + bytes(EmptyPlaces::kMost - 4) + "'/><binary name='b' dim='5'/>" +
                   "<binary name='c' dim='4'/><binary name='d' dim='1'/>"),
              tFaults{});
    EXPECT_EQ(dimension(L"a"), EmptyPlaces::kMost - 4);
    EXPECT_EQ(dimension(L"b"), 0u);
    EXPECT_EQ(dimension(L"c"), 4u);
    EXPECT_EQ(dimension(L"d"), 0u);
}

TEST_F(Places, ThatAreTooManyLeaveTheText) {
    EXPECT_EQ(read("<int8 name='a' dim='4000000000'>1 2</int8><string name='s' dim='1000000000'><val>x</val></string>"),
              tFaults{});
    EXPECT_EQ(dimension(L"a"), 2u);
    EXPECT_EQ(dimension(L"s"), 2u);
}

TEST_F(Places, ThatATextFillsAreFreeAgain) {
    const std::string text(4'000'000, 'x');
    std::string values;
    for (int i = 0; i < 10; ++i) {
        values += "<string name='a" + std::to_string(i) + "' dim='4000000'>" + text + "</string>";
    }
    EXPECT_EQ(read(values), tFaults{});  // 160 MB
    EXPECT_EQ(dimension(L"a9"), 4'000'001u);
}

TEST_F(Places, ThatNumbersFillAreFreeAgain) {
    std::string numbers;
    for (int i = 0; i < 1'000'000; ++i) numbers += "7 ";
    std::string values;
    for (int i = 0; i < 20; ++i) {
        values += "<double name='a" + std::to_string(i) + "' dim='1000000'>" + numbers + "</double>";
    }
    EXPECT_EQ(read(values + "<double name='b' dim='10000000'/>"), tFaults{});  // 160 MB, and 80 MB more
    EXPECT_EQ(dimension(L"b"), 10'000'000u);
}

TEST_F(Places, StayWhereAnElementOfTheSameKindIsRefusedInside) {
    EXPECT_EQ(read("<int32 name='a' dim='5'><int32 name='b' dim='2'/></int32>").size(), 1u);
    EXPECT_EQ(dimension(L"a"), 5u);
}

TEST_F(Places, OfAValueThatIsThereAlreadyAreNotMade) {
    EXPECT_EQ(read("<int8 name='a' dim='3'/><int8 name='a' dim='4000000000'>7</int8>"), tFaults{});
    EXPECT_EQ(dimension(L"a"), 3u);
}

}  // namespace
