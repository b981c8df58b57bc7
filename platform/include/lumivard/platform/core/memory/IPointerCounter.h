#pragma once

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::core::memory {

/// Counts the owners of one object, and of itself. The reference count keeps the counter alive, the use count keeps the
/// object alive; all uses together hold one reference. Threads: every operation is atomic.
class LVP_EXPORT IPointerCounter {
public:
    /// Adds a reference to the counter.
    virtual void addRef() = 0;
    /// Drops a reference; the last one destroys the counter.
    virtual void release() = 0;
    /// The number of references.
    virtual long long count() const = 0;
    /// Adds a use of the object; false, and nothing added, when the object is already gone.
    virtual bool addUse() = 0;
    /// Drops a use; the last one disposes of the object and gives back the reference that the uses held.
    virtual void releaseUse() = 0;
    /// The number of uses; 0 once the object is gone.
    virtual long long countUse() const = 0;
    virtual ~IPointerCounter() = default;
    /// Deletes the counter itself. Called by `release`.
    virtual void _doDestroy() = 0;
    /// Deletes the object. Called by `releaseUse`.
    virtual void _doDispose() = 0;
};

}  // namespace lumivard::platform::core::memory
