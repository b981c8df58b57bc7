#include "stores/core/Core.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores {
namespace {

using tPlace = RecordSlot::tPlace;

bool equal(std::span<const std::byte> a, std::span<const std::byte> b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace

/// Holds the guard of a core.
class Core::Guard final : public IDataStore::ILock {
public:
    explicit Guard(Core& core) : _core(core) { _core._takeGuard(); }
    ~Guard() override { _core._giveGuard(); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

private:
    Core& _core;
};

std::string Core::Attempt::text() const {
    if (offset == BADOFF) return verb;
    return std::string(verb) + " record " + std::to_string(offset) + " of";
}

template <class Question>
auto Core::_ask(const Attempt& attempt, Question question) const {
    try {
        return question();
    } catch (const EngineError& error) {
        throw failure(attempt.text(), _name, error.what());
    }
}

Core::Core(std::string name, std::unique_ptr<Engine> engine, tMode mode)
    : _name(std::move(name)), _mode(mode), _engine(std::move(engine)) {
    if (!_engine) return;
    const Engine::Header header = _ask({"open"}, [&] { return _engine->header(); });
    _extent = header.extent;
    _version = header.version;
}

Core::~Core() {
    try {
        _close();
    } catch (...) {
        // Nobody is left to be told: who needs to know has flushed before.
    }
}

core::storage::datastore::IDataStore::ILock* Core::lock() {
    return new Guard(*this);
}

void Core::flush() {
    if (_failure) std::rethrow_exception(_failure);
    if (!_hasChanges()) return;
    _commit(_changes());
    _settle();
}

void Core::version(unsigned int number) {
    _refuseChange({"set the version of"});
    if (number == _version) return;
    _version = number;
    _versionChanged = _engine != nullptr;
}

unsigned int Core::version() const {
    return _version;
}

unsigned long long Core::extent() {
    return _extent;
}

unsigned int Core::create(const void* data, unsigned int size) {
    const Attempt attempt{"create a record in"};
    _refuseChange(attempt);
    _refuseLength(attempt, size);
    if (_extent >= BADOFF) {
        throw failure(attempt.text(), _name, "all of its 4294967295 offsets have been handed out");
    }
    const auto offset = static_cast<unsigned int>(_extent);
    RecordSlot& slot = _records.at(offset);
    _makeRoom(_changed);
    slot.bytes.assign(data, size);
    slot.place = tPlace::kHere;
    ++_extent;
    _noteContent(offset, slot);
    return offset;
}

void Core::append(unsigned int offset, const void* data, unsigned int size) {
    const Attempt attempt{"append to", offset};
    _refuseChange(attempt);
    RecordSlot& slot = _existing(attempt);
    _refuseLength(attempt, std::uint64_t{slot.bytes.size()} + size);
    _makeRoom(_changed);
    slot.bytes.append(data, size);
    _noteContent(offset, slot);
}

void Core::update(unsigned int offset, const void* data, unsigned int size, bool changed) {
    const Attempt attempt{"change", offset};
    if (changed) _refuseChange(attempt);
    // Objects may still count themselves on a record that the writing process has erased since.
    if (!changed && _mode == tMode::kRead && !_find(offset)) return;
    RecordSlot& slot = _existing(attempt);
    _refuseLength(attempt, size);
    _makeRoom(changed ? _changed : _counted);
    slot.bytes.assign(data, size);
    changed ? _noteContent(offset, slot) : _noteBookkeeping(offset, slot);
}

unsigned int Core::size(unsigned int offset) {
    const RecordSlot* slot = _find(offset);
    return slot ? slot->bytes.size() : 0;
}

void Core::read(unsigned int offset, void* buffer, unsigned int size) {
    read(offset, 0, buffer, size);
}

unsigned int Core::read(unsigned int offset, unsigned int position, void* buffer, unsigned int size) {
    const RecordSlot* slot = _find(offset);
    if (!slot || position >= slot->bytes.size()) return 0;
    const unsigned int count = std::min(size, slot->bytes.size() - position);
    if (count != 0) std::memcpy(buffer, slot->bytes.view().data() + position, count);
    return count;
}

void Core::erase(unsigned int offset) {
    const Attempt attempt{"erase", offset};
    _refuseChange(attempt);
    RecordSlot& slot = _existing(attempt);
    _makeRoom(_changed);
    slot.bytes.clear();
    slot.place = tPlace::kGone;
    _noteContent(offset, slot);
}

void Core::_takeGuard() {
    std::unique_lock held(_guard);
    if (_depth == 0 && _engine) {
        const auto news = _ask({"take the guard of"}, [&] { return _engine->guardTaken(); });
        if (news) _receive(*news);
    }
    ++_depth;
    held.release();
}

void Core::_giveGuard() noexcept {
    if (--_depth == 0 && _engine) _engine->guardReleased();
    _guard.unlock();
}

void Core::_receive(const Engine::News& news) {
    if (news.everything) {
        _records.clear();
        _changed.clear();
        _counted.clear();
    }
    for (const unsigned int offset : news.offsets) _records.forget(offset);
    _extent = news.header.extent;
    _version = news.header.version;
}

// The slot of a record that exists, brought in if it was not asked for before; null for any other offset. An offset
// that a damaged record names costs no slot.
RecordSlot* Core::_find(unsigned int offset) {
    if (offset >= _extent) return nullptr;
    RecordSlot* slot = _records.find(offset);
    if (!slot || slot->place == tPlace::kAway) slot = _bringIn(offset);
    return slot && slot->place == tPlace::kHere ? slot : nullptr;
}

RecordSlot& Core::_existing(const Attempt& attempt) {
    RecordSlot* slot = _find(attempt.offset);
    if (!slot) throw failure(attempt.text(), _name, "there is no such record");
    return *slot;
}

RecordSlot* Core::_bringIn(unsigned int offset) {
    if (!_engine) return nullptr;
    const auto bytes = _ask({"read", offset}, [&] { return _engine->load(offset); });
    if (!bytes) return nullptr;
    RecordSlot& slot = _records.at(offset);
    slot.bytes.assign(bytes->data(), static_cast<unsigned int>(bytes->size()));
    slot.place = tPlace::kHere;
    return &slot;
}

void Core::_refuseChange(const Attempt& attempt) const {
    if (_mode == tMode::kRead) throw failure(attempt.text(), _name, "it was opened for reading only");
    if (_failure) std::rethrow_exception(_failure);
}

void Core::_refuseLength(const Attempt& attempt, unsigned long long size) const {
    const unsigned int longest = _engine ? _engine->longestRecord() : UINT32_MAX;
    if (size <= longest) return;
    throw failure(attempt.text(), _name, "it would become longer than " + std::to_string(longest) + " bytes");
}

// Lets the next note be taken without memory of its own.
void Core::_makeRoom(std::vector<unsigned int>& list) const {
    if (_engine && list.size() == list.capacity()) list.reserve(std::max<std::size_t>(64, list.size() * 2));
}

void Core::_noteContent(unsigned int offset, RecordSlot& slot) noexcept {
    if (!_engine || slot.changed) return;
    slot.changed = true;
    _changed.push_back(offset);
}

void Core::_noteBookkeeping(unsigned int offset, RecordSlot& slot) noexcept {
    if (!_engine || slot.counted) return;
    slot.counted = true;
    _counted.push_back(offset);
}

bool Core::_hasChanges() const {
    return !_changed.empty() || _versionChanged;
}

// The changes of content, as the records are now.
Engine::Batch Core::_changes() {
    std::sort(_changed.begin(), _changed.end());
    Engine::Batch batch{{_extent, _version}, {}};
    batch.changes.reserve(_changed.size());
    for (const unsigned int offset : _changed) {
        const RecordSlot& slot = _records.at(offset);
        batch.changes.push_back({offset, slot.place == tPlace::kGone, slot.bytes.view()});
    }
    return batch;
}

// Adds the records that only bookkeeping has touched and that do not have their stored bytes again by now: a store that
// was walked counts every record up and down, and is left as it was.
void Core::_addBookkeeping(Engine::Batch& batch) {
    for (const unsigned int offset : _counted) {
        const RecordSlot& slot = _records.at(offset);
        if (slot.changed || slot.place != tPlace::kHere) continue;
        const auto stored = _engine->load(offset);
        if (!stored || !equal(*stored, slot.bytes.view())) batch.changes.push_back({offset, false, slot.bytes.view()});
    }
    std::sort(batch.changes.begin(), batch.changes.end(),
              [](const Engine::Change& a, const Engine::Change& b) { return a.offset < b.offset; });
}

// Hands a batch down. What became of it is unknown once that has failed, so nothing is handed down after.
void Core::_commit(const Engine::Batch& batch) {
    try {
        _ask({"flush"}, [&] { _engine->commit(batch); });
    } catch (...) {
        _failure = std::current_exception();
        throw;
    }
}

// All changes of content have been stored, and with each record whatever bookkeeping had done to it.
void Core::_settle() noexcept {
    for (const unsigned int offset : _changed) _records.at(offset).changed = false;
    _changed.clear();
    _versionChanged = false;
}

void Core::_close() {
    if (!_engine || _mode == tMode::kRead || _failure) return;
    Engine::Batch batch = _changes();
    const std::size_t content = batch.changes.size();
    try {
        _addBookkeeping(batch);
    } catch (...) {
        batch.changes.resize(content);  // what cannot be compared must not cost what has changed
    }
    if (!batch.changes.empty() || _versionChanged) _commit(batch);
}

}  // namespace lumivard::platform::stores
