#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "lumivard/platform/stores.h"
#include "tests/end_to_end/ToolFixture.h"
#include "tests/support/StoredRecords.h"

// Checking and repairing with the tool.

namespace {

using namespace lumivard::platform::test_support;
namespace stores = lumivard::platform::stores;

constexpr const char* kSmallDocument =
    "<root name='r'><group name='a'><node name='n'><int8 name='x'>5</int8></node></group><group name='b'/></root>";

/// Whether a text is one JSON value: a reader of nothing but the syntax.
class Json {
public:
    static bool isOne(const std::string& text) {
        Json json(text);
        return json.value() && json._at == text.find_last_not_of('\n') + 1;
    }

private:
    explicit Json(const std::string& text) : _text(text) {}

    bool take(char character) {
        if (_at >= _text.size() || _text[_at] != character) return false;
        ++_at;
        return true;
    }
    bool word(const std::string& word) {
        if (_text.compare(_at, word.size(), word) != 0) return false;
        _at += word.size();
        return true;
    }
    bool value() {
        if (take('{')) return items('}', true);
        if (take('[')) return items(']', false);
        if (_at < _text.size() && _text[_at] == '"') return string();
        return word("true") || word("false") || number();
    }
    bool items(char end, bool keyed) {
        if (take(end)) return true;
        do {
            if (keyed && (!string() || !take(':'))) return false;
            if (!value()) return false;
        } while (take(','));
        return take(end);
    }
    bool string() {
        if (!take('"')) return false;
        for (; _at < _text.size() && _text[_at] != '"'; ++_at) {
            if (static_cast<unsigned char>(_text[_at]) < 0x20) return false;
            if (_text[_at] == '\\') ++_at;
        }
        return take('"');
    }
    bool number() {
        const std::size_t begin = _at;
        while (_at < _text.size() && _text[_at] >= '0' && _text[_at] <= '9') ++_at;
        return _at != begin;
    }

    const std::string& _text;
    std::size_t _at = 0;
};

class ToolCheck : public Tool {
protected:
    void SetUp() override { store = imported(kSmallDocument); }

    /// Changes the store behind everybody's back.
    template <class Change>
    void spoil(Change change) const {
        const auto open = stores::file(store, stores::tMode::kWrite);
        change(*open);
        open->flush();
    }
    void makeStale() const {
        spoil([](auto& open) { stored::putWord(&open, 0, stored::kRefs, 3); });
    }

    tRun check(const std::string& options = "") const { return run("check " + store + " " + options); }

    std::string store;
};

TEST_F(ToolCheck, FindsNothingInASoundStore) {
    for (const char* options : {"", "--whole"}) {
        const tRun run = check(options);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.out.substr(run.out.find('\n') + 1), "usable; nothing lost\n");
    }
}

TEST_F(ToolCheck, FindsNothingInTheExamples) {
    for (const std::string& document : {materials, schemas}) {
        EXPECT_EQ(run("import " + document + " " + path("example.lvp")).status, 0);
        EXPECT_EQ(run("check --whole " + path("example.lvp")).status, 0);
        std::filesystem::remove(path("example.lvp"));
    }
}

TEST_F(ToolCheck, TellsAFindingInALine) {
    makeStale();
    const tRun run = check();
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out.substr(0, run.out.find('\n')),
              "stale live.stale-count 0: it counts 3 live objects: stale, unless somebody has it open; set to 0");
    EXPECT_NE(run.out.find("  live.stale-count: 1\n"), run.out.npos);
    EXPECT_NE(run.out.find("\nusable; 1 stale count; nothing lost\n"), run.out.npos);
}

TEST_F(ToolCheck, HasStatus1ForANoteAlone) {
    spoil([](auto& open) { stored::makeList(&open); });
    const tRun run = check();
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out.find("\nusable; notes only (1); nothing lost\nwhat nothing reaches, "), run.out.npos) << run.out;
}

TEST_F(ToolCheck, SumsUpWhatNothingReaches) {
    const auto strays = [](int count) {
        return [count](auto& open) {
            for (int i = 0; i < count; ++i) stored::makeList(&open);
        };
    };
    spoil(strays(10));
    EXPECT_EQ(std::string(check().out).find("subtrees"), std::string::npos);
    spoil([](auto& open) { stored::putWord(&open, 0, stored::kRefs, 3); });
    spoil(strays(1));
    const std::string text = check().out;
    EXPECT_NE(text.find("note live.unattached: 11 records of 44 bytes in 11 subtrees, which nothing reaches\n"),
              text.npos)
        << text;
    EXPECT_EQ(text.find("note live.unattached "), text.npos) << text;
    EXPECT_NE(text.find("stale live.stale-count 0: "), text.npos) << text;
    EXPECT_EQ(text.find(" more\n"), text.npos) << text;
}

