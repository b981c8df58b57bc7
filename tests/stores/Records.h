#pragma once

#include <functional>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

// Records as text, and what an operation says when it fails.
namespace lumivard::platform::stores {

inline unsigned int create(core::storage::datastore::IDataStore& store, const std::string& bytes) {
    return store.create(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

inline void update(core::storage::datastore::IDataStore& store, unsigned int offset, const std::string& bytes,
                   bool changed = true) {
    store.update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), changed);
}

inline void append(core::storage::datastore::IDataStore& store, unsigned int offset, const std::string& bytes) {
    store.append(offset, bytes.data(), static_cast<unsigned int>(bytes.size()));
}

inline std::string contents(core::storage::datastore::IDataStore& store, unsigned int offset) {
    std::string bytes(store.size(offset), '\0');
    store.read(offset, bytes.data(), 0xFFFFFFFF);
    return bytes;
}

/// The message of the exception that `work` throws, of the type `Error`; "nothing was thrown" if none is.
template <class Error>
std::string messageOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const Error& error) {
        return error.what();
    }
    return "nothing was thrown";
}

}  // namespace lumivard::platform::stores
