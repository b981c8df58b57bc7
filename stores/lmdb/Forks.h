#pragma once

namespace lumivard::platform::stores::forks {

/// By which a child made by fork() is told from its parent without a call of the system, for what is asked very often.

/// Has `count` count from now on. Throws `std::bad_alloc`.
void watch();

/// How many calls of fork() have led from the process that watches first to this one.
unsigned long count() noexcept;

}  // namespace lumivard::platform::stores::forks
