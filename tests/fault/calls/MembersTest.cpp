#include "tests/fault/calls/Members.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "tests/fault/calls/Operation.h"

namespace {

using namespace lumivard::platform::test_support::fault;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// What a caller implements, and the library calls.
const std::set<std::string> kOfCallers = {
    "IErrorReporter::located(unsigned long , unsigned long )",
    "IErrorReporter::malformed(const WideString& )",
    "IErrorReporter::report(const WideString& message)",
    "IErrorReporter::~IErrorReporter()",
    "IURIResolver::~IURIResolver()",
    "IVisitor::container(const tContainer& item)",
    "IVisitor::leave()",
    "IVisitor::primitive(const tPrimitive& item)",
    "IVisitor::root(const tRoot& item)",
    "IVisitor::table(const tTable& item)",
    "IVisitor::text(std::wstring_view locale, std::wstring_view text)",
    "IVisitor::unitDefault(units::tUnit units, metadata::tValue valuetype)",
    "IVisitor::~IVisitor()",
};

/// Functions that are given no store, with what is known of each all the same.
const std::map<std::string, std::string> kWithoutAStore = {
    {"check::rules()", "a table of texts"},
    {"stores::compact(const std::filesystem::path& path, const FileOptions& options = {})",
     "of a file: FailingDiskTest.cpp, KilledWriterTest.cpp"},
    {"stores::discard(IDataStore& store)", "calls nothing of it"},
    {"stores::file(const std::filesystem::path& path, tMode mode)",
     "of a file: FailingDiskTest.cpp, FileAllocationsTest.cpp"},
    {"stores::file(const std::filesystem::path& path, tMode mode, const FileOptions& options)", "what the other calls"},
    {"stores::memory()", "there is no store before it"},
    {"stores::open(const std::string& location, tMode mode)", "chooses between `memory` and `file`"},
    {"stores::open(const std::string& location, tMode mode, const FileOptions& options)", "what the other calls"},
    {"stores::postgres(const std::string& location, tMode mode, const PostgresOptions& options = {})",
     "of a database: tests/postgres"},
    {"stores::postgresCreation(const std::string& location)", "of a database"},
    {"stores::postgresRemoval(const std::string& location)", "of a database"},
    {"stores::postgresRights(const std::string& role, tMode mode)", "of a database"},
    {"stores::postgresStores(const std::string& location)", "of a database"},
    {"stores::provide(const std::string& prefix, tOpener opener)", "of a location"},
    {"stores::runInPostgres(const std::string& location, const std::vector<std::string>& statements)", "of a database"},
    {"stores::verify(const std::filesystem::path& path, bool values, const FileOptions& options = {})",
     "of a file: FailingDiskTest.cpp"},
    {"units::group(tUnit unit)", "arithmetic"},
};

std::set<std::string> without(std::set<std::string> all, const std::set<std::string>& others) {
    for (const std::string& other : others) all.erase(other);
    return all;
}

/// What no operation tries, and for a reason.
std::set<std::string> excepted() {
    std::set<std::string> members = kOfCallers;
    for (const auto& [function, reason] : kWithoutAStore) members.insert(function);
    return members;
}

std::set<std::string> tried() {
    std::set<std::string> members;
    for (const tOperation& operation : operations()) members.insert(operation.member);
    return members;
}

TEST(Members, AreAllTried) {
    EXPECT_THAT(without(without(publicMembers(), tried()), excepted()), IsEmpty());
}

TEST(Members, AreTriedUnderTheirNames) {
    EXPECT_THAT(without(tried(), publicMembers()), IsEmpty());
    EXPECT_THAT(without(excepted(), publicMembers()), IsEmpty());
}

TEST(Members, OfAHeaderAreFound) {
    EXPECT_THAT(
        membersOf("class LVP_EXPORT INew {\npublic:\n    /// virtual void no() = 0;\n    virtual ~INew() = default;\n"
                  "    virtual int\n        fresh(int a) const = 0;\n    static INew* to(INew* other);\n};"),
        ElementsAre("INew::fresh(int a) const", "INew::to(INew* other)", "INew::~INew()"));
}

TEST(Members, AreFunctionsToo) {
    EXPECT_THAT(
        membersOf("namespace a::b {\nusing c::D;\nclass I;\nLVP_EXPORT std::vector<int>& first(const D& d = {});\n"
                  "constexpr int second(int a) {\n    return third(a);\n}\nextern const int kFourth;\n}"),
        ElementsAre("b::first(const D& d = {})", "b::second(int a)"));
}

TEST(Members, AreNotWhatOthersAreMadeOf) {
    EXPECT_THAT(
        membersOf("namespace a {\nnamespace detail {\nclass B { static void c(); };\nvoid d();\n}\nvoid e();\n}"),
        ElementsAre("a::e()"));
}

/// What the first test does with a member that nobody has added to the table.
TEST(Members, ThatAreNewAreMissed) {
    std::set<std::string> members = publicMembers();
    members.merge(membersOf("class LVP_EXPORT IContainer { public: virtual void fresh() = 0; };"));
    members.merge(membersOf("namespace check { void fresh(int a); }"));
    EXPECT_THAT(without(without(members, tried()), excepted()),
                ElementsAre("IContainer::fresh()", "check::fresh(int a)"));
    EXPECT_THAT(publicMembers(), Not(Contains("IContainer::fresh()")));
}

/// Each case has a name of its own.
TEST(Members, HaveCasesOfDifferentNames) {
    std::set<std::string> names;
    for (const tOperation& operation : operations()) EXPECT_TRUE(names.insert(operation.name).second) << operation.name;
}

}  // namespace
