#pragma once

#include <exception>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support::fault {

/// Something that can be made to fail at the k-th time that it is asked for. One after the other is laid over the
/// stores under test.
class Fault {
public:
    virtual ~Fault() = default;

    /// The store that is used in the place of one that is to fail; good until the next call.
    virtual core::storage::datastore::IDataStore& over(core::storage::datastore::IDataStore& store) = 0;

    /// Lets `passing` more pass and fails from there.
    virtual void arm(long long passing) = 0;

    /// Fails no more, and tells how often it failed.
    virtual long long disarm() = 0;

    /// Whether it fails once, and not for ever.
    virtual bool once() const = 0;

    /// Whether an exception is the one that it threw, as it was, or one that says the same.
    virtual bool isOurs(const std::exception_ptr& thrown) const = 0;

    /// Whether a reporter was told of it.
    virtual bool isTold(const std::wstring& text) const = 0;

    /// How many guards are held at this moment that were taken from the store; 0 where that is not counted.
    virtual int guards() const { return 0; }

    /// How many blocks of memory there are at this moment; 0 where they are not counted.
    virtual long long blocks() const { return 0; }
};

}  // namespace lumivard::platform::test_support::fault
