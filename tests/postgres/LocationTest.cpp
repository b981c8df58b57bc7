// What locations of databases say.
#include "stores/postgres/Location.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "stores/engine/EngineError.h"
#include "tests/stores/Records.h"

namespace lumivard::platform::stores {
namespace {

using pq::readLocation;
using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Not;

TEST(Location, NamesTheStoreAndLeavesTheRestToTheDatabase) {
    const auto read = readLocation("postgresql://me:secret@a:1,b:2/db?sslmode=require&store=materials&user=you");
    EXPECT_EQ(read.store, "materials");
    EXPECT_EQ(read.database, "postgresql://me:secret@a:1,b:2/db?sslmode=require&user=you");
    EXPECT_EQ(readLocation("postgresql://a/db?store=x").database, "postgresql://a/db");
    EXPECT_EQ(readLocation("postgresql://a/db").store, "");
}

TEST(Location, IsShownWithoutNamesAndPasswords) {
    EXPECT_EQ(readLocation("postgresql://me:secret@a:1,b/db?password=secret&store=x").shown,
              "postgresql://a:1,b/db?store=x");
    EXPECT_EQ(pq::withoutSecrets("postgresql://me:sec%zzret@a/db?password=secret"), "postgresql://a/db");
    EXPECT_EQ(pq::withoutSecrets("postgresql://me:a/b@c@host/db"), "postgresql://host/db");
    EXPECT_EQ(pq::withoutSecrets("postgresql://"), "postgresql://");
}

TEST(Location, HasOptionsThatCountInPlaceOfTheCallers) {
    const PostgresOptions options{milliseconds(1), milliseconds(2), 3};
    const auto untouched = readLocation("postgresql://a/db?store=x", options).options;
    EXPECT_EQ(untouched.deadline, milliseconds(1));
    EXPECT_EQ(untouched.keep, milliseconds(2));
    EXPECT_EQ(untouched.cache, 3U);
    const auto read = readLocation("postgresql://a/db?deadline=10&store=x&keep=0&cache=65536", options);
    EXPECT_EQ(read.options.deadline, milliseconds(10));
    EXPECT_EQ(read.options.keep, milliseconds(0));
    EXPECT_EQ(read.options.cache, 65536U);
    EXPECT_EQ(read.database, "postgresql://a/db");
}

TEST(Location, MayWriteAnyCharacterOfANameInHexadecimalDigits) {
    EXPECT_EQ(readLocation("postgresql://a/db?store=a%20%26%C3%a4").store, "a &\xC3\xA4");
}

std::string refusal(const std::string& location) {
    return messageOf<EngineError>([&] { readLocation(location); });
}

TEST(LocationRefusal, SaysWhatIsWrong) {
    EXPECT_THAT(refusal("postgres:/a"), HasSubstr("does not begin with postgresql://"));
    EXPECT_THAT(refusal("postgresql://a/db?store="), HasSubstr("the name of the store is empty"));
    EXPECT_THAT(refusal("postgresql://a/db?store"), HasSubstr("the name of the store is empty"));
    EXPECT_THAT(refusal("postgresql://a/db?store=a%0Ab"), HasSubstr("control characters"));
    EXPECT_THAT(refusal("postgresql://a/db?store=" + std::string(201, 'x')), HasSubstr("longer than 200 bytes"));
    EXPECT_THAT(refusal("postgresql://a/db?store=a%2"), HasSubstr("no two hexadecimal digits"));
    EXPECT_THAT(refusal("postgresql://a/db?deadline=soon"), HasSubstr("the location's deadline is no whole number"));
    EXPECT_THAT(refusal("postgresql://a/db?deadline=0"), HasSubstr("the deadline is not above 0"));
    EXPECT_THAT(refusal("postgresql://a/db?keep=-1"), HasSubstr("the location's keep is no whole number"));
    EXPECT_THAT(refusal("postgresql://a/db?keep=99999999999"), HasSubstr("longer than a day"));
    EXPECT_THAT(refusal("postgresql://a/db?cache=99999999999999999999999"), HasSubstr("no whole number"));
}

TEST(LocationRefusal, OfAStoreIsASentenceWithoutSecrets) {
    const auto message = [](const std::string& location) {
        return messageOf<StoreError>([&] { postgres(location, tMode::kRead); });
    };
    EXPECT_EQ(message("postgresql://me:secret@a/db"),
              "Cannot open the store \"postgresql://a/db\": the location does not say which store: its end should be "
              "?store= and a name.");
    for (const char* const location :
         {"postgresql://me:secret@a/db?store=x&odd=1", "postgresql://me:sec%zzret@a/db?store=x",
          "postgresql://me:secret@[a/db?store=x", "postgresql://[a/db?store=x&password=secret"}) {
        SCOPED_TRACE(location);
        EXPECT_THAT(message(location), HasSubstr("the location cannot be understood"));
        EXPECT_THAT(message(location), Not(HasSubstr("sec")));
    }
}

TEST(LocationRefusal, OfTheShortFormOfTheSchemeNamesTheLongOne) {
    const std::string message =
        messageOf<StoreError>([&] { stores::open("postgres://me:secret@a/db?store=x", tMode::kWrite); });
    EXPECT_THAT(message, HasSubstr("postgresql://"));
    EXPECT_THAT(message, Not(HasSubstr("secret")));
}

TEST(Scripts, QuoteWhatTheyAreGiven) {
    EXPECT_EQ(postgresCreation("postgresql://a/db?store=it%27s").back(), "INSERT INTO lvp_store(name) VALUES('it''s')");
    EXPECT_EQ(postgresCreation("postgresql://a/db?store=a%5Cb%27").back(),
              "INSERT INTO lvp_store(name) VALUES(E'a\\\\b''')");
    EXPECT_EQ(postgresRights("a\"b", tMode::kRead).front(),
              "GRANT SELECT ON lvp_store, lvp_record, lvp_change TO \"a\"\"b\"");
    EXPECT_EQ(postgresRights("a", tMode::kWrite).size(), 4U);
    EXPECT_THROW(postgresCreation("postgresql://a/db"), StoreError);
    EXPECT_THROW(postgresRemoval("postgresql://a/db"), StoreError);
}

}  // namespace
}  // namespace lumivard::platform::stores
