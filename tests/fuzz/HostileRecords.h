#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::fuzz {

/// Makes records out of any bytes. Most have the form of one of the kinds, and small numbers for offsets, so that they
/// refer to each other; any may be cut short or have one field that fits nothing. The layouts stand here a second time
/// on purpose.
///
/// The first byte is how many records there are, less one. Each begins with a byte: its low 3 bits are the kind, 6 and
/// 7 being bytes as they come; 8 cuts the record; 16 puts a number into it.
class HostileRecords {
public:
    HostileRecords(const std::uint8_t* data, std::size_t size) : _next(data), _end(data + size) {}

    /// Puts the records into an empty store.
    void fill(core::storage::datastore::IDataStore& store);

    /// The next byte that is not part of a record; 0 at the end.
    std::uint8_t byte() { return _next == _end ? std::uint8_t{0} : *_next++; }

private:
    std::string record();
    std::string whole(unsigned int kind);
    std::string entity(unsigned int kind);
    std::string list();
    std::string locale();
    std::string raw();

    unsigned int offset();
    std::string text();
    std::string value();

    const std::uint8_t* _next;
    const std::uint8_t* _end;
};

}  // namespace lumivard::platform::fuzz
