#pragma once

#include <unistd.h>

#include <utility>

namespace lumivard::platform::stores {

/// Owns an open file descriptor, or none (-1).
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) noexcept : _descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(_descriptor, other._descriptor);
        return *this;
    }
    ~FileDescriptor() {
        if (_descriptor >= 0) ::close(_descriptor);
    }

    explicit operator bool() const noexcept { return _descriptor >= 0; }
    int get() const noexcept { return _descriptor; }

private:
    int _descriptor = -1;
};

}  // namespace lumivard::platform::stores
