#pragma once

#include <memory>
#include <utility>

#include "lumivard/platform/core/memory/PointerCounter.h"

/// Counted pointers, and the heap of small blocks.
namespace lumivard::platform::core::memory {

/// A counted pointer: the form in which the public interfaces hand out objects. The last pointer to go deletes the
/// object. Two plain pointers: the object and its counter.
///
/// Threads: copies of one pointer may be made and dropped on different threads; one `SharedPtr` object belongs to one
/// thread at a time.
template <class T>
class SharedPtr {
public:
    /// A null pointer, without a counter.
    SharedPtr() noexcept = default;

    /// Takes over a fresh object with its fresh counter, adding the first reference and the first use. A null object
    /// comes with a null counter.
    SharedPtr(T* object, IPointerCounter* counter) : _object(object), _counter(counter) {
        if (_counter) {
            _counter->addRef();
            _counter->addUse();
        }
    }

    /// Another pointer to the same object, which adds a use.
    SharedPtr(const SharedPtr& other) noexcept : _object(other._object), _counter(other._counter) {
        if (_counter) _counter->addUse();
    }

    /// Takes the object over; `other` is null then.
    SharedPtr(SharedPtr&& other) noexcept
        : _object(std::exchange(other._object, nullptr)), _counter(std::exchange(other._counter, nullptr)) {}

    /// Drops the object and takes that of `other`.
    SharedPtr& operator=(SharedPtr other) noexcept {
        std::swap(_object, other._object);
        std::swap(_counter, other._counter);
        return *this;
    }

    ~SharedPtr() {
        if (_counter) _counter->releaseUse();
    }

    /// The object, which goes on being owned by all pointers to it together; null for a null pointer.
    T* get() const noexcept { return _object; }
    /// The same; not for a null pointer.
    T* operator->() const noexcept { return _object; }
    /// The object itself; not for a null pointer.
    T& operator*() const noexcept { return *_object; }
    /// Whether there is an object.
    explicit operator bool() const noexcept { return _object != nullptr; }

    /// Drops the object and becomes null.
    void reset() noexcept { *this = SharedPtr(); }

    /// The counter, owned by all pointers to the object together; null for a null pointer.
    IPointerCounter* counter() const noexcept { return _counter; }

private:
    T* _object = nullptr;
    IPointerCounter* _counter = nullptr;
};

/// Gives a fresh object of the class `Whole` a counter, and returns it as its base `T`. The object is deleted when the
/// counter cannot be made.
template <class T, class Whole>
SharedPtr<T> share(std::unique_ptr<Whole> object) {
    if (!object) return {};
    auto* counter = new _Private::_Counter::_CounterImp<Whole>(object.get());
    Whole* whole = object.release();
    return SharedPtr<T>(whole, counter);
}

/// Makes an object of the class `Whole` together with its counter, in one block of memory, and returns it as its base
/// `T`. It is counted, and deleted, as a `Counted`. What the constructor throws passes through.
template <class T, class Whole, class Counted = Whole, class... Arguments>
SharedPtr<T> makeShared(Arguments&&... arguments) {
    auto* box = _Private::_Counter::_Box<Whole, Counted>::make(std::forward<Arguments>(arguments)...);
    return SharedPtr<T>(&box->object, &box->counter);
}

/// How an object that is held by an owning pointer of a type is deleted.
template <class T>
struct PointerTraits {
    /// Deletes the object through its virtual destructor; null does nothing.
    static void _Deletor(const void* object) { delete static_cast<const T*>(object); }
};

}  // namespace lumivard::platform::core::memory
