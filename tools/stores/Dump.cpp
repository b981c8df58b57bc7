#include <charconv>
#include <iostream>
#include <memory>

#include "lumivard/platform/data/check/Dump.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Location.h"
#include "tools/base/Text.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

constexpr std::size_t kBytesOnALine = 16;
constexpr std::size_t kColumns = 60;

struct tOptions {
    std::string store;
    std::string offset;
    bool json = false;
};

std::string hexadecimal(const std::string& bytes, std::size_t begin, std::size_t size) {
    std::string text;
    for (std::size_t i = begin; i < begin + size; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 15];
    }
    return text;
}

std::string padded(std::string text, std::size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

/// A line for a field, and more for the bytes that do not fit on it.
void print(const check::Dump& dump, const check::Field& field) {
    const std::size_t first = std::min(field.size, kBytesOnALine);
    std::cout << padded(std::to_string(field.position), 8) << padded(field.name, 20)
              << padded(hexadecimal(dump.bytes, field.position, first), 2 * kBytesOnALine + 2)
              << shortened(field.meaning, kColumns) << '\n';
    for (std::size_t done = first; done < field.size; done += kBytesOnALine) {
        std::cout << padded(std::to_string(field.position + done), 28)
                  << hexadecimal(dump.bytes, field.position + done, std::min(kBytesOnALine, field.size - done)) << '\n';
    }
}

void printJson(const tOptions& options, unsigned int offset, const check::Dump& dump) {
    JsonWriter json(std::cout);
    json.beginObject();
    json.key("store").value(shown(options.store));
    json.key("offset").value(offset);
    json.key("kind").value(dump.kind);
    json.key("bytes").value(hexadecimal(dump.bytes, 0, dump.bytes.size()));
    json.key("fields").beginArray();
    for (const check::Field& field : dump.parts) {
        json.beginObject();
        json.key("name").value(field.name);
        json.key("position").value(field.position);
        json.key("size").value(field.size);
        json.key("meaning").value(field.meaning);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << '\n';
}

tExitStatus dumpRecord(const tOptions& options) {
    unsigned int offset = 0;
    const char* const end = options.offset.data() + options.offset.size();
    const auto read = std::from_chars(options.offset.data(), end, offset);
    if (read.ec != std::errc() || read.ptr != end) {
        throw Failure(kWrongUsage, "\"" + options.offset + "\" is no offset: give a number, as check tells it");
    }
    const auto store = openToRead(options.store);
    requireSetUp(*store, options.store);
    const check::Dump dump = check::dump(*store, offset);
    if (!dump.there) {
        throw Failure(kCannotOpen, "the store " + options.store + " has no record at the offset " + options.offset);
    }
    if (options.json) {
        printJson(options, offset, dump);
    } else {
        std::cout << "offset " << offset << ", " << dump.kind << ", " << dump.bytes.size() << " bytes:\n";
        for (const check::Field& field : dump.parts) print(dump, field);
    }
    flushOutput();
    return kDone;
}

}  // namespace

void declareDump(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("dump", "Show the bytes of one record, with each field named", "dump materials.lvp 0",
             [options] { return dumpRecord(*options); })
        .store(options->store)
        .argument("OFFSET", options->offset, "The record's number, as check tells it")
        .json(options->json);
}

}  // namespace lvp::tool
