#include "tests/check/PlaceFaults.h"

#include <vector>

#include "tests/check/Walks.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support {

std::string plantPlaces(IDataStore& store, std::mt19937_64& random, unsigned int most) {
    std::vector<unsigned int> items;
    std::vector<unsigned int> sets{0};
    for (const unsigned int item : walks::byCursors(store)) {
        items.push_back(item);
        if (stored::word(&store, item, stored::kChildren) != stored::BADOFF) sets.push_back(item);
    }
    std::string words;
    for (std::uint64_t i = random() % most + 1; i > 0; --i) {
        const unsigned int set = sets[random() % sets.size()];
        const unsigned int item = items[random() % items.size()];
        const unsigned int list = stored::word(&store, item, stored::kChildren);
        if (random() % 3 == 0 && stored::byte(&store, item, 0) != 1 && list != stored::BADOFF) {
            stored::putWord(&store, set, stored::kChildren, list);
            words += "record " + std::to_string(set) + " has the list of record " + std::to_string(item) + "\n";
        } else {
            stored::enlist(&store, set, item);
            if (random() % 2 == 0) stored::putWord(&store, item, stored::kParent, set);
            words += "record " + std::to_string(set) + " has record " + std::to_string(item) + "\n";
        }
    }
    return words;
}

}  // namespace lumivard::platform::test_support
