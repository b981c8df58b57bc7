#include "tests/fuzz/HostileRecords.h"

namespace lumivard::platform::fuzz {

namespace {

constexpr unsigned int kMostRecords = 32;
constexpr unsigned int kLongestText = 8;

template <class Number>
std::string bytesOf(Number number) {
    return {reinterpret_cast<const char*>(&number), sizeof(number)};
}

std::string word(std::size_t number) {
    return bytesOf(static_cast<std::uint32_t>(number));
}

std::string zeros(std::size_t count) {
    return std::string(count, '\0');
}

/// A number that hostile records like to have somewhere.
std::uint32_t oddNumber(unsigned int byte) {
    constexpr std::uint32_t kOdd[] = {0xFFFFFFFF, 0xFFFFFFFE, 0x80000000, 0x7FFFFFFF, 0xFFFF0000, 0x40000000, 3, 1};
    return byte < 0x80 ? byte : kOdd[byte % 8];
}

}  // namespace

void HostileRecords::fill(core::storage::datastore::IDataStore& store) {
    const unsigned int count = byte() % kMostRecords + 1;
    for (unsigned int i = 0; i < count; ++i) {
        const std::string bytes = record();
        store.create(bytes.data(), static_cast<unsigned int>(bytes.size()));
    }
}

std::string HostileRecords::record() {
    const unsigned int form = byte();
    std::string bytes = whole(form & 7);
    if (form & 16) {
        const std::size_t position = byte();
        const std::string number = word(oddNumber(byte()));
        if (position + number.size() <= bytes.size()) bytes.replace(position, number.size(), number);
    }
    if (form & 8) bytes.resize(bytes.size() - byte() % (bytes.size() + 1));
    return bytes;
}

std::string HostileRecords::whole(unsigned int kind) {
    switch (kind) {
        case 0:
        case 1:
        case 2:
        case 4:
            return entity(kind);
        case 3:
            return list();
        case 5:
            return locale();
        default:
            return raw();
    }
}

// Each of the calls that take bytes is a statement of its own, so that every compiler makes the same of them.
std::string HostileRecords::entity(unsigned int kind) {
    std::string head(1, static_cast<char>(kind));
    head += word(offset());
    head += word(byte() & 3);
    head += word(offset());
    head += static_cast<char>(byte());
    const unsigned int children = kind == 1 ? 0 : offset();
    const std::string name = text();
    if (kind == 0) return head + word(children) + word(name.size()) + zeros(2) + name;
    const std::string base = text();
    if (kind == 2) {
        return head + word(children) + zeros(4) + word(offset()) + word(name.size()) + word(base.size()) + zeros(2) +
               name + base;
    }
    const unsigned int type = byte();
    if (kind == 4) {
        const std::string info = text();
        return head + word(children) + std::string(1, static_cast<char>(type)) + word(name.size()) + word(base.size()) +
               word(info.size()) + zeros(1) + name + base + info;
    }
    const std::string valueLocale = text();
    const unsigned int group = 0x1000u * (byte() & 15);
    const std::string unit = word(group + (byte() & 15));
    const std::string values = value();
    return head + zeros(4) + unit + word(type) + word(valueLocale.size()) + word(name.size()) + word(base.size()) +
           word(values.size()) + zeros(2) + valueLocale + name + base + values;
}

std::string HostileRecords::list() {
    std::string bytes(1, '\3');
    bytes += zeros(3);
    for (unsigned int count = byte() % 16; count != 0; --count) bytes += word(offset());
    return bytes;
}

std::string HostileRecords::locale() {
    std::string payload;
    for (unsigned int count = byte() % 8; count != 0; --count) payload += text();
    return std::string(1, '\5') + word(payload.size()) + zeros(3) + payload;
}

std::string HostileRecords::raw() {
    std::string bytes;
    for (unsigned int count = byte() % 64; count != 0; --count) bytes += static_cast<char>(byte());
    return bytes;
}

unsigned int HostileRecords::offset() {
    const unsigned int chosen = byte();
    return chosen < 2 * kMostRecords ? chosen : oddNumber(chosen);
}

std::string HostileRecords::text() {
    const unsigned int form = byte();
    std::string bytes;
    for (unsigned int count = form % kLongestText; count != 0; --count) bytes += bytesOf(static_cast<wchar_t>(byte()));
    const bool ended = (form & 0x80) == 0;
    return form == 0 || !ended ? bytes : bytes + zeros(sizeof(wchar_t));
}

std::string HostileRecords::value() {
    std::string bytes;
    for (unsigned int count = byte() % 80; count != 0; --count) bytes += static_cast<char>(byte());
    return bytes;
}

}  // namespace lumivard::platform::fuzz
