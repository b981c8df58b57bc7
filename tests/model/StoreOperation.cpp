#include "tests/model/StoreOperation.h"

#include <algorithm>
#include <exception>

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

std::string readPart(IDataStore& store, const StoreOperation& operation) {
    auto* const access = store.access();
    if (!access) {
        const std::string all = contents(store, operation.offset);
        return operation.position < all.size() ? all.substr(operation.position, operation.number) : std::string();
    }
    std::string bytes(operation.number, '~');
    bytes.resize(access->read(operation.offset, operation.position, bytes.data(), operation.number));
    return bytes;
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
    static constexpr const char* kNames[] = {"create", "append", "update",    "count", "erase", "version",
                                             "size",   "read",   "read part", "state", "flush"};
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
