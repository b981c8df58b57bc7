#include "tests/postgres/load/Ledger.h"

#include <algorithm>
#include <numeric>

#include "lumivard/platform/stores.h"

namespace lumivard::platform::stores::load {
namespace {

// The records: how many writers there are, the tallies, and a counter and a journal for each writer.
constexpr unsigned int kWriters = 0;
constexpr unsigned int kTallies[] = {1, 2, 3};
constexpr unsigned int kFirst = 4;

// How often the number of a record stands in it, by the record: the last tally is longer than a row.
constexpr std::size_t kTallyWords[] = {1, 40, 1100};
constexpr std::size_t kCounterWords = 40;

unsigned int counterOf(unsigned int writer) {
    return kFirst + 2 * writer;
}

unsigned int journalOf(unsigned int writer) {
    return counterOf(writer) + 1;
}

unsigned int bytesOf(const std::vector<std::uint64_t>& words) {
    return static_cast<unsigned int>(words.size() * sizeof(std::uint64_t));
}

}  // namespace

void Ledger::create(unsigned int writers) {
    const auto make = [this](std::size_t count, std::uint64_t number) {
        const std::vector<std::uint64_t> words(count, number);
        _store.create(words.data(), bytesOf(words));
    };
    make(1, writers);
    for (const std::size_t count : kTallyWords) make(count, 0);
    for (unsigned int writer = 0; writer < writers; ++writer) {
        make(kCounterWords, 0);
        make(0, 0);
    }
}

Ledger::tTotals Ledger::look() {
    tTotals totals;
    totals.tally = _number(kTallies[0]);
    for (const unsigned int offset : kTallies) {
        const std::uint64_t number = _number(offset);
        if (number != totals.tally) {
            throw Fault("half a flush: the tallies are " + std::to_string(totals.tally) + " and " +
                        std::to_string(number));
        }
    }
    const std::uint64_t writers = _number(kWriters);
    for (unsigned int writer = 0; writer < writers; ++writer) totals.counters.push_back(_number(counterOf(writer)));
    const auto sum = std::accumulate(totals.counters.begin(), totals.counters.end(), std::uint64_t{0});
    if (sum != totals.tally) {
        throw Fault("a lost update or half a flush: the tally is " + std::to_string(totals.tally) +
                    ", and the counters are " + std::to_string(sum) + " together");
    }
    return totals;
}

void Ledger::step(unsigned int writer, const tTotals& before) {
    _store.size(journalOf(writer));  // brings it, so that nothing has been changed yet where that fails
    try {
        const std::uint64_t number = before.counters.at(writer) + 1;
        _store.append(journalOf(writer), &number, sizeof number);
        _put(counterOf(writer), number);
        for (const unsigned int offset : kTallies) _put(offset, before.tally + 1);
    } catch (...) {
        // Else the end of the guard stores what has been done of it.
        stores::discard(_store);
        throw;
    }
}

void Ledger::requireJournal(unsigned int writer, std::uint64_t steps) {
    const std::vector<std::uint64_t> journal = _words(journalOf(writer));
    const std::string whose = "the journal of writer " + std::to_string(writer);
    if (journal.size() != steps) {
        throw Fault(whose + " has " + std::to_string(journal.size()) + " steps in place of " + std::to_string(steps));
    }
    for (std::size_t i = 0; i < journal.size(); ++i) {
        if (journal[i] == i + 1) continue;
        throw Fault(whose + " has " + std::to_string(journal[i]) + " in place of " + std::to_string(i + 1));
    }
}

std::vector<std::uint64_t> Ledger::_words(unsigned int offset) {
    std::vector<std::uint64_t> words(_store.size(offset) / sizeof(std::uint64_t));
    _store.read(offset, words.data(), bytesOf(words));
    return words;
}

std::uint64_t Ledger::_number(unsigned int offset) {
    const std::vector<std::uint64_t> words = _words(offset);
    if (words.empty()) throw Fault("record " + std::to_string(offset) + " is gone");
    if (std::any_of(words.begin(), words.end(), [&](std::uint64_t word) { return word != words.front(); })) {
        throw Fault("half a flush: record " + std::to_string(offset) + " holds different numbers");
    }
    return words.front();
}

void Ledger::_put(unsigned int offset, std::uint64_t number) {
    const std::vector<std::uint64_t> words(_store.size(offset) / sizeof number, number);
    _store.update(offset, words.data(), bytesOf(words), true);
}

}  // namespace lumivard::platform::stores::load