TEST_F(ToolCheck, SaysWhatIsUnattachedAfterARepairOfDamage) {
    spoil([](auto& open) { stored::putWord(&open, 1, stored::kChildren, 0); });
    const tRun run = check("--repair --reclaim");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out.find("erase "), run.out.npos) << run.out;
    EXPECT_EQ(run.out.find("nothing lost"), run.out.npos) << run.out;
    EXPECT_NE(run.out.find("\nusable; notes only (1); 4 records of "), run.out.npos) << run.out;
    EXPECT_NE(run.out.find(" bytes are unattached\n"), run.out.npos) << run.out;
    const tRun second = check("--repair --reclaim");
    EXPECT_EQ(second.status, 0);
    EXPECT_NE(second.out.find("\nusable; nothing lost\n"), second.out.npos) << second.out;
}

TEST_F(ToolCheck, TakesAFileForOneWhateverItIsCalled) {
    std::filesystem::rename(store, path("postgresql:x"));
    store = "postgresql:x";
    const tRun run =
        runProgram("sh -c 'cd " + path(".") + " && exec " LVP_TOOL " \"$@\"' sh", "check --repair " + store);
    EXPECT_EQ(run.status, 0) << run.err;
}

TEST_F(ToolCheck, RepairsAndKeepsTheOldBytes) {
    makeStale();
    const std::string before = [&] {
        const auto open = stores::file(store, stores::tMode::kRead);
        return stored::bytes(open.get(), 0);
    }();
    const tRun run = check("--repair");
    EXPECT_EQ(run.status, 0) << run.err;
    const std::string kept = bytesOf(store + ".before-repair");
    EXPECT_EQ(kept.substr(0, kept.find('\n')), "lvp-data before-repair 1");
    EXPECT_NE(kept.find("\nchange 0 " + std::to_string(before.size()) + " 00ffffffff03000000"), kept.npos);
    EXPECT_EQ(check().status, 0);
}

TEST_F(ToolCheck, TellsWhyAndWhatBeforeItRepairs) {
    spoil([](auto& open) { stored::makeList(&open); });
    makeStale();
    const std::string text = check("--repair").out;
    EXPECT_EQ(text.find("stale live.stale-count 0: "), 0u) << text;
    EXPECT_NE(text.find("; set to 0\nnote live.unattached "), text.npos) << text;
    EXPECT_NE(text.find(" reaches\nchange 0: 32 bytes to 32\nrepaired, in 1 record, "), text.npos) << text;
    EXPECT_NE(text.find("; what is left:\nnote live.unattached "), text.npos) << text;
}

TEST_F(ToolCheck, RepairsNothingTheSecondTime) {
    makeStale();
    check("--repair");
    const std::string bytes = bytesOf(store);
    const tRun second = check("--repair");
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.out.substr(0, second.out.find('\n')), "nothing to repair");
    EXPECT_FALSE(std::filesystem::exists(store + ".before-repair-2"));
}

TEST_F(ToolCheck, NeverOverwritesOldBytes) {
    for (int i = 0; i < 3; ++i) {
        makeStale();
        EXPECT_EQ(check("--repair").status, 0);
    }
    EXPECT_TRUE(std::filesystem::exists(store + ".before-repair"));
    EXPECT_TRUE(std::filesystem::exists(store + ".before-repair-2"));
    EXPECT_TRUE(std::filesystem::exists(store + ".before-repair-3"));
}

TEST_F(ToolCheck, RepairsNothingWhereTheOldBytesCannotBeKept) {
    store = imported(kSmallDocument, std::string(245, 'n'));  // no longer name is left for a file beside it
    makeStale();
    const std::string before = bytesOf(store);
    const tRun failed = check("--repair");
    EXPECT_EQ(failed.status, 4);
    EXPECT_NE(failed.err.find("nothing was repaired"), failed.err.npos) << failed.err;
    EXPECT_EQ(bytesOf(store), before);
    EXPECT_EQ(check().status, 1);
}

TEST_F(ToolCheck, ReclaimsOnlyWhenAsked) {
    spoil([](auto& open) { stored::makeList(&open); });
    EXPECT_EQ(check("--repair").status, 1);
    const tRun run = check("--repair --reclaim");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("\nerase "), run.out.npos) << run.out;
    EXPECT_EQ(check().status, 0);
}

TEST_F(ToolCheck, LeavesWhatCannotBeMended) {
    spoil([](auto& open) {
        const std::string bytes = stored::bytes(&open, 1);
        open.update(1, bytes.data(), static_cast<unsigned int>(bytes.size()) - 1, true);
    });
    const tRun run = check("--repair");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out.find("damage record.section-past-end 1 a: "), run.out.npos) << run.out;
    EXPECT_NE(run.out.find("\ndamaged; 1 finding of damage\n"), run.out.npos) << run.out;
}

