#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "tests/contract/BrokenStore.h"

namespace lumivard::platform::store_contract {
namespace {

using core::storage::datastore::IRecordAccess;
using tView = IRecordAccess::tView;
using tAttachment = std::unique_ptr<IRecordAccess::IAttachment>;

// The bytes of a record with some of them replaced, cut off or added to as it goes.
void replace(SoundAccess& access, unsigned int offset, unsigned int position, const void* data, unsigned int size,
             bool changed) {
    const tView seen = access.view(offset);
    std::string bytes(seen.data, seen.size);
    bytes.resize(std::max<std::size_t>(bytes.size(), std::size_t{position} + size));
    if (size != 0) std::memcpy(bytes.data() + position, data, size);
    access.store().update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), changed);
    if (changed) access.countChange();
}

// Copies of records that are shown as if they were the records.
using tCopies = std::map<unsigned int, std::string>;

tView shown(const std::string& copy) {
    return {copy.data(), static_cast<unsigned int>(copy.size())};
}

std::string copyOf(SoundAccess& access, unsigned int offset) {
    const tView seen = access.view(offset);
    return seen.size == 0 ? std::string() : std::string(seen.data, seen.size);
}

tView copied(tCopies& copies, SoundAccess& access, unsigned int offset) {
    return shown(copies[offset] = copyOf(access, offset));
}

void blot(tCopies& copies) {
    for (auto& [offset, copy] : copies) copy.assign(copy.size(), '#');
}

// A guard that throws where its thread has it already.
class StrictMutex {
public:
    void take() {
        if (_owner == std::this_thread::get_id()) {
            throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
        }
        _mutex.lock();
        _owner = std::this_thread::get_id();
    }
    void give() {
        _owner = {};
        _mutex.unlock();
    }

private:
    std::mutex _mutex;
    std::thread::id _owner;
};

Breakage viewLacksTheLastByte() {
    return {.view = [](SoundAccess& access, unsigned int offset) {
        tView seen = access.view(offset);
        if (seen.size > 1) --seen.size;
        return seen;
    }};
}

Breakage viewOfNoRecordIsAZero() {
    return {.view = [](SoundAccess& access, unsigned int offset) {
        return access.store().size(offset) == 0 ? tView{"", 1} : access.view(offset);
    }};
}

Breakage viewsAreStale() {
    return {.view = [copies = std::make_shared<tCopies>()](SoundAccess& access, unsigned int offset) {
        return shown(copies->try_emplace(offset, copyOf(access, offset)).first->second);
    }};
}

Breakage viewsShareOneBuffer() {
    return {.view = [buffer = std::make_shared<std::string>(100000, '\0')](SoundAccess& access, unsigned int offset) {
        const std::string bytes = copyOf(access, offset);
        buffer->replace(0, bytes.size(), bytes);
        return tView{buffer->data(), static_cast<unsigned int>(bytes.size())};
    }};
}

Breakage viewsEndWhenARecordIsCreated() {
    const auto copies = std::make_shared<tCopies>();
    return {.create =
                [copies](ForgetfulStore& store, const void* data, unsigned int size) {
                    blot(*copies);
                    return store.create(data, size);
                },
            .view = [copies](SoundAccess& access, unsigned int offset) { return copied(*copies, access, offset); }};
}

Breakage viewsEndWhenARecordIsChanged() {
    const auto copies = std::make_shared<tCopies>();
    return {
        .update =
            [copies](ForgetfulStore& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                blot(*copies);
                store.update(offset, data, size, changed);
            },
        .view = [copies](SoundAccess& access, unsigned int offset) { return copied(*copies, access, offset); }};
}

Breakage writeGivesNoView() {
    return {.written = [](SoundAccess&, unsigned int) { return tView(); }};
}

Breakage writeGivesTheViewOfBefore() {
    const auto before = std::make_shared<std::string>();
    return {.write =
                [before](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                         unsigned int size, bool changed) {
                    *before = copyOf(access, offset);
                    access.write(offset, position, data, size, changed);
                },
            .written = [before](SoundAccess&, unsigned int) { return shown(*before); }};
}

