#include "tests/model/StoreModel.h"

#include <algorithm>
#include <utility>

namespace lumivard::platform::model {

namespace {

constexpr unsigned int kAll = 0xFFFFFFFF;
constexpr std::size_t kFewRecords = 300;
constexpr std::size_t kManyRecords = 1500;
constexpr std::size_t kLongRecord = 60'000;

/// Bytes that are unlike those at other places.
const std::string& noise() {
    static const std::string bytes = [] {
        tRandom random(1);
        std::string all(100'000, '\0');
        for (char& byte : all) byte = static_cast<char>(random());
        return all;
    }();
    return bytes;
}

/// A few bytes as a rule, sometimes none, seldom more than a page of a file holds.
std::string anyBytes(tRandom& random) {
    const unsigned int rare = below(random, 1000);
    const unsigned int most = rare < 2 ? 20'000 : rare < 60 ? 600 : 64;
    const unsigned int size = below(random, most);
    return noise().substr(below(random, noise().size() - size), size);
}

StoreOperation::tCode anyCode(tRandom& random) {
    using Op = StoreOperation;
    static constexpr Op::tCode kOften[] = {Op::kCreate, Op::kAppend, Op::kAppend, Op::kUpdate,
                                           Op::kUpdate, Op::kCount,  Op::kWrite,  Op::kWriteCount,
                                           Op::kErase,  Op::kSize,   Op::kRead,   Op::kReadPart};
    const unsigned int rare = below(random, 3000);
    if (rare == 0) return Op::kFlush;
    if (rare < 4) return Op::kVersion;
    if (rare < 50) return Op::kState;
    return kOften[below(random, std::size(kOften))];
}

}  // namespace

const std::string* StoreContents::find(unsigned int offset) const {
    const auto record = records.find(offset);
    return record == records.end() ? nullptr : &record->second;
}

std::optional<std::string> StoreContents::difference(IDataStore& store) const {
    if (store.extent() != extent) return "extent " + std::to_string(store.extent()) + ", not " + std::to_string(extent);
    if (store.version() != version) return "version " + std::to_string(store.version());
    const auto differs = [&](unsigned int offset, const std::string& bytes) {
        return contents(store, offset) != bytes;
    };
    unsigned int dead = 0;
    for (const auto& [offset, bytes] : records) {
        if (differs(offset, bytes)) return "record " + std::to_string(offset) + " has other bytes";
        for (unsigned int last = std::min(dead + 10, offset); dead < last; ++dead) {
            if (!find(dead) && differs(dead, {})) return "record " + std::to_string(dead) + " is there";
        }
        dead = offset;
    }
    if (differs(static_cast<unsigned int>(extent), {}) || differs(IDataStore::BADOFF, {})) return "a record too many";
    return std::nullopt;
}

StoreOutcome StoreModel::perform(const StoreOperation& operation) {
    std::string* const record = find(operation.offset);
    switch (operation.code) {
        case StoreOperation::kCreate:
            return StoreOutcome::of(create(operation.bytes));
        case StoreOperation::kVersion:
            if (operation.number != _now.version) _versionChanged = true;
            _now.version = operation.number;
            return {};
        case StoreOperation::kState:
            return StoreOutcome::of(_now.extent << 32 | _now.version);
        case StoreOperation::kFlush:
            flush();
            return {};
        case StoreOperation::kSize:
            return StoreOutcome::of(record ? record->size() : 0ULL);
        case StoreOperation::kRead:
            return StoreOutcome::of((record ? record->substr(0, operation.number) : std::string()) + "~~~~");
        case StoreOperation::kReadPart:
            return StoreOutcome::of(record && operation.position < record->size()
                                        ? record->substr(operation.position, operation.number)
                                        : std::string());
        default:
            return record ? change(operation, *record) : StoreOutcome::refusal();
    }
}

StoreOutcome StoreModel::change(const StoreOperation& operation, std::string& record) {
    const bool writes = operation.code == StoreOperation::kWrite || operation.code == StoreOperation::kWriteCount;
    if (writes && operation.position + operation.bytes.size() > record.size()) return StoreOutcome::refusal();
    const bool counts = operation.code == StoreOperation::kCount || operation.code == StoreOperation::kWriteCount;
    if (!counts) _changed.insert(operation.offset);
    switch (operation.code) {
        case StoreOperation::kAppend:
            record += operation.bytes;
            break;
        case StoreOperation::kWrite:
        case StoreOperation::kWriteCount:
            record.replace(operation.position, operation.bytes.size(), operation.bytes);
            break;
        case StoreOperation::kErase:
            _now.records.erase(operation.offset);
            _erased = operation.offset;
            break;
        default:
            record = operation.bytes;
    }
    return {};
}

unsigned int StoreModel::create(const std::string& bytes) {
    auto offset = static_cast<unsigned int>(_now.extent);
    if (_rules.erasedComeBack && _erased % 1000 == 999 && !find(_erased)) {
        offset = _erased;
    } else {
        ++_now.extent;
    }
    _now.records[offset] = bytes;
    _changed.insert(offset);
    return offset;
}

void StoreModel::flush() {
    if (_changed.empty() && !std::exchange(_versionChanged, false)) return;
    _versionChanged = false;
    ++_flushes;
    if (_rules.countsAreFlushed) _flushed.records = _now.records;
    for (const unsigned int offset : std::exchange(_changed, {})) {
        if (const std::string* bytes = find(offset)) {
            _flushed.records[offset] = *bytes;
        } else {
            _flushed.records.erase(offset);
        }
    }
    _flushed.extent = _now.extent;
    _flushed.version = _now.version;
}

void StoreModel::close() {
    _flushed = _now;
    _changed.clear();
    _versionChanged = false;
    ++_flushes;
}

void StoreModel::crash() {
    _now = _flushed;
    _changed.clear();
    _versionChanged = false;
}

StoreOperation StoreModel::any(tRandom& random) const {
    StoreOperation operation;
    operation.code = anyCode(random);
    if (operation.code == StoreOperation::kErase && _now.records.size() < kFewRecords) {
        operation.code = StoreOperation::kCreate;
    }
    if (operation.code == StoreOperation::kCreate && _now.records.size() > kManyRecords) {
        operation.code = StoreOperation::kErase;
    }
    operation.offset = anyOffset(random);
    const std::string* const record = _now.find(operation.offset);
    const std::size_t size = record ? record->size() : 0;
    if (operation.code == StoreOperation::kAppend && size > kLongRecord) operation.code = StoreOperation::kUpdate;
    operation.position = below(random, size + 2);
    operation.number = below(random, 4) == 0 ? kAll : below(random, size + 2);
    if (operation.code == StoreOperation::kReadPart) operation.number = below(random, size + 2);
    if (operation.code <= StoreOperation::kWriteCount) operation.bytes = anyBytes(random);
    const bool writes = operation.code == StoreOperation::kWrite || operation.code == StoreOperation::kWriteCount;
    if (writes && operation.position < size && below(random, 10) != 0) {
        operation.bytes.resize(std::min(operation.bytes.size(), size - operation.position));
    }
    return operation;
}

unsigned int StoreModel::anyOffset(tRandom& random) const {
    const unsigned int rare = below(random, 100);
    if (rare == 0) return IDataStore::BADOFF;
    const unsigned int offset = below(random, _now.extent + 3);
    if (rare < 4) return offset;
    const auto record = _now.records.lower_bound(offset);
    return record == _now.records.end() ? offset : record->first;
}

std::string* StoreModel::find(unsigned int offset) {
    const auto record = _now.records.find(offset);
    return record == _now.records.end() ? nullptr : &record->second;
}

}  // namespace lumivard::platform::model