TEST_F(ToolCheck, PrintsJson) {
    const std::string sound = check("--json").out;
    EXPECT_TRUE(Json::isOne(sound)) << sound;
    EXPECT_NE(sound.find("\"clean\":true,\"verdict\":\"usable; nothing lost\"}\n"), sound.npos) << sound;
    makeStale();
    const std::string stale = check("--json").out;
    EXPECT_TRUE(Json::isOne(stale)) << stale;
    EXPECT_NE(stale.find("\"severities\":{\"note\":0,\"stale\":1,\"damage\":0,\"fatal\":0}"), stale.npos) << stale;
    EXPECT_NE(stale.find("\"counts\":{\"live.stale-count\":1},\"findings\":[{\"severity\":\"stale\",\"code\":"
                         "\"live.stale-count\",\"offset\":0,\"path\":\"\",\"found\":\"it counts 3 live objects: stale, "
                         "unless somebody has it open\",\"repair\":\"set to 0\"}]"),
              stale.npos)
        << stale;
    const std::string repaired = check("--json --repair").out;
    EXPECT_TRUE(Json::isOne(repaired)) << repaired;
    EXPECT_NE(repaired.find("\"steps\":[{\"offset\":0,\"erases\":false,\"before\":32,\"after\":32}]"), repaired.npos);
}

TEST_F(ToolCheck, LetsNoNameTakeHoldOfATerminal) {
    spoil([](auto& open) {
        const wchar_t hostile[] = L"\x1b]0;\"\\\n\x202e\x2069";
        std::string bytes = stored::bytes(&open, 1).substr(0, 32);
        bytes.append(reinterpret_cast<const char*>(hostile), sizeof(hostile));
        open.update(1, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
        stored::putWord(&open, 1, 19, sizeof(hostile));
        stored::putWord(&open, 1, stored::kRefs, 1);
    });
    const std::string text = check().out;
    EXPECT_EQ(text.find('\x1b'), text.npos);
    EXPECT_NE(text.find("stale live.stale-count 1 \\x1b]0;\"\\\\n\\u202e\\u2069: "), text.npos) << text;
    const std::string json = check("--json").out;
    EXPECT_TRUE(Json::isOne(json)) << json;
    EXPECT_NE(json.find("\"path\":\"\\u001b]0;\\\"\\\\\\u000a\\u202e\\u2069\""), json.npos) << json;
}

TEST_F(ToolCheck, TellsFaultsOfTheFile) {
    std::filesystem::resize_file(store, std::filesystem::file_size(store) / 2 / 4096 * 4096);
    for (const char* options : {"", "--repair", "--whole --json"}) {
        const tRun run = check(options);
        EXPECT_EQ(run.status, 1) << run.err;
        EXPECT_NE(run.out.find("container."), run.out.npos) << run.out;
        EXPECT_NE(run.out.find("not usable: the file is damaged below its records"), run.out.npos) << run.out;
    }
}

TEST_F(ToolCheck, TellsARecordThatIsNotAsItWasWritten) {
    std::string bytes = bytesOf(store);
    const std::size_t name = bytes.find(std::string("n\0\0\0\0\0\0\0", 8));
    ASSERT_NE(name, bytes.npos);
    bytes[name] = 'm';
    std::ofstream(store, std::ios::binary) << bytes;
    const tRun whole = check("--whole");
    EXPECT_EQ(whole.status, 1);
    EXPECT_NE(whole.out.find("damage container.checksum at byte "), whole.out.npos) << whole.out;
    EXPECT_NE(whole.out.find("damage record.unreadable "), whole.out.npos) << whole.out;
    EXPECT_EQ(check("--repair").status, 1);
    EXPECT_EQ(bytesOf(store), bytes);
}

TEST_F(ToolCheck, HasStatus3ForWhatItCannotOpen) {
    EXPECT_EQ(run("check " + path("none.lvp")).status, 3);
    EXPECT_EQ(run("check memory:").status, 3);
    EXPECT_EQ(run("check --repair memory:").status, 3);
    const auto open = stores::file(store, stores::tMode::kWrite);
    const tRun refused = check("--repair");
    EXPECT_EQ(refused.status, 3);
    EXPECT_NE(refused.err, "");
}

TEST_F(ToolCheck, HasStatus2ForWrongUsage) {
    EXPECT_EQ(run("check").status, 2);
    EXPECT_EQ(check("--reclaim").status, 2);
}

TEST_F(ToolCheck, HasStatus4WhereTheReportCannotBeWritten) {
    EXPECT_EQ(runProgram("sh -c 'exec " LVP_TOOL " \"$@\" >/dev/full' sh", "check " + store).status, 4);
}

}  // namespace