// What bookkeeping has come back to is taken for what is stored, whatever content was changed.
Breakage bookkeepingThatComesBackUndoesContent() {
    const auto stored = std::make_shared<std::map<unsigned int, std::string>>();
    return {.write = [stored](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                              unsigned int size, bool changed) {
        const std::string before = stored->try_emplace(offset, copyOf(access, offset)).first->second;
        access.write(offset, position, data, size, changed);
        if (changed || size == 0 || before.compare(position, size, copyOf(access, offset), position, size) != 0) return;
        access.store().update(offset, before.data(), static_cast<unsigned int>(before.size()), false);
    }};
}

Breakage writeIgnoresItsPosition() {
    return {.write = [](SoundAccess& access, unsigned int offset, unsigned int, const void* data, unsigned int size,
                        bool changed) { access.write(offset, 0, data, size, changed); }};
}

Breakage writeSpillsIntoTheNextOne() {
    return {.write = [](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                        unsigned int size, bool changed) {
        access.write(offset, position, data, size, changed);
        if (position + size == access.store().size(offset) && access.store().size(offset + 1) != 0) {
            access.write(offset + 1, 0, "#", 1, changed);
        }
    }};
}

Breakage writeGrowsTheRecord() {
    return {.write = [](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                        unsigned int size, bool changed) {
        if (position > 1000 || size > 1000) {
            access.write(offset, position, data, size, changed);
        } else {
            replace(access, offset, position, data, size, changed);
        }
    }};
}

Breakage writeWrapsAround() {
    return {.write = [](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                        unsigned int size, bool changed) {
        const bool wrapped = position + size < position;
        access.write(offset, wrapped ? 0 : position, data, wrapped ? position + size : size, changed);
    }};
}

Breakage writeOfNoRecordIsPassedOver() {
    return {.write = [](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                        unsigned int size, bool changed) {
        if (access.store().size(offset) != 0) access.write(offset, position, data, size, changed);
    }};
}

Breakage writeOfNothingWantsRoom() {
    return {.write = [](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                        unsigned int size, bool changed) {
        if (position >= access.store().size(offset)) throw std::out_of_range("outside the record");
        access.write(offset, position, data, size, changed);
    }};
}

Breakage writeIsNeverContent() {
    return {.write = [](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                        unsigned int size, bool) { access.write(offset, position, data, size, false); }};
}

Breakage writeIgnoresBookkeeping() {
    return {.write = [](SoundAccess& access, unsigned int offset, unsigned int position, const void* data,
                        unsigned int size, bool changed) {
        if (changed) access.write(offset, position, data, size, changed);
    }};
}

Breakage enterIsNotReentrant() {
    const auto guard = std::make_shared<StrictMutex>();
    return {.enter = [guard](SoundAccess&) { guard->take(); }, .leave = [guard](SoundAccess&) { guard->give(); }};
}

Breakage enterExcludesNobody() {
    return {.enter = [](SoundAccess&) {}, .leave = [](SoundAccess&) {}};
}

Breakage enterLastsForOneOperation() {
    using tGuard = std::unique_ptr<core::storage::datastore::IDataStore::ILock>;
    return {.update =
                [](ForgetfulStore& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                    const tGuard guard(store.lock());
                    store.update(offset, data, size, changed);
                },
            .read =
                [](ForgetfulStore& store, unsigned int offset, void* buffer, unsigned int size) {
                    {
                        const tGuard guard(store.lock());
                        store.read(offset, buffer, size);
                    }
                    std::this_thread::yield();  // to whoever wants to come in between
                },
            .enter = [](SoundAccess&) {},
            .leave = [](SoundAccess&) {}};
}

Breakage enterIsAGuardOfItsOwn() {
    const auto guard = std::make_shared<std::recursive_mutex>();
    return {.enter = [guard](SoundAccess&) { guard->lock(); }, .leave = [guard](SoundAccess&) { guard->unlock(); }};
}

Breakage leaveGivesAllBack() {
    const auto depth = std::make_shared<int>(0);
    return {.enter =
                [depth](SoundAccess& access) {
                    access.enter();
                    ++*depth;
                },
            .leave =
                [depth](SoundAccess& access) {
                    for (int left = std::exchange(*depth, 0); left > 0; --left) access.leave();
                }};
}

