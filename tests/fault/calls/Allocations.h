#pragma once

#include <cstddef>

/// The memory of this process, of which each request can be made to fail: those of this program, of the libraries under
/// test and of the libraries below them. Under a sanitizer, whose own `malloc` cannot be replaced, it is what goes
/// through `operator new`, and that of C libraries does not fail.
///
/// Requests fail on the thread that told so; others are counted as blocks only.
namespace lumivard::platform::test_support::fault::allocations {

/// Lets `passing` more requests of this thread pass and fails the next, or for `forEver` all that follow.
void failAfter(long long passing, bool forEver);

/// Fails no more, and tells how many failed.
long long goOn();

/// How many requests of this thread came since `failAfter`.
long long requests();

/// The largest of them, in bytes.
std::size_t largest();

/// How many blocks there are.
long long blocks();

}  // namespace lumivard::platform::test_support::fault::allocations
