#include "tests/fault/disk/Finding.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <ostream>

#include "lumivard/platform/stores.h"
#include "tests/stores/ChildProcess.h"

namespace lumivard::platform::stores::disk {
namespace {

constexpr const char* kNames[] = {"last", "next", "absent", "older", "mixed", "unreadable", "crashed"};

tFound classify(std::uint64_t found, const Workload& model, unsigned int acknowledged) {
    const auto& history = model.history();
    if (found == model.after(acknowledged)) return tFound::kLast;
    if (acknowledged < model.batches() && found == model.after(acknowledged + 1)) return tFound::kNext;
    const auto end = history.begin() + acknowledged;
    return std::find(history.begin(), end, found) != end ? tFound::kOlder : tFound::kMixed;
}

}  // namespace

Finding lookAt(const std::filesystem::path& path, tMode mode, const Workload& model, unsigned int acknowledged) {
    if (!std::filesystem::exists(path)) return {tFound::kAbsent, {}};
    try {
        const auto store = file(path, mode);
        return {classify(fingerprint(*store), model, acknowledged), {}};
    } catch (const StoreError& error) {
        return {tFound::kUnreadable, error.what()};
    }
}

Finding lookFromAfar(const std::filesystem::path& path, tMode mode, const Workload& model, unsigned int acknowledged) {
    constexpr int kFirstStatus = 40;  // sanitizers have others of their own
    ChildProcess child([&](const ChildProcess::Line&) {
        static_cast<void>(std::freopen("/dev/null", "w", stderr));  // its last words are expected
        return kFirstStatus + static_cast<int>(lookAt(path, mode, model, acknowledged).found);
    });
    const int found = child.wait() - kFirstStatus;
    const bool known = found >= 0 && found < static_cast<int>(std::size(kNames));
    return {known ? static_cast<tFound>(found) : tFound::kCrashed, {}};
}

unsigned int Tally::operator[](tFound found) const {
    const auto count = _counts.find(found);
    return count == _counts.end() ? 0 : count->second;
}

unsigned int Tally::all() const {
    unsigned int sum = 0;
    for (const auto& [found, count] : _counts) sum += count;
    return sum;
}

unsigned int Tally::broken() const {
    const Tally& self = *this;
    return self[tFound::kOlder] + self[tFound::kMixed] + self[tFound::kUnreadable] + self[tFound::kCrashed];
}

std::ostream& operator<<(std::ostream& out, tFound found) {
    return out << kNames[static_cast<int>(found)];
}

std::ostream& operator<<(std::ostream& out, const Tally& tally) {
    out << tally.all();
    for (const auto& [found, count] : tally._counts) out << ", " << found << ' ' << count;
    return out;
}

}  // namespace lumivard::platform::stores::disk
