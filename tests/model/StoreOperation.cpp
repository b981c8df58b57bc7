#include "tests/model/StoreOperation.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/InjectedFailure.h"

namespace lumivard::platform::model {

namespace {

constexpr unsigned int kToTheEnd = 0xFFFFFFFF;

// A buffer longer than what is asked for, so that bytes which are written behind that show.
std::string readSome(IDataStore& store, unsigned int offset, unsigned int count) {
    std::string bytes(std::max(store.size(offset), count == kToTheEnd ? 0 : count) + 4, '~');
    store.read(offset, bytes.data(), count);
    return bytes.substr(0, std::min(store.size(offset), count)) + bytes.substr(bytes.size() - 4);
}

// By a view, where the store has such a thing.
std::string readPart(IDataStore& store, const StoreOperation& operation) {
    std::string all;
    if (auto* const access = store.access()) {
        const auto view = access->view(operation.offset);
        if (view.size != 0) all.assign(view.data, view.size);
    } else {
        all = contents(store, operation.offset);
    }
    return operation.position < all.size() ? all.substr(operation.position, operation.number) : std::string();
}

// By way of the whole record, where the store has no other.
void write(IDataStore& store, const StoreOperation& operation, bool changed) {
    const auto size = static_cast<unsigned int>(operation.bytes.size());
    if (auto* const access = store.access()) {
        access->write(operation.offset, operation.position, operation.bytes.data(), size, changed);
        return;
    }
    std::string all = contents(store, operation.offset);
    if (std::size_t{operation.position} + size > all.size()) throw std::out_of_range("outside the record");
    all.replace(operation.position, size, operation.bytes);
    store.update(operation.offset, all.data(), static_cast<unsigned int>(all.size()), changed);
}

StoreOutcome call(IDataStore& store, const StoreOperation& operation) {
    const auto size = static_cast<unsigned int>(operation.bytes.size());
    switch (operation.code) {
        case StoreOperation::kCreate:
            return StoreOutcome::of(store.create(operation.bytes.data(), size));
        case StoreOperation::kAppend:
            store.append(operation.offset, operation.bytes.data(), size);
            return {};
        case StoreOperation::kUpdate:
            store.update(operation.offset, operation.bytes.data(), size, true);
            return {};
        case StoreOperation::kCount:
            store.update(operation.offset, operation.bytes.data(), size, false);
            return {};
        case StoreOperation::kWrite:
        case StoreOperation::kWriteCount:
            write(store, operation, operation.code == StoreOperation::kWrite);
            return {};
        case StoreOperation::kErase:
            store.erase(operation.offset);
            return {};
        case StoreOperation::kVersion:
            store.version(operation.number);
            return {};
        case StoreOperation::kSize:
            return StoreOutcome::of(store.size(operation.offset));
        case StoreOperation::kRead:
            return StoreOutcome::of(readSome(store, operation.offset, operation.number));
        case StoreOperation::kReadPart:
            return StoreOutcome::of(readPart(store, operation));
        case StoreOperation::kState:
            return StoreOutcome::of(store.extent() << 32 | store.version());
        case StoreOperation::kFlush:
            store.flush();
            return {};
    }
    return {};
}

}  // namespace

StoreOutcome perform(IDataStore& store, const StoreOperation& operation) {
    try {
        return call(store, operation);
    } catch (const store_contract::InjectedFailure&) {
        return {true, 0, {}, true};
    } catch (const std::exception&) {
        return StoreOutcome::refusal();
    }
}

std::string contents(IDataStore& store, unsigned int offset) {
    std::string bytes(store.size(offset), '\0');
    store.read(offset, bytes.data(), kToTheEnd);
    return bytes;
}

std::string described(const StoreOperation& operation) {
    static constexpr const char* kNames[] = {"create",      "append", "update",  "count", "write",
                                             "write count", "erase",  "version", "size",  "read",
                                             "read part",   "state",  "flush"};
    return std::string(kNames[operation.code]) + " offset " + std::to_string(operation.offset) + " position " +
           std::to_string(operation.position) + " number " + std::to_string(operation.number) + ", " +
           std::to_string(operation.bytes.size()) + " bytes";
}

std::string described(const StoreOutcome& outcome) {
    if (outcome.refused) return "refused";
    return std::to_string(outcome.number) + " and " + std::to_string(outcome.bytes.size()) + " bytes [" +
           outcome.bytes.substr(0, 32) + "]";
}

}  // namespace lumivard::platform::model
