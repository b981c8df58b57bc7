#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "stores/core/Core.h"
#include "stores/engine/EngineError.h"
#include "tests/stores/Records.h"
#include "tests/stores/SpyEngine.h"

namespace lumivard::platform::stores {

/// A core over a disk that can be looked at.
class CoreFixture : public testing::Test {
protected:
    void open(tMode mode = tMode::kWrite) {
        close();
        _core = std::make_unique<Core>("the name", std::make_unique<SpyEngine>(disk), mode);
    }
    void close() { _core.reset(); }
    Core& core() { return *_core; }

    /// Puts records on the disk as a store before would have left them.
    void stored(std::initializer_list<std::string> records) {
        for (const std::string& record : records) {
            disk.records[static_cast<unsigned int>(disk.header.extent++)] = record;
        }
    }

    SpyDisk disk;

private:
    std::unique_ptr<Core> _core;
};

using Written = SpyDisk::Written;

/// What a disk does that fails.
inline void fail() {
    throw EngineError("the disk is full");
}

/// The sentence of the store that some work ends with.
inline std::string failureOf(const std::function<void()>& work) {
    return messageOf<StoreError>(work);
}

}  // namespace lumivard::platform::stores
