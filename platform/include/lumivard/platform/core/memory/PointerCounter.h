#pragma once

#include <atomic>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/memory/IPointerCounter.h"

namespace lumivard::platform::core::memory {

/// Disposes of an object in a way of its own, for counters that do not know the object's type.
class LVP_EXPORT IPointerDisposer {
public:
    virtual ~IPointerDisposer() = default;
    virtual void dispose() = 0;
};

/// The counter behind `SharedPtr`. A new one counts nothing; the pointer that takes it adds the first reference and
/// use.
class LVP_EXPORT DefaultPointerCounterImp : public IPointerCounter {
public:
    DefaultPointerCounterImp() = default;
    DefaultPointerCounterImp(const DefaultPointerCounterImp&) = delete;
    DefaultPointerCounterImp& operator=(const DefaultPointerCounterImp&) = delete;

    void addRef() override;
    void release() override;
    long long count() const override;
    bool addUse() override;
    void releaseUse() override;
    long long countUse() const override;
    ~DefaultPointerCounterImp() override;
    void _doDestroy() override;
    void _doDispose() override;

private:
    static constexpr long long kGone = -1;

    std::atomic<long long> _references{0};
    std::atomic<long long> _uses{0};
    IPointerDisposer* _disposer = nullptr;
};

namespace _Private::_Counter {

/// The counter of an object of the class `T`, which it deletes through its virtual destructor.
template <class T>
class _CounterImp final : public DefaultPointerCounterImp {
public:
    explicit _CounterImp(T* object) : _object(object) {}
    ~_CounterImp() override = default;
    void _doDispose() override { delete _object; }

private:
    T* _object;
};

}  // namespace _Private::_Counter
}  // namespace lumivard::platform::core::memory
