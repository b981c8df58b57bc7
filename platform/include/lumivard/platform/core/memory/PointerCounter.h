#pragma once

#include <atomic>
#include <new>
#include <utility>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/memory/IPointerCounter.h"

namespace lumivard::platform::core::memory {

/// Disposes of an object in a way of its own, for counters that do not know the object's type.
class LVP_EXPORT IPointerDisposer {
public:
    virtual ~IPointerDisposer() = default;
    /// Deletes the object. Called once.
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

    /// Without a size: the block may hold the object too.
    static void operator delete(void* block) noexcept { ::operator delete(block); }

private:
    T* _object;
};

/// An object of the class `Whole` that lies behind its counter in one block of memory. Disposing of it ends it and
/// leaves the block to the counter.
template <class Whole>
class _Boxed final : public Whole {
public:
    using Whole::Whole;
    static void operator delete(void*) noexcept {}
};

/// A counter with its object behind it.
template <class Whole, class T>
class _Box {
public:
    /// Makes both in one block, which goes when the counter is destroyed.
    template <class... Arguments>
    static _Box* make(Arguments&&... arguments) {
        static_assert(alignof(_Box) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "the block is aligned for usual types");
        void* const block = ::operator new(sizeof(_Box));
        try {
            return ::new (block) _Box(std::forward<Arguments>(arguments)...);
        } catch (...) {
            ::operator delete(block);
            throw;
        }
    }

    union {
        _CounterImp<T> counter;  ///< at the beginning of the block, so that deleting it gives the block back
    };
    union {
        _Boxed<Whole> object;
    };

    _Box(const _Box&) = delete;
    _Box& operator=(const _Box&) = delete;

private:
    template <class... Arguments>
    explicit _Box(Arguments&&... arguments) : object(std::forward<Arguments>(arguments)...) {
        ::new (&counter) _CounterImp<T>(&object);
    }
    ~_Box() {}
};

}  // namespace _Private::_Counter
}  // namespace lumivard::platform::core::memory
