// Stores of hostile records without number: what the fuzzer of records kept, changed at random, where each record ends
// right before memory that nobody may touch.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <new>
#include <random>
#include <string>
#include <vector>

#include <sys/mman.h>

#include "tests/fuzz/Confined.h"
#include "tests/fuzz/KeptFiles.h"
#include "tests/fuzz/Targets.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"

namespace {

using namespace lumivard::platform::fuzz;
namespace test_support = lumivard::platform::test_support;
using tInput = std::vector<std::uint8_t>;

/// Each of its inputs follows from the seed and a number alone.
class Mutator {
public:
    explicit Mutator(std::uint64_t seed) : _seed(seed) {
        for (const auto& file : kept("records")) _kept.push_back(inputIn(file));
    }

    std::size_t kinds() const { return _kept.size(); }

    tInput input(std::uint64_t number) {
        _random.seed(_seed + number);
        tInput bytes = any();
        for (std::size_t changes = 1 + below(8); changes > 0; --changes) change(bytes);
        if (bytes.empty()) bytes.push_back(0);
        // All that clients can do takes thirty times as long as one kind of it.
        const std::size_t deed = below(64);
        bytes[0] = static_cast<std::uint8_t>(deed == 0 ? 7 : deed % 7 + (deed & 8));
        return bytes;
    }

private:
    std::size_t below(std::size_t count) { return count == 0 ? 0 : _random() % count; }
    const tInput& any() { return _kept[below(_kept.size())]; }

    void change(tInput& bytes) {
        constexpr std::uint8_t kTelling[] = {0, 1, 2, 3, 4, 5, 8, 13, 14, 0x7F, 0x80, 0xFE, 0xFF};
        constexpr std::size_t kLongest = 400;
        const std::size_t at = below(bytes.size());
        const auto position = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const auto some = [&](const tInput& from, std::size_t first) {
            return from.begin() + static_cast<std::ptrdiff_t>(std::min(from.size(), first + 1 + below(16)));
        };
        const tInput& other = any();
        const std::size_t first = below(other.size());
        switch (bytes.empty() ? 4 : below(5)) {
            case 0:
                bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ 1 << below(8));
                break;
            case 1:
                bytes[at] = kTelling[below(std::size(kTelling))];
                break;
            case 2:
                bytes[at] = static_cast<std::uint8_t>(_random());
                break;
            case 3:
                bytes.erase(position, some(bytes, at));
                break;
            default:
                if (bytes.size() < kLongest) {
                    bytes.insert(position, other.begin() + static_cast<std::ptrdiff_t>(first), some(other, first));
                }
        }
    }

    std::uint64_t _seed;
    std::mt19937_64 _random;
    std::vector<tInput> _kept;
};

/// A number that a process which ended has left behind.
class LastNumber {
public:
    LastNumber() {
        void* const page = ::mmap(nullptr, sizeof *_number, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (page == MAP_FAILED) throw std::bad_alloc();
        _number = new (page) std::atomic<std::uint64_t>(0);
    }
    ~LastNumber() { ::munmap(_number, sizeof *_number); }
    LastNumber(const LastNumber&) = delete;
    LastNumber& operator=(const LastNumber&) = delete;

    std::atomic<std::uint64_t>& operator*() { return *_number; }

private:
    std::atomic<std::uint64_t>* _number = nullptr;
};

TEST(MutatedRecords, AreNeverReadBehindTheirEndOrWithoutEnd) {
    constexpr std::size_t kMemory = 256U << 20;
    constexpr unsigned int kSeconds = 6000;
    constexpr std::uint64_t kOneProcess = 100'000;
    const std::uint64_t times = test_support::effort("LVP_MUTATED_RECORDS", test_support::usually(5000));
    Mutator mutator(test_support::seed());
    ASSERT_GE(mutator.kinds(), 10U) << "the corpus is not there";
    LastNumber last;
    for (std::uint64_t done = 0; done < times; done += kOneProcess) {
        const auto run = [&] {
            for (*last = done; *last < std::min(times, done + kOneProcess); ++*last) {
                const tInput input = mutator.input(*last);
                fuzzRecords(input.data(), input.size());
            }
            return std::string();
        };
        const Outcome outcome = confined(run, kMemory, kSeconds);
        ASSERT_EQ(outcome.end, Outcome::kEnded) << "with input " << *last;
        ASSERT_EQ(outcome.words, "") << "with input " << *last;
    }
}

}  // namespace