Breakage changesCountEverySecond() {
    return {.changes = [](const SoundAccess& access) { return access.changes() / 2; }};
}

Breakage changesCountBookkeeping() {
    const auto counts = std::make_shared<unsigned long long>(0);
    return {
        .update =
            [counts](ForgetfulStore& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                store.update(offset, data, size, changed);
                if (!changed) ++*counts;
            },
        .changes = [counts](const SoundAccess& access) { return access.changes() + *counts; }};
}

Breakage changesCountFailures() {
    const auto failures = std::make_shared<unsigned long long>(0);
    return {.erase =
                [failures](ForgetfulStore& store, unsigned int offset) {
                    ++*failures;
                    store.erase(offset);
                    --*failures;
                },
            .changes = [failures](const SoundAccess& access) { return access.changes() + *failures; }};
}

Breakage attachmentIsThereFromTheBeginning() {
    return {.attachment = [](SoundAccess& access) -> tAttachment& {
        if (!access.attachment()) access.attachment() = std::make_unique<IRecordAccess::IAttachment>();
        return access.attachment();
    }};
}

Breakage attachmentEndsWithAFlush() {
    const auto attachment = std::make_shared<tAttachment>();
    return {.flush =
                [attachment](ForgetfulStore& store) {
                    store.flush();
                    attachment->reset();
                },
            .attachment = [attachment](SoundAccess&) -> tAttachment& { return *attachment; }};
}

// It is in nobody's hands when the program ends, which is not a leak.
Breakage attachmentIsNeverLetGo() {
    static tAttachment* const attachment = new tAttachment;
    return {.attachment = [](SoundAccess&) -> tAttachment& { return *attachment; }};
}

Breakage attachmentSurvivesReopening() {
    return {.attachment = [attachment = std::make_shared<tAttachment>()](SoundAccess&) -> tAttachment& {
        return *attachment;
    }};
}

}  // namespace

const std::map<std::string, tMakeBreakage>& brokenAccesses() {
    static const std::map<std::string, tMakeBreakage> all = {
        {"attachment_ends_with_a_flush", attachmentEndsWithAFlush},
        {"attachment_is_never_let_go", attachmentIsNeverLetGo},
        {"attachment_is_there_from_the_beginning", attachmentIsThereFromTheBeginning},
        {"attachment_survives_reopening", attachmentSurvivesReopening},
        {"bookkeeping_that_comes_back_undoes_content", bookkeepingThatComesBackUndoesContent},
        {"changes_count_bookkeeping", changesCountBookkeeping},
        {"changes_count_every_second", changesCountEverySecond},
        {"changes_count_failures", changesCountFailures},
        {"enter_excludes_nobody", enterExcludesNobody},
        {"enter_is_a_guard_of_its_own", enterIsAGuardOfItsOwn},
        {"enter_is_not_reentrant", enterIsNotReentrant},
        {"enter_lasts_for_one_operation", enterLastsForOneOperation},
        {"leave_gives_all_back", leaveGivesAllBack},
        {"view_lacks_the_last_byte", viewLacksTheLastByte},
        {"view_of_no_record_is_a_zero", viewOfNoRecordIsAZero},
        {"views_are_stale", viewsAreStale},
        {"views_end_when_a_record_is_changed", viewsEndWhenARecordIsChanged},
        {"views_end_when_a_record_is_created", viewsEndWhenARecordIsCreated},
        {"views_share_one_buffer", viewsShareOneBuffer},
        {"write_gives_no_view", writeGivesNoView},
        {"write_gives_the_view_of_before", writeGivesTheViewOfBefore},
        {"write_grows_the_record", writeGrowsTheRecord},
        {"write_ignores_bookkeeping", writeIgnoresBookkeeping},
        {"write_ignores_its_position", writeIgnoresItsPosition},
        {"write_is_never_content", writeIsNeverContent},
        {"write_of_no_record_is_passed_over", writeOfNoRecordIsPassedOver},
        {"write_of_nothing_wants_room", writeOfNothingWantsRoom},
        {"write_spills_into_the_next_one", writeSpillsIntoTheNextOne},
        {"write_wraps_around", writeWrapsAround},
    };
    return all;
}

}  // namespace lumivard::platform::store_contract
