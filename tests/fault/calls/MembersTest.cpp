#include "tests/fault/calls/Members.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
};

std::set<std::string> without(std::set<std::string> all, const std::set<std::string>& others) {
    for (const std::string& other : others) all.erase(other);
    return all;
}

std::set<std::string> tried() {
    std::set<std::string> members;
    for (const tOperation& operation : operations()) members.insert(operation.member);
    return members;
}

TEST(Members, AreAllTried) {
    EXPECT_THAT(without(without(publicMembers(), tried()), kOfCallers), IsEmpty());
}

TEST(Members, AreTriedUnderTheirNames) {
    EXPECT_THAT(without(tried(), publicMembers()), IsEmpty());
    EXPECT_THAT(without(kOfCallers, publicMembers()), IsEmpty());
}

TEST(Members, OfAHeaderAreFound) {
    EXPECT_THAT(
        membersOf("class LVP_EXPORT INew {\npublic:\n    /// virtual void no() = 0;\n    virtual ~INew() = default;\n"
                  "    virtual int\n        fresh(int a) const = 0;\n    static INew* to(INew* other);\n};"),
        ElementsAre("INew::fresh(int a) const", "INew::to(INew* other)", "INew::~INew()"));
}

/// What the first test does with a member that nobody has added to the table.
TEST(Members, ThatAreNewAreMissed) {
    std::set<std::string> members = publicMembers();
    members.merge(membersOf("class LVP_EXPORT IContainer { public: virtual void fresh() = 0; };"));
    EXPECT_THAT(without(without(members, tried()), kOfCallers), ElementsAre("IContainer::fresh()"));
    EXPECT_THAT(publicMembers(), Not(Contains("IContainer::fresh()")));
}

/// Each case has a name of its own.
TEST(Members, HaveCasesOfDifferentNames) {
    std::set<std::string> names;
    for (const tOperation& operation : operations()) EXPECT_TRUE(names.insert(operation.name).second) << operation.name;
}

}  // namespace
