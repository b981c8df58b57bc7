// Records taken apart, whatever is in them.
#include "lumivard/platform/data/check/Dump.h"

#include <gmock/gmock.h>

#include <random>
#include <string>

#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using check::Dump;
using check::Field;
using testing::ElementsAre;

std::string told(const Field& field) {
    return std::string(field.name) + " " + std::to_string(field.position) + "+" + std::to_string(field.size) +
           (field.meaning.empty() ? "" : ": " + field.meaning);
}

std::vector<std::string> told(const Dump& dump) {
    std::vector<std::string> parts;
    for (const Field& field : dump.parts) parts.push_back(told(field));
    return parts;
}

/// Each byte is in one part.
void expectWhole(const Dump& dump) {
    std::size_t end = 0;
    for (const Field& field : dump.parts) {
        EXPECT_EQ(field.position, end);
        EXPECT_GT(field.size, 0u);
        end += field.size;
    }
    EXPECT_EQ(end, dump.bytes.size());
}

class RecordDump : public testing::Test {
protected:
    Dump dump(unsigned int offset) {
        Dump dump = check::dump(*store, offset);
        expectWhole(dump);
        return dump;
    }
    std::unique_ptr<core::storage::datastore::IDataStore> store = stores::memory();
};

TEST_F(RecordDump, NamesTheFieldsAndSectionsOfEachKind) {
    const auto top = structure::IContainerFrontEnd::toplevel(store.get(), L"g");
    top->create(structure::IContainer::kLink, L"l", nullptr);
    structure::ILink::to(top->container(L"l").get())->target(L"g.t");
    const auto table = top->create(L"t", nullptr);
    table->defaults(units::kMeter, metadata::kDouble);
    const auto value = table->create(L"v", metadata::kUInt8, units::kMeter);
    value->set("abc", 0, 3);
    value->container()->describe(L"x", L"y");

    unsigned int seen = 0;
    for (unsigned int offset = 0; offset < store->extent(); ++offset) {
        const Dump dump = this->dump(offset);
        EXPECT_TRUE(dump.there);
        const std::string kind = dump.kind;
        if (kind == "table") {
            ++seen;
            EXPECT_THAT(told(dump),
                        ElementsAre("kind 0+1: table", testing::_, testing::_, testing::_, "flags 13+1: 0x0",
                                    testing::_, "zeros 18+4", testing::_, "name length 26+4: 8", "base length 30+4: 0",
                                    "zeros 34+2", "name 36+8: \"t\""));
        } else if (kind == "primitive") {
            ++seen;
            EXPECT_THAT(told(dump),
                        ElementsAre("kind 0+1: primitive", testing::_, testing::_, testing::_, "flags 13+1: 0x0",
                                    "zeros 14+4", "unit 18+4: 0x2001", "value kind 22+4: 9",
                                    "value locale length 26+4: 0", "name length 30+4: 8", "base length 34+4: 0",
                                    "value length 38+4: 3", "zeros 42+2", "name 44+8: \"v\"", "value 52+3"));
        } else if (kind == "container" && dump.bytes.size() > 50) {
            ++seen;
            EXPECT_EQ(told(dump.parts.at(6)), "type 18+1: link");
            EXPECT_EQ(told(dump.parts.back()), "info 40+16: \"g.t\"");
        } else if (kind == "list" && dump.parts.size() == 4) {
            ++seen;
        }
    }
    EXPECT_EQ(seen, 5u) << "the lists of the group's children and of the defaults have two entries each";
}

TEST_F(RecordDump, NamesLocalizedNames) {
    structure::IContainerFrontEnd::toplevel(store.get(), L"g")->describe(L"de", L"G");
    const unsigned int last = static_cast<unsigned int>(store->extent()) - 1;
    EXPECT_THAT(told(dump(last)),
                ElementsAre("kind 0+1: localized names", "length 1+4: 20", "unused 5+3", "payload 8+20: \"de\" \"G\""));
}

TEST_F(RecordDump, ShowsTextsWithoutCharacters) {
    std::string names("\x05\x20\0\0\0\0\0\0", 8);
    for (const wchar_t each : std::wstring(L"de\0\0fr\0F", 8)) names.append(reinterpret_cast<const char*>(&each), 4);
    EXPECT_THAT(told(dump(store->create(names.data(), static_cast<unsigned int>(names.size())))).back(),
                "payload 8+32: \"de\" \"\" \"fr\" \"F\"");
}

TEST_F(RecordDump, ShowsANameAsFarAsTheLibraryReadsIt) {
    structure::IContainerFrontEnd::toplevel(store.get(), L"abcd");
    for (unsigned int offset = 0; offset < store->extent(); ++offset) {
        const auto group = dump(offset);
        if (group.kind != std::string("container")) continue;
        std::string bytes(group.bytes.begin(), group.bytes.end());
        bytes[bytes.find('b')] = 0;
        store->update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
        EXPECT_THAT(told(dump(offset)), testing::Contains(testing::EndsWith(": \"a\"")));
        return;
    }
    FAIL() << "there is a container";
}

TEST_F(RecordDump, TellsTheFirstThousandEntriesOfAList) {
    std::string list(4 + 4 * 1003, '\0');
    list[0] = 3;
    const auto dumped = dump(store->create(list.data(), static_cast<unsigned int>(list.size())));
    EXPECT_EQ(dumped.parts.size(), 2u + 1000 + 1);
    EXPECT_EQ(told(dumped).back(), "entries 4004+12: 3 more");
}

TEST_F(RecordDump, OfAnOffsetWithoutARecordIsEmpty) {
    EXPECT_FALSE(dump(0).there);
    structure::IContainerFrontEnd::toplevel(store.get(), L"g");
    EXPECT_FALSE(dump(1000).there);
    EXPECT_FALSE(dump(core::storage::datastore::IDataStore::BADOFF).there);
}

TEST_F(RecordDump, ShowsWhatIsTooShortTooLongOrUnknown) {
    store->create("\x07garbage", 8);
    EXPECT_STREQ(dump(0).kind, "unknown");
    EXPECT_THAT(told(dump(0)), ElementsAre("kind 0+1: unknown", "rest 1+7"));
    store->create("\x02\0\0\0\0", 5);
    EXPECT_THAT(told(dump(1)), ElementsAre("kind 0+1: table", "parent 1+4: 0"));
    store->create("\x02\0\0\0\0\0", 6);
    EXPECT_THAT(told(dump(2)), ElementsAre("kind 0+1: table", "parent 1+4: 0", "rest 5+1"));
    store->create("\x03\0\0\0\x05\0\0\0\xff\xff", 10);
    EXPECT_THAT(told(dump(3)), ElementsAre("kind 0+1: list", "zeros 1+3", "entry 4+4: 5", "rest 8+2"));
    store->create("\x05\xff\xff\xff\xff\0\0\0\x41\0\0\0\x42", 13);
    EXPECT_THAT(told(dump(4)),
                ElementsAre("kind 0+1: localized names", "length 1+4: 4294967295", "unused 5+3", "payload 8+5: \"A\""));
}

TEST_F(RecordDump, BearsAnyBytes) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (int i = 0; i < 20000; ++i) {
        std::string bytes(random() % 80, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random() % 4 == 0 ? random() : 0);
        if (!bytes.empty()) bytes[0] = static_cast<char>(random() % 8);
        dump(store->create(bytes.data(), static_cast<unsigned int>(bytes.size())));
    }
}

}  // namespace
