#include "stores/core/PrivateBytes.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace lumivard::platform::stores {
namespace {

std::string textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

// Takes in what a change of content has done to the run since.
void PrivateBytes::tRun::learn(std::span<const std::byte> contents) {
    for (std::size_t i = 0; i < own.size() && position + i < contents.size(); ++i) {
        const auto byte = static_cast<char>(contents[position + i]);
        if (byte != own[i]) stored[i] = own[i] = byte;
    }
}

// A run that there is already is made as long as it takes to hold both. In it the store has what it had, or, beyond the
// run of before, what the record has.
void PrivateBytes::note(unsigned int offset, std::span<const std::byte> contents, unsigned int position,
                        const void* data, unsigned int size) {
    const auto known = _runs.find(offset);
    tRun* const before = known != _runs.end() && known->second.end() <= contents.size() ? &known->second : nullptr;
    std::uint64_t begin = position;
    std::uint64_t end = begin + size;
    if (before) {
        before->learn(contents);
        begin = std::min<std::uint64_t>(begin, before->position);
        end = std::max(end, before->end());
    }
    const std::string whole = textOf(contents.subspan(begin, end - begin));
    tRun run{static_cast<unsigned int>(begin), whole, whole};
    if (before) run.stored.replace(before->position - begin, before->stored.size(), before->stored);
    run.own.replace(position - begin, size, static_cast<const char*>(data), size);
    if (run.own == run.stored) {
        _runs.erase(offset);  // it has come back to what is stored: nothing was noted
    } else {
        _runs.insert_or_assign(offset, std::move(run));
    }
}

std::optional<std::string> PrivateBytes::stored(unsigned int offset, std::span<const std::byte> contents) {
    const auto known = _runs.find(offset);
    if (known == _runs.end() || known->second.end() > contents.size()) return std::nullopt;
    tRun& run = known->second;
    run.learn(contents);
    std::string bytes = textOf(contents);
    bytes.replace(run.position, run.stored.size(), run.stored);
    return bytes;
}

void PrivateBytes::restore(unsigned int offset, RecordHeap& heap, RecordBytes& contents) {
    const auto known = _runs.find(offset);
    if (known == _runs.end()) return;
    tRun& run = known->second;
    if (run.end() > contents.size()) return forget(offset);
    std::string stored = textOf(contents.view().subspan(run.position, run.stored.size()));
    heap.overwrite(contents, run.position, run.own.data(), static_cast<unsigned int>(run.own.size()));
    run.stored = std::move(stored);
}

}  // namespace lumivard::platform::stores
