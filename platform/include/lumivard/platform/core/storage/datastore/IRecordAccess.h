#pragma once

#include <memory>

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::core::storage::datastore {

/// What a store can do beyond whole records, for callers that look at or change a few bytes of a record, do so very
/// often, or want to know whether what they remember still holds.
///
/// It adds no meaning to the records of an `IDataStore`: each operation on them has a slower form in terms of that
/// interface. The guard, the errors and the threads of the store hold for it.
class LVP_EXPORT IRecordAccess {
public:
    /// The bytes of a record where they lie in the store.
    struct tView {
        const char* data = nullptr;  ///< null where there are no bytes
        unsigned int size = 0;       ///< in bytes
    };

    /// Something that the library hangs on a store, to go with it.
    class LVP_EXPORT IAttachment {
    public:
        virtual ~IAttachment() = default;
    };

    virtual ~IRecordAccess() = default;

    /// Shows a record without copying it; no bytes for an offset that names no record, as for a record that has none.
    /// The bytes stand until that record is changed, by bookkeeping too, or erased, the store is flushed, or the thread
    /// gives back its last guard; looking at or changing other records leaves them. In a store that other processes
    /// write to they stand under a guard alone. They begin anywhere: numbers in them are copied out.
    virtual tView view(unsigned int offset) = 0;

    /// Overwrites `size` bytes of a record, beginning at byte `position`, by those from `data`; all else of the record
    /// stays. Gives what `view` would show after that. `changed` is what `IDataStore::update` takes. Throws, with
    /// nothing changed, for an offset that names no record and where the bytes do not all lie inside it, also when
    /// there are none of them; a store that was opened for reading may pass over bookkeeping of a record that is gone,
    /// and gives no bytes then. The cost does not depend on the length of a record that is written to often.
    virtual tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                        bool changed) = 0;

    /// Takes the guard that `IDataStore::lock` stands for, without an object, until `leave`: it counts among the others
    /// of the thread, which may be given back in any order. Does nothing in a store that needs no locking. Where it
    /// throws it has taken nothing.
    virtual void enter() = 0;

    /// Gives back what `enter` took. Comes on the thread that has entered, as often as that has.
    virtual void leave() noexcept = 0;

    /// A number that tells whether any content was changed meanwhile: it grows by one with each `create`, `append`,
    /// `erase`, and with each `update` and `write` that is `changed`, whoever asked for it, and by any amount when the
    /// store learns of changes that another process has made. Only while a guard is held does it stand still.
    virtual unsigned long long changes() const = 0;

    /// The place for the one object that the library hangs on the store: empty in a store that was just opened. The
    /// store does nothing with it, and lets it go when it closes, before anything else of it is gone.
    virtual std::unique_ptr<IAttachment>& attachment() = 0;

    /// Says that the records that a list names will be looked at soon: a store to which the way is long brings all of
    /// them at once. They need not be there. Means nothing to other stores. `offsets` are `count` offsets of 32 bits
    /// each, which begin anywhere, as in a view.
    virtual void expect(const void* offsets, unsigned int count) {
        static_cast<void>(offsets);
        static_cast<void>(count);
    }
};

}  // namespace lumivard::platform::core::storage::datastore
