// What the core does for a store that others write to as well.
#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "stores/core/Core.h"

namespace lumivard::platform::stores {

using tPlace = RecordSlot::tPlace;

// What others have changed is forgotten, but for what was known, and comes with the news.
void Core::_renew(const Engine::News& news) noexcept {
    std::vector<const Engine::Record*> known;
    try {
        for (const Engine::Record& record : news.records) {
            const RecordSlot* const slot = _records.find(record.offset);
            if (slot && slot->place == tPlace::kHere) known.push_back(&record);
        }
    } catch (const std::bad_alloc&) {
        known.clear();
    }
    for (const unsigned int offset : news.offsets) _records.forget(offset);
    try {
        for (const Engine::Record* const record : known) _putIn(*record);
    } catch (const std::bad_alloc&) {
        // They come when they are asked for.
    }
}

// What was written without a guard can be stored when nobody else has got at it, nor taken the offsets of new records.
bool Core::_conflictsWith(const Engine::News& news) {
    if (!_hasChanges()) return false;
    if (news.everything || _versionChanged || news.header.extent != _storedExtent) return true;
    return std::any_of(news.offsets.begin(), news.offsets.end(), [this](unsigned int offset) {
        const RecordSlot* slot = _records.find(offset);
        return slot && slot->changed;
    });
}

// Back to what is stored.
void Core::_forgetChanges() noexcept {
    for (const unsigned int offset : _changed) {
        _records.forget(offset);
        if (offset >= _storedExtent) _private.forget(offset);  // which somebody else's record may have
    }
    _changed.clear();
    _touched.clear();
    _versionChanged = false;
    _extent = _storedExtent;
    ++_contentChanges;
}

// The end of a guard cannot throw.
void Core::_endTransaction() noexcept {
    if (!_hasChanges() || _failure) return;
    try {
        _commit();
        _settle();
    } catch (...) {
        if (!_failure) _loss = std::current_exception();
    }
}

void Core::_flushShared() {
    const bool alone = !_holdsGuard();
    const std::unique_ptr<ILock> guard(alone ? lock() : nullptr);
    _commit();
    _settle();
    if (alone) return;
    try {
        _hearNews();
    } catch (...) {
        _guardLoss = std::current_exception();  // what was to be stored is stored: who needs the guard is told
    }
}

// Once.
void Core::_tellLoss() {
    if (_loss) std::rethrow_exception(std::exchange(_loss, nullptr));
}

RecordSlot* Core::_bringInShared(unsigned int offset) {
    if (_guardLoss) std::rethrow_exception(_guardLoss);
    _ask({"read", offset},
         [&] { _engine->bring(std::span(&offset, 1), [this](const Engine::Record& record) { _putIn(record); }); });
    RecordSlot& slot = _records.at(offset);
    slot.used = true;
    if (slot.place == tPlace::kHere) return &slot;
    _private.forget(offset);
    slot.place = tPlace::kGone;
    return nullptr;
}

// A record as it is stored, unless it is known.
void Core::_putIn(const Engine::Record& record) {
    if (record.offset >= _extent) return;
    RecordSlot& slot = _records.at(record.offset);
    if (slot.place != tPlace::kAway) return;
    if (record.gone) {
        _private.forget(record.offset);
        slot.place = tPlace::kGone;
        return;
    }
    _records.heap().assign(slot.bytes, record.bytes.data(), static_cast<unsigned int>(record.bytes.size()));
    _private.restore(record.offset, _records.heap(), slot.bytes);
    slot.place = tPlace::kHere;
    _cached += RecordTable::weight(slot.bytes);
}

// Records that were asked for lately stay, so that it is not done at every guard there are some to go before.
void Core::_shrink() noexcept {
    _cached = _records.shrink(_cache - _cache / 4);
}

void Core::expect(const void* offsets, unsigned int count) {
    if (!_shared || count < 2 || !_holdsGuard()) return;
    std::vector<unsigned int> away(count);
    std::memcpy(away.data(), offsets, std::size_t{count} * sizeof(unsigned int));
    std::erase_if(away, [this](unsigned int offset) {
        if (offset >= _extent) return true;
        const RecordSlot* const slot = _records.find(offset);
        return slot && slot->place != tPlace::kAway;
    });
    if (away.size() < 2) return;
    _ask({"read records of"}, [&] { _engine->bring(away, [this](const Engine::Record& record) { _putIn(record); }); });
}

// Without a guard: in a transaction for this record alone, whose news may have moved all that is known.
RecordSlot* Core::_bringInAlone(unsigned int offset) {
    const std::lock_guard held(_guard);
    _hearNews();
    _owner.store(std::this_thread::get_id(), std::memory_order_relaxed);
    const auto end = [this] {
        _owner.store({}, std::memory_order_relaxed);
        _engine->guardReleased();
    };
    try {
        RecordSlot* const found = offset < _extent ? _bringIn(offset, _records.find(offset)) : nullptr;
        end();
        return found;
    } catch (...) {
        end();
        throw;
    }
}

// Where a long record differs from what is stored, so that the rest of it need not be stored again. One that has become
// short is stored whole, whatever becomes of it after that.
void Core::_touch(unsigned int offset, const RecordSlot& slot, unsigned long long from, unsigned long long to) {
    if (!_shared) return;
    if (slot.bytes.size() <= Engine::kShort) {
        _touched.erase(offset);
    } else if (!slot.changed) {
        _touched.insert_or_assign(offset, tRange{from, to});
    } else if (const auto known = _touched.find(offset); known != _touched.end()) {
        known->second = {std::min(known->second.from, from), std::max(known->second.to, to)};
    }
}

void Core::_touchDifference(unsigned int offset, const RecordSlot& slot, const void* data, unsigned int size) {
    if (!_shared || slot.bytes.size() <= Engine::kShort) return _touch(offset, slot, 0, UINT64_MAX);
    const auto before = slot.bytes.view();
    const std::span after(static_cast<const std::byte*>(data), size);
    const auto from = std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first - before.begin();
    unsigned long long to = UINT64_MAX;
    if (before.size() == after.size()) {
        to = static_cast<unsigned long long>(
            before.rend() - std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend()).first);
    }
    _touch(offset, slot, static_cast<unsigned long long>(from), to);
}

void Core::_leaveOutPrivate() {
    _patched.clear();
    if (!_shared) return;
    for (const unsigned int offset : _changed) {
        const RecordSlot& slot = *_records.find(offset);
        if (slot.place == tPlace::kGone) continue;
        if (auto bytes = _private.stored(offset, slot.bytes.view())) _patched.emplace(offset, std::move(*bytes));
    }
}

}  // namespace lumivard::platform::stores
