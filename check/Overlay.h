#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/data/check/Repair.h"

namespace lumivard::platform::data::Check {

using core::storage::datastore::IDataStore;

/// A store as it would be after some changes, which it keeps to itself: the store below is only read. Records can be
/// changed and erased, not made.
class Overlay final : public IDataStore {
public:
    explicit Overlay(IDataStore& under) : _under(under) {}

    /// The changes, by offset; those that change nothing are left out.
    std::vector<check::Step> steps();

    ILock* lock() override { return _under.lock(); }
    void flush() override {}
    void version(unsigned int number) override;
    unsigned int version() const override { return _under.version(); }
    unsigned long long extent() override { return _under.extent(); }
    unsigned int create(const void* data, unsigned int size) override;
    void append(unsigned int offset, const void* data, unsigned int size) override;
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override;
    unsigned int size(unsigned int offset) override;
    void read(unsigned int offset, void* buffer, unsigned int size) override;
    void erase(unsigned int offset) override;

private:
    IDataStore& _under;
    std::map<unsigned int, std::string> _changed;
    std::set<unsigned int> _erased;
};

}  // namespace lumivard::platform::data::Check
