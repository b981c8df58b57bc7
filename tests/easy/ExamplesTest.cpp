// The examples that stand in the headers, compiled and run. DocumentedTest.cpp compares.
#include <array>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tests/easy/EasyFixture.h"

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using testing::ElementsAre;
using testing::IsEmpty;

class EasyExamples : public testing::Test {
protected:
    const std::unique_ptr<IDataStore> store = stores::memory();
    const SharedPtr<structure::IContainer> model = structure::IContainerFrontEnd::toplevel(store.get(), L"model");
    std::vector<std::string> names;
};

TEST_F(EasyExamples, Place) {
    easy::makeTable(*model, L"sizes");
    easy::set(*model, L"sizes.door", 2.1);
    const auto atTheTop = easy::get<double>(store.get(), L"model.sizes.door");
    const auto inside = easy::get<double>(*model, L"sizes.door");
    EXPECT_EQ(atTheTop, 2.1);
    EXPECT_EQ(inside, 2.1);
}

TEST_F(EasyExamples, Scope) {
    {
        const easy::Scope scope(*model);
        const int visits = easy::get<int>(*model, L"visits").value_or(0);
        easy::set(*model, L"visits", visits + 1);
    }
    EXPECT_EQ(easy::get<int>(*model, L"visits"), 1);
}

TEST_F(EasyExamples, Make) {
    const auto door = easy::make(*model, L"house.north.door");
    EXPECT_EQ(door->path().string(), "model.house.north.door");
}

TEST_F(EasyExamples, MakeTable) {
    easy::makeTable(*model, L"house.sizes");
    easy::set(*model, L"house.sizes.door", 2.1, units::kMeter);
    EXPECT_EQ(easy::get<double>(*model, L"house.sizes.door"), 2.1);
}

TEST_F(EasyExamples, Set) {
    easy::makeTable(*model, L"place");
    easy::set(*model, L"length", 2.5);
    easy::set(*model, L"place.height", 3.2, units::kMeter);  // in a table: see `makeTable`
    easy::set(store.get(), L"model.count", 3);               // an int: kInt32
    easy::set(*model, L"pressures", std::vector{1.5F, 2.5F});
    const std::array at{0.0, 0.0, 1.5};
    easy::set(*model, L"place.at", at, {units::kMeter, metadata::kVec3});
    EXPECT_EQ(easy::get<int>(*model, L"count"), 3);
    EXPECT_EQ(easy::get<double>(*model, L"place.height"), 3.2);
    EXPECT_EQ((easy::get<std::array<double, 3>>(*model, L"place.at")), at);
}

TEST_F(EasyExamples, SetTexts) {
    easy::set(*model, L"title", L"Carport");
    easy::set(*model, L"made", "2024-05-01", metadata::kTime);
    easy::set(*model, L"authors", std::vector<std::string>{"Ada", "Zoë"});
    EXPECT_EQ(easy::get<std::wstring>(*model, L"made"), L"2024-05-01");
    EXPECT_THAT(*easy::get<std::vector<std::wstring>>(*model, L"authors"), ElementsAre(L"Ada", L"Zoë"));
}

TEST_F(EasyExamples, Get) {
    easy::makeTable(*model, L"place");
    easy::set(*model, L"place.at", std::array{0.0, 0.0, 1.5});
    const std::optional<double> length = easy::get<double>(*model, L"length");
    const auto pressures = easy::get<std::vector<float>>(*model, L"pressures");
    const auto at = easy::get<std::array<double, 3>>(*model, L"place.at");
    const std::string title = easy::get<std::string>(*model, L"title").value_or("untitled");
    EXPECT_FALSE(length);
    EXPECT_FALSE(pressures);
    EXPECT_EQ(at.value().at(2), 1.5);
    EXPECT_EQ(title, "untitled");
}

TEST_F(EasyExamples, GetAWindow) {
    std::vector<double> samples(2000);
    samples[1001] = 7.5;
    easy::set(*model, L"samples", samples);
    double window[3] = {};
    const bool read = easy::get(*model, L"samples", std::span(window), 1000);
    EXPECT_TRUE(read);
    EXPECT_THAT(window, ElementsAre(0, 7.5, 0));
}

TEST_F(EasyExamples, Containers) {
    easy::make(*model, L"house");
    easy::make(*model, L"garden");
    for (const auto& child : easy::containers(*model)) names.push_back(child->tag().string());
    EXPECT_THAT(names, ElementsAre("house", "garden"));
}

TEST_F(EasyExamples, Properties) {
    easy::makeTable(*model, L"sizes");
    easy::set(*model, L"sizes.door", 2.1, units::kMeter);
    easy::set(*model, L"count", 3);
    for (const auto& property : easy::properties(*model)) {
        auto* const table = metadata::ITable::to(property.get());
        if (!table) continue;
        for (const auto& item : easy::properties(*table)) names.push_back(item->path().string());
    }
    EXPECT_THAT(names, ElementsAre("model.sizes.door"));
}

TEST_F(EasyExamples, Visit) {
    easy::makeTable(*model, L"house.sizes");
    easy::set(*model, L"house.sizes.door", 2.1, units::kMeter);
    easy::make(*model, L"link", structure::IContainer::kLink)->create(L"own", metadata::kInt32);
    std::map<std::wstring, units::tUnit> units;
    const auto note = [&](const easy::tPrimitive& item, const easy::tAt& at) {
        units[std::wstring(at.path)] = item.units;
    };
    const auto noLinks = [](const easy::tContainer& item) { return item.type != structure::IContainer::kLink; };
    easy::visit(*model, L"", note, noLinks);
    EXPECT_THAT(units, ElementsAre(std::pair(L"house.sizes.door", units::kMeter)));
}

}  // namespace
