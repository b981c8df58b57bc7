#include "tools/base/Files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <system_error>

#include "lumivard/platform/core/io/FileWriter.h"
#include "lumivard/platform/stores.h"
#ifdef LVP_TOOL_POSTGRES
#include "lumivard/platform/stores/Postgres.h"
#endif
#include "tools/base/ExitStatus.h"
#include "tools/base/Location.h"
#include "tools/base/Watch.h"

namespace lvp::tool {

namespace stores = lumivard::platform::stores;

namespace {

#ifdef LVP_TOOL_POSTGRES
/// Opens a store in a database. Nobody takes its guard again when it is given back, so it is not kept.
HeldStore openLocation(const std::string& location, stores::tMode mode) {
    try {
        return HeldStore(stores::postgres(location, mode, {.keep = std::chrono::milliseconds(0)}));
    } catch (const stores::StoreError& failure) {
        const std::string words = failure.what();
        const bool isNone = words.find("no store \"") != words.npos || words.find("no stores in") != words.npos;
        const std::string advice = " lvp-data store create makes one, store list shows those that there are";
        throw Failure(kCannotOpen, words + (isNone ? advice : ""));
    }
}
#endif

void refuseSlip(const std::string& store) {
    if (!isAlmostLocation(store)) return;
    throw Failure(kCannotOpen, "cannot open " + store + ": the location of a store begins with postgresql://");
}

HeldStore openStore(const std::string& store, stores::tMode mode) {
    refuseSlip(store);
    if (store == "memory:")
        throw Failure(kCannotOpen, "a store in memory would be gone with this command: give a file");
    Watch watch("opening " + shown(store), "pages");
#ifdef LVP_TOOL_POSTGRES
    if (isLocation(store)) return openLocation(store, mode);
#endif
    // A file that is made here has nothing to measure, and is not left behind by an interrupt.
    const auto listener = isThere(store) ? watch.listener() : stores::tProgress();
    try {
        // Whoever turns to the tool may do so because a file is damaged: every page is measured first.
        return HeldStore(stores::open(store, mode, {.verify = true, .progress = listener}));
    } catch (const stores::StoreError& failure) {
        refuseStore(store, failure);
    }
}

[[noreturn]] void cannotWrite() {
    throw std::system_error(errno, std::generic_category(), "standard output");
}

}  // namespace

void refuseStore(const std::string& store, const stores::StoreError& error) {
    if (isDocument(store)) {
        throw Failure(kCannotOpen, store + " is an XML document and no store: lvp-data import makes a store of it");
    }
    throw Failure(kCannotOpen, error.what());
}

HeldStore openToRead(const std::string& store) {
    return openStore(store, stores::tMode::kRead);
}

HeldStore openToWrite(const std::string& store) {
    return openStore(store, stores::tMode::kWrite);
}

HeldStore openToChange(const std::string& store) {
    if (!isThere(store)) {
        refuseSlip(store);
        throw Failure(kCannotOpen, "Cannot open the store \"" + store + "\": there is no such file.");
    }
    return openToWrite(store);
}

bool isThere(const std::string& store) {
    std::error_code error;
    return isLocation(store) || std::filesystem::exists(store, error);
}

bool isDocument(const std::string& file) {
    if (isLocation(file)) return false;
    std::error_code error;
    if (file == "-" || std::filesystem::is_fifo(file, error)) return true;  // where no store can be
    if (!std::filesystem::is_regular_file(file, error)) return false;
    constexpr std::string_view kBefore("\0 \t\n\r\xEF\xBB\xBF\xFE\xFF", 10);
    std::ifstream in(file, std::ios::binary);
    for (char byte; in.get(byte);) {
        if (byte == '<') return true;
        if (kBefore.find(byte) == std::string_view::npos) return false;
    }
    return false;
}

bool isSameStore(const std::string& a, const std::string& b) {
    if (isLocation(a) || isLocation(b)) return isSameLocation(a, b);
    std::error_code error;
    return std::filesystem::equivalent(a, b, error) && !error;
}

void refuseOutput(const char* what, const std::string& output, const std::string& store,
                  const std::vector<std::string>& others) {
    if (isLocation(output)) {
        throw Failure(kCannotOpen, std::string("cannot write ") + what + " " + output +
                                       ": it is the location of a store, and what is written is a file");
    }
    const auto refuse = [&](const std::string& input) {
        if (output.empty() || (!isSameStore(input, output) && !isSameStore(input + "-lock", output))) return;
        throw Failure(kCannotOpen,
                      std::string(what) + " " + output + " would replace " + input + ", which it is made from");
    };
    refuse(store);
    for (const std::string& other : others) refuse(other);
}

std::unique_ptr<lumivard::platform::core::io::IDataWriter> openOutput(const char* what, const std::string& output) {
    std::unique_ptr<lumivard::platform::core::io::IDataWriter> writer;
    if (output.empty()) {
        writer = std::make_unique<StandardOutput>();
    } else {
        writer = std::make_unique<lumivard::platform::core::io::FileWriter>(output);
    }
    errno = 0;
    if (!writer->open()) {
        throw Failure(kCannotOpen, std::string("cannot write ") + what + " " + output + ": " +
                                       std::generic_category().message(errno));
    }
    return writer;
}

void flushOutput() {
    if (!std::cout.flush()) throw Failure(kCannotFinish, "cannot write to standard output");
}

bool isTerminalOutput() {
    return ::isatty(STDOUT_FILENO) == 1;
}

void requireReadable(const std::string& document) {
    // Not by opening it: who writes into a pipe would have lost his reader.
    struct stat status {};
    if (document == "-") return;
    if (isLocation(document)) {
        throw Failure(kCannotOpen, document + " is a store and no document: lvp-data export makes a document of it");
    }
    errno = ::stat(document.c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? EISDIR : 0;
    if (errno == 0 && ::access(document.c_str(), R_OK) == 0) return;
    throw Failure(kCannotOpen, "cannot read the document " + document + ": " + std::generic_category().message(errno));
}

void requireSetUp(IDataStore& store, const std::string& name) {
    if (store.extent() == 0) throw Failure(kCannotOpen, "the store " + name + " is empty");
}

void StandardOutput::write(const void* data, unsigned long size) {
    if (std::fwrite(data, 1, size, stdout) != size) cannotWrite();
}

void StandardOutput::close() {
    if (std::fflush(stdout) != 0) cannotWrite();
}

}  // namespace lvp::tool
