#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

/// What hostile bytes are handed to. Each target does all that it can with any bytes, and gives 0. The same source
/// stands behind a fuzzer (`Entry.cpp`, preset `fuzz`) and behind a test that replays the kept files
/// (`ReplayTest.cpp`).
namespace lumivard::platform::fuzz {

/// An oracle's find: the library came to a result that contradicts what it says of itself. A crash, a leak or an access
/// out of bounds needs no such word; nor does an exception of a kind that no header names, which passes through.
class Find : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

/// Throws a `Find` unless `holds`.
inline void require(bool holds, const std::string& what) {
    if (!holds) throw Find(what);
}

/// The first byte says how, the rest is a document: see `DocumentTarget.cpp`.
int fuzzDocument(const std::uint8_t* data, std::size_t size);

/// A store full of records as `HostileRecords.h` reads them from the bytes, and everything that clients can do with it.
int fuzzRecords(const std::uint8_t* data, std::size_t size);

/// The first byte chooses between base64, UTF-8, wide text and what a document makes of a text.
int fuzzText(const std::uint8_t* data, std::size_t size);

/// The name of a unit, or its number.
int fuzzUnits(const std::uint8_t* data, std::size_t size);

/// A path or the URI of a schema, in UTF-8, against a tree that does not change.
int fuzzPaths(const std::uint8_t* data, std::size_t size);

/// What is changed in the pages of a store file, or, after a "w", the whole of one.
int fuzzPages(const std::uint8_t* data, std::size_t size);

/// Reads one byte too far where the bytes begin with a certain word: the fuzzers' own test. Only in fuzzers, where the
/// address sanitizer sees it.
int fuzzPlanted(const std::uint8_t* data, std::size_t size);

}  // namespace lumivard::platform::fuzz
