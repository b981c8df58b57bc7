#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "stores/core/Core.h"
#include "stores/lmdb/LmdbEngine.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {

/// A store in a file of its own.
class FileFixture : public testing::Test {
protected:
    IDataStore& open(tMode mode = tMode::kWrite) {
        close();
        _store = file(path(), mode);
        return *_store;
    }

    /// With an address space of its own choice to begin with.
    IDataStore& openWithMap(std::size_t size) {
        close();
        auto engine = std::make_unique<LmdbEngine>(path(), tMode::kWrite,
                                                   LmdbEngine::Settings{.mapSize = size, .fileSystem = std::nullopt});
        _store = std::make_unique<Core>(path().string(), std::move(engine), tMode::kWrite);
        return *_store;
    }

    void close() { _store.reset(); }
    std::filesystem::path path() const { return folder / "a.lvp"; }

    TemporaryFolder folder;

private:
    std::unique_ptr<IDataStore> _store;
};

}  // namespace lumivard::platform::stores
