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

Core::tView viewOf(const RecordBytes& record) {
    const auto bytes = record.view();
    return {reinterpret_cast<const char*>(bytes.data()), record.size()};
}

bool equal(std::span<const std::byte> a, std::span<const std::byte> b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

// Offsets are noted in the order of the changes, which mostly is theirs.
void sort(std::vector<unsigned int>& offsets) {
    if (!std::is_sorted(offsets.begin(), offsets.end())) std::sort(offsets.begin(), offsets.end());
}

}  // namespace

/// Holds the guard of a core.
class Core::Guard final : public IDataStore::ILock {
public:
    explicit Guard(Core& core) : _core(core) { _core._takeGuard(true); }
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

Core::Core(std::string name, std::unique_ptr<Engine> engine, tMode mode, std::size_t cache)
    : _name(std::move(name)),
      _mode(mode),
      _shared(engine && engine->isShared()),
      _lends(engine && engine->lends()),
      _keeps(engine && mode == tMode::kWrite),
      _cache(cache),
      _engine(std::move(engine)) {
    if (!_engine) return;
    _longest = _engine->longestRecord();
    const Engine::Header header = _ask({"open"}, [&] { return _engine->header(); });
    _extent = _storedExtent = header.extent;
    _version = header.version;
}

Core::~Core() {
    _attachment.reset();  // which may still look at the store
    try {
        _close();
    } catch (...) {
        // Nobody is left to be told: who needs to know has flushed before.
    }
}

void Core::discard() {
    if (!_keeps || _failure) return;
    _failure = std::make_exception_ptr(failure("change", _name, "what was changed in it has been given up"));
    if (_shared) _forgetChanges();
}

core::storage::datastore::IDataStore::ILock* Core::lock() {
    return new Guard(*this);
}

void Core::flush() {
    if (_failure) std::rethrow_exception(_failure);
    _tellLoss();
    if (!_hasChanges()) return;
    if (_shared) return _flushShared();
    _commit();
    _settle();
}

void Core::version(unsigned int number) {
    _refuseChange({"set the version of"});
    if (number == _version) return;
    _version = number;
    _versionChanged = _keeps;
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
    _records.heap().assign(slot.bytes, data, size);
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
    _touch(offset, slot, slot.bytes.size(), UINT64_MAX);
    _records.heap().append(slot.bytes, data, size);
    slot.place = tPlace::kHere;
    _noteContent(offset, slot);
}

void Core::update(unsigned int offset, const void* data, unsigned int size, bool changed) {
    const Attempt attempt{"change", offset};
    if (changed) _refuseChange(attempt);
    // Objects may still count themselves on a record that the writing process has erased since.
    if (!changed && _mode == tMode::kRead && !_find(offset)) return;
    RecordSlot& slot = _existing(attempt);
    _refuseLength(attempt, size);
    _makeRoom(changed || _shared ? _changed : _counted);
    _touchDifference(offset, slot, data, size);
    _records.heap().assign(slot.bytes, data, size);
    slot.place = tPlace::kHere;
    changed ? _noteContent(offset, slot) : _noteBookkeeping(offset, slot);
}

unsigned int Core::size(unsigned int offset) {
    const RecordSlot* slot = _find(offset);
    return slot ? slot->bytes.size() : 0;
}

void Core::read(unsigned int offset, void* buffer, unsigned int size) {
    const RecordSlot* slot = _find(offset);
    if (!slot) return;
    const unsigned int count = std::min(size, slot->bytes.size());
    if (count != 0) std::memcpy(buffer, slot->bytes.view().data(), count);
}

Core::tView Core::view(unsigned int offset) {
    const RecordSlot* slot = _find(offset);
    return slot ? viewOf(slot->bytes) : tView();
}

Core::tView Core::write(unsigned int offset, unsigned int position, const void* data, unsigned int size, bool changed) {
    const Attempt attempt{"change", offset};
    if (changed) _refuseChange(attempt);
    RecordSlot* const found = _find(offset);
    // As in update: objects may still count themselves on a record that the writing process has erased since.
    if (!found && !changed && _mode == tMode::kRead) return {};
    RecordSlot& slot = found ? *found : _existing(attempt);
    if (std::uint64_t{position} + size > slot.bytes.size()) {
        throw failure(attempt.text(), _name, "the bytes do not lie inside it");
    }
    if (!(changed ? slot.changed : slot.counted)) _makeRoom(changed ? _changed : _counted);
    if (_shared && !changed) _private.note(offset, slot.bytes.view(), position, data, size);
    if (changed) _touch(offset, slot, position, std::uint64_t{position} + size);
    _records.heap().overwrite(slot.bytes, position, data, size);
    slot.place = tPlace::kHere;
    if (changed) {
        _noteContent(offset, slot);
    } else if (!_shared) {
        _noteBookkeeping(offset, slot);
        _giveBack(slot);
    }
    return viewOf(slot.bytes);
}

void Core::erase(unsigned int offset) {
    const Attempt attempt{"erase", offset};
    _refuseChange(attempt);
    RecordSlot& slot = _existing(attempt);
    _makeRoom(_changed);
    if (_shared) _private.forget(offset);
    _records.heap().release(slot.bytes);
    slot.place = tPlace::kGone;
    _noteContent(offset, slot);
}

// A thread finds its own id in the owner if it has put it there, whatever other threads do meanwhile. Whether who takes
// it is sure to hear what is thrown is said by `tells`.
void Core::_takeGuard(bool tells) {
    const std::thread::id self = std::this_thread::get_id();
    if (_owner.load(std::memory_order_relaxed) != self) {
        std::unique_lock held(_guard);
        if (tells) _tellLoss();
        try {
            if (_engine) _hearNews();
        } catch (...) {
            if (tells) _loss = nullptr;  // it is what is thrown, if there is one
            throw;
        }
        _owner.store(self, std::memory_order_relaxed);
        held.release();
    }
    ++_depth;
}

bool Core::_holdsGuard() const noexcept {
    return _owner.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

void Core::_giveGuard() noexcept {
    if (--_depth != 0) return;
    if (_shared) _endTransaction();
    if (_engine) _engine->guardReleased();
    if (_cached > _cache) _shrink();
    _guardLoss = nullptr;
    _owner.store({}, std::memory_order_relaxed);
    _guard.unlock();
}

void Core::_hearNews() {
    try {
        const auto news = _ask({"take the guard of"}, [&] { return _engine->guardTaken(); });
        try {
            if (news) _receive(*news);
        } catch (...) {
            _engine->guardReleased();
            throw;
        }
    } catch (...) {
        _records.endLoan();  // destructors go on without the guard
        throw;
    }
}

void Core::_receive(const Engine::News& news) {
    const bool conflict = _shared && _conflictsWith(news);
    if (conflict) _forgetChanges();
    if (news.everything) {
        _records.clear();
        _changed.clear();
        _counted.clear();
    }
    if (!_hasChanges()) _extent = news.header.extent;  // else nobody has made records but this process
    _renew(news);
    _records.endLoan();
    _version = news.header.version;
    _storedExtent = news.header.extent;
    ++_contentChanges;
    if (!conflict) return;
    try {
        throw failure("take the guard of", _name,
                      "what was written without a guard is given up, since somebody else has changed the same");
    } catch (...) {
        _loss = std::current_exception();
        throw;
    }
}

// The slot of a record that exists, brought in if it was not asked for before; null for any other offset. An offset
// that a damaged record names costs no slot.
RecordSlot* Core::_find(unsigned int offset) {
    if (offset >= _extent) return _shared && !_holdsGuard() && offset != BADOFF ? _bringInAlone(offset) : nullptr;
    RecordSlot* slot = _records.find(offset);
    if (slot && slot->place == tPlace::kHere) {
        if (_shared) slot->used = true;
        return slot;
    }
    if (slot && slot->place == tPlace::kLent && slot->loan == _records.loan()) return slot;
    return slot && slot->place == tPlace::kGone ? nullptr : _bringIn(offset, slot);
}

RecordSlot& Core::_existing(const Attempt& attempt) {
    RecordSlot* slot = _find(attempt.offset);
    if (!slot) throw failure(attempt.text(), _name, "there is no such record");
    return *slot;
}

// `known` is the slot of the offset, if there is one.
RecordSlot* Core::_bringIn(unsigned int offset, RecordSlot* known) {
    if (!_engine) return nullptr;
    if (_shared) return _holdsGuard() ? _bringInShared(offset) : _bringInAlone(offset);
    const auto bytes = _ask({"read", offset}, [&] { return _engine->load(offset); });
    if (!bytes) return nullptr;
    RecordSlot& slot = known ? *known : _records.at(offset);
    if (_lends && !bytes->empty() && bytes->size() <= RecordHeap::kLongestLent) {
        _records.heap().lend(slot.bytes, *bytes);
        slot.place = tPlace::kLent;
        slot.loan = _records.loan();
    } else {
        _records.heap().assign(slot.bytes, bytes->data(), static_cast<unsigned int>(bytes->size()));
        slot.place = tPlace::kHere;
    }
    return &slot;
}

void Core::_refuseChange(const Attempt& attempt) {
    if (_mode == tMode::kRead) throw failure(attempt.text(), _name, "it was opened for reading only");
    if (_failure) std::rethrow_exception(_failure);
    if (_loss) std::rethrow_exception(_loss);
    if (_guardLoss && _holdsGuard()) std::rethrow_exception(_guardLoss);
}

void Core::_refuseLength(const Attempt& attempt, unsigned long long size) const {
    if (size <= _longest) return;
    throw failure(attempt.text(), _name, "it would become longer than " + std::to_string(_longest) + " bytes");
}

// Lets the next note be taken without memory of its own.
void Core::_makeRoom(std::vector<unsigned int>& list) const {
    if (_keeps && list.size() == list.capacity()) list.reserve(std::max<std::size_t>(64, list.size() * 2));
}

void Core::_noteContent(unsigned int offset, RecordSlot& slot) noexcept {
    ++_contentChanges;
    if (_keeps) _noteToStore(offset, slot);
}

void Core::_noteToStore(unsigned int offset, RecordSlot& slot) noexcept {
    if (slot.changed) return;
    slot.changed = true;
    _changed.push_back(offset);
}

void Core::_noteBookkeeping(unsigned int offset, RecordSlot& slot) noexcept {
    if (!_keeps) return;
    if (_shared) return _noteToStore(offset, slot);
    if (slot.counted) return;
    slot.counted = true;
    _counted.push_back(offset);
}

// What is stored may not have the changes of content.
void Core::_giveBack(RecordSlot& slot) noexcept {
    if (slot.changed || slot.loan != _records.loan()) return;
    if (_records.heap().giveBack(slot.bytes)) slot.place = tPlace::kLent;
}

bool Core::_hasChanges() const {
    return !_changed.empty() || _versionChanged;
}

// Hands all changes down. What became of them is unknown once that has failed, so nothing is handed down after.
void Core::_commit() {
    sort(_changed);
    _records.endLoan();
    bool conflict = _guardLoss != nullptr;
    try {
        if (conflict) std::rethrow_exception(_guardLoss);
        _leaveOutPrivate();
        _ask({"flush"}, [&] {
            try {
                _engine->commit(
                    {{_extent, _version}, _changed, [this](unsigned int offset) { return _change(offset); }});
            } catch (const EngineConflict&) {
                conflict = true;
                throw;
            }
        });
    } catch (...) {
        if (!conflict) _failure = std::current_exception();
        if (_shared) _forgetChanges();  // it shows what is stored
        throw;
    }
}

Engine::Change Core::_change(unsigned int offset) noexcept {
    const RecordSlot* slot = _records.find(offset);
    Engine::Change change{slot->place == tPlace::kGone, slot->bytes.view()};
    if (const auto patched = _patched.find(offset); patched != _patched.end()) {
        change.bytes = std::as_bytes(std::span(patched->second));
    }
    if (const auto touched = _touched.find(offset); touched != _touched.end()) {
        change.from = touched->second.from;
        change.to = touched->second.to;
    }
    return change;
}

// Lists as changed the records that only bookkeeping has touched and that do not have their stored bytes again by now:
// a store that was walked counts every record up and down, and is left as it was. They are compared in the order in
// which they are stored, which is the cheapest.
void Core::_addBookkeeping() {
    sort(_counted);
    for (const unsigned int offset : _counted) {
        RecordSlot& slot = *_records.find(offset);
        if (slot.changed || slot.place != tPlace::kHere) continue;
        const auto stored = _engine->load(offset);
        if (stored && equal(*stored, slot.bytes.view())) continue;
        _changed.push_back(offset);
        slot.changed = true;
    }
}

// All changes of content have been stored, and with each record whatever bookkeeping had done to it.
void Core::_settle() noexcept {
    for (const unsigned int offset : _changed) {
        RecordSlot& slot = *_records.find(offset);
        slot.changed = false;
        _cached += RecordTable::weight(slot.bytes);
    }
    _changed.clear();
    _touched.clear();
    _versionChanged = false;
    _storedExtent = _extent;
}

void Core::_close() {
    if (!_keeps || _failure) return;
    if (_shared) {
        if (_hasChanges()) _flushShared();
        return;
    }
    const std::size_t content = _changed.size();
    try {
        _addBookkeeping();
    } catch (...) {
        _changed.resize(content);  // what cannot be compared must not cost what has changed
    }
    if (_hasChanges()) _commit();
}

}  // namespace lumivard::platform::stores
