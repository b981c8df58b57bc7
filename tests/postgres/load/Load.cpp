// What uses a store in a database while servers come and go (scripts/test-postgres.sh), through what is installed
// alone:
//
//   create LOCATION WRITERS                      makes the store, with a ledger for so many writers
//   write LOCATION FOLDER NUMBER STEPS           the writer of that number, from 0; 0 steps: until SIGTERM
//   read LOCATION FOLDER NUMBER                  a reader, until SIGTERM
//   check LOCATION STORE FOLDER SINCE            compares the ledger with what the writers have noted
//   client LOCATION r|w                          takes orders from the standard input
//
// The status is 1 where something was not as it is promised, and 2 after any other error.
#include <unistd.h>

#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "lumivard/platform/stores.h"
#include "lumivard/platform/stores/Postgres.h"
#include "tests/postgres/load/Check.h"
#include "tests/postgres/load/Client.h"
#include "tests/postgres/load/Ledger.h"
#include "tests/postgres/load/Workers.h"

namespace {

using namespace lumivard::platform::stores;

// Nothing that is left behind lives longer, in seconds.
constexpr unsigned int kLongestLife = 3600;

unsigned int numberFrom(const std::string& text) {
    return static_cast<unsigned int>(std::stoul(text));
}

int run(const std::vector<std::string>& arguments) {
    const std::string& order = arguments.at(0);
    const std::string& location = arguments.at(1);
    if (order == "create") {
        runInPostgres(location, postgresCreation(location));
        const auto store = postgres(location, tMode::kWrite);
        load::Ledger(*store).create(numberFrom(arguments.at(2)));
        store->flush();
    } else if (order == "write") {
        load::write({location, arguments.at(2), numberFrom(arguments.at(3)), std::stoull(arguments.at(4))});
    } else if (order == "read") {
        load::read({location, arguments.at(2), numberFrom(arguments.at(3)), 0});
    } else if (order == "check") {
        load::check(location, arguments.at(2), arguments.at(3), std::stoull(arguments.at(4)), std::cout);
    } else if (order == "client") {
        load::serve(location, arguments.at(2) == "r" ? tMode::kRead : tMode::kWrite, std::cin, std::cout);
    } else {
        std::cerr << "There is no such order: " << order << "\n";
        return 2;
    }
    return 0;
}

}  // namespace

int main(int count, char** words) {
    ::alarm(kLongestLife);
    try {
        return run({words + 1, words + count});
    } catch (const load::Fault& fault) {
        std::cerr << "FAULT: " << fault.what() << std::endl;
        return 1;
    } catch (const std::exception& error) {
        std::cerr << "error: " << error.what() << std::endl;
        return 2;
    }
}
