#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <unistd.h>

#include "tests/fuzz/KeptFiles.h"
#include "tests/fuzz/RoundTrip.h"
#include "tests/fuzz/Targets.h"

// Every input that the fuzzers kept, and every one that ever made something fail, in every build.

namespace {

namespace fs = std::filesystem;
using namespace lumivard::platform;
using fuzz::Find;
using fuzz::kept;

using tTarget = std::function<int(const std::uint8_t*, std::size_t)>;

/// The file that is being replayed, for the last words of a process that it kills.
char current[4096];

void tellCurrent() {
    constexpr char kWords[] = "\nThe file that was replayed: ";
    [[maybe_unused]] ssize_t written = ::write(2, kWords, sizeof(kWords) - 1);
    written = ::write(2, current, std::strlen(current));
    written = ::write(2, "\n", 1);
}

void onSignal(int signal) {
    tellCurrent();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// Where no sanitizer has taken the signals, they tell the file.
void listen() {
    for (const int signal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL}) {
        if (const auto before = std::signal(signal, onSignal); before != SIG_DFL) std::signal(signal, before);
    }
}

/// Replays files, and gives those that fail, each with the reason.
std::vector<std::string> failures(const std::vector<fs::path>& files, const tTarget& target) {
    std::vector<std::string> failed;
    listen();
    for (const fs::path& file : files) {
        std::strncpy(current, file.c_str(), sizeof(current) - 1);
        const std::vector<std::uint8_t> bytes = fuzz::inputIn(file);
        try {
            target(bytes.data(), bytes.size());
        } catch (const std::exception& thrown) {
            failed.push_back(file.string() + ": " + thrown.what());
        }
    }
    return failed;
}

struct Target {
    const char* name;
    int (*run)(const std::uint8_t*, std::size_t);
};

void PrintTo(const Target& target, std::ostream* out) {
    *out << target.name;
}

class Replay : public testing::TestWithParam<Target> {};

TEST_P(Replay, FindsNothingInTheKeptFiles) {
    const std::vector<fs::path> files = kept(GetParam().name);
    EXPECT_GE(files.size(), 10u) << "the corpus is not there";
    for (const std::string& failure : failures(files, GetParam().run)) ADD_FAILURE() << failure;
}

INSTANTIATE_TEST_SUITE_P(Of, Replay,
                         testing::Values(Target{"document", fuzz::fuzzDocument}, Target{"records", fuzz::fuzzRecords},
                                         Target{"text", fuzz::fuzzText}, Target{"units", fuzz::fuzzUnits},
                                         Target{"paths", fuzz::fuzzPaths}, Target{"pages", fuzz::fuzzPages}),
                         [](const auto& target) { return std::string(target.param.name); });

TEST(ReplayRule, TellsTheFilesThatFail) {
    const std::vector<fs::path> files = kept("units");
    ASSERT_GE(files.size(), 2u);
    unsigned int calls = 0;
    const auto failed = failures(files, [&](const std::uint8_t*, std::size_t) -> int {
        fuzz::require(++calls != 2, "the second one");
        return 0;
    });
    EXPECT_EQ(calls, files.size());
    EXPECT_EQ(failed, std::vector<std::string>{files[1].string() + ": the second one"});
}

TEST(ReplayRule, IsNotSatisfiedByTargetsThatFailAlways) {
    const std::vector<fs::path> files = kept("document");
    const auto failed =
        failures(files, [](const std::uint8_t*, std::size_t) -> int { throw std::logic_error("of no kind"); });
    EXPECT_EQ(failed.size(), files.size());
}

/// Writes as the library does, but for one text, which it puts in the place of another.
class FaultyWriter {
public:
    FaultyWriter(std::string from, std::string to) : _from(std::move(from)), _to(std::move(to)) {}

    std::string operator()(fuzz::IDataStore* store, fuzz::ISchemaLocator* locator) const {
        std::string document = fuzz::written(store, locator);
        const auto found = document.find(_from);
        return found == std::string::npos ? document : document.replace(found, _from.size(), _to);
    }

private:
    std::string _from;
    std::string _to;
};

class RoundTripOracle : public testing::Test {
protected:
    RoundTripOracle() {
        core::io::MemoryReader reader(
            "<group name='a &amp; b'><string name='t' locale='de'>1 &lt; 2 &amp; 3 &gt; 2&#13;\n</string>"
            "<double name='d' units='Meter'>0.5 1.5</double><int32 name='i'><val>7</val></int32>"
            "<binary name='x'>SGVsbG8=</binary></group>");
        fuzz::IXMLFrontEnd::parse(_store.get(), &reader, nullptr, nullptr, nullptr);
    }

    void check(const FaultyWriter& write) { fuzz::checkRoundTrip(_store.get(), nullptr, write); }

private:
    std::unique_ptr<fuzz::IDataStore> _store = stores::memory();
};

TEST_F(RoundTripOracle, AcceptsWhatTheLibraryWrites) {
    EXPECT_NO_THROW(check({"", ""}));
}

TEST_F(RoundTripOracle, NoticesAnEscapeThatIsLeftOut) {
    EXPECT_THROW(check({"a &amp; b", "a & b"}), Find);
    EXPECT_THROW(check({"1 &lt; 2", "1 < 2"}), Find);
    EXPECT_THROW(check({"&#13;", "\r"}), Find);
    EXPECT_THROW(check({"&amp;", "&amp;amp;"}), Find) << "escaped twice";
}

TEST_F(RoundTripOracle, NoticesWhatCannotBeReadOrGrows) {
    EXPECT_THROW(check({" name=\"i\"", ""}), Find) << "an element without a name is a fault";
    EXPECT_THROW(check({"</group>", ""}), Find);
    EXPECT_THROW(check({"0.5 1.5", "0.5 1.5 0.5 1.5"}), Find);
    EXPECT_THROW(check({"name=\"t\"", "name=\"t\" name=\"t\""}), Find);
}

// A writer that leaves something out each time writes the same twice. Whether what is read and written is what was
// there before is asked where the tree is known: `tests/xml/RandomTreeTest.cpp`.
TEST_F(RoundTripOracle, DoesNotSeeWhatIsAlwaysLeftOut) {
    EXPECT_NO_THROW(check({" units=\"Meter\"", ""}));
}

}  // namespace
