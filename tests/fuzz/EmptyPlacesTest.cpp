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

constexpr const char* kFault = " : 'dim' reserves more than a document may leave empty";

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
    const std::uint64_t most = EmptyPlaces::kMost + EmptyPlaces::kUncounted;
    EXPECT_EQ(read("<binary name='a' dim='" + bytes(most) + "'/><binary name='b' dim='" + bytes(most) +
                   "'/><binary name='c' dim='256'/>"),
              tFaults{std::string("binary") + kFault});
    EXPECT_EQ(dimension(L"a"), most);
    EXPECT_EQ(dimension(L"b"), 0u);
    EXPECT_EQ(dimension(L"c"), 256u);
}

TEST_F(Places, ThatAreTooManyLeaveTheText) {
    EXPECT_EQ(read("<INT8 name='a' dim='4000000000'>1 2</INT8><string name='s' dim='1000000000'><val>x</val></string>"),
              (tFaults{std::string("INT8") + kFault, std::string("string") + kFault}));
    EXPECT_EQ(dimension(L"a"), 2u);
    EXPECT_EQ(dimension(L"s"), 2u);
}

TEST_F(Places, ThatATextFillsAreNotCounted) {
    const std::string text(4'000'000, 'x');
    std::string values;
    for (int i = 0; i < 5; ++i) {
        values += "<string name='a" + std::to_string(i) + "' dim='4000000'>" + text + "</string>";
    }
    EXPECT_EQ(read(values), tFaults{});  // 80 MB
    EXPECT_EQ(dimension(L"a4"), 4'000'001u);
}

TEST_F(Places, AreCountedAnewForEachDocument) {
    for (const wchar_t* name : {L"a", L"b"}) {
        EXPECT_EQ(read("<int8 name='" + WideString(name).string() + "' dim='60000000'/>"), tFaults{});
    }
}

TEST_F(Places, OfAValueThatIsThereAlreadyAreNotMade) {
    EXPECT_EQ(read("<int8 name='a' dim='3'/><int8 name='a' dim='4000000000'>7</int8>"), tFaults{});
    EXPECT_EQ(dimension(L"a"), 3u);
}

}  // namespace
