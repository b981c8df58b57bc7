#include "tools/base/Files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <system_error>

#include "lumivard/platform/core/io/FileWriter.h"
#include "lumivard/platform/stores.h"
#include "tools/base/ExitStatus.h"
#include "tools/base/Watch.h"

namespace lvp::tool {

namespace stores = lumivard::platform::stores;

namespace {

std::unique_ptr<IDataStore> openStore(const std::string& store, stores::tMode mode) {
    if (store == "memory:")
        throw Failure(kCannotOpen, "a store in memory would be gone with this command: give a file");
    Watch watch("opening " + store, "pages");
    // A file that is made here has nothing to measure, and is not left behind by an interrupt.
    std::error_code error;
    const auto listener = std::filesystem::exists(store, error) ? watch.listener() : stores::tProgress();
    try {
        // Whoever turns to the tool may do so because a file is damaged: every page is measured first.
        return stores::open(store, mode, {.verify = true, .progress = listener});
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

std::unique_ptr<IDataStore> openToRead(const std::string& store) {
    return openStore(store, stores::tMode::kRead);
}

std::unique_ptr<IDataStore> openToWrite(const std::string& store) {
    return openStore(store, stores::tMode::kWrite);
}

std::unique_ptr<IDataStore> openToChange(const std::string& store) {
    std::error_code error;
    if (!std::filesystem::exists(store, error)) {
        throw Failure(kCannotOpen, "Cannot open the store \"" + store + "\": there is no such file.");
    }
    return openToWrite(store);
}

bool isDocument(const std::string& file) {
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

bool isSameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    return std::filesystem::equivalent(a, b, error) && !error;
}

void refuseOutput(const char* what, const std::string& output, const std::string& store,
                  const std::vector<std::string>& others) {
    const auto refuse = [&](const std::string& input) {
        if (output.empty() || (!isSameFile(input, output) && !isSameFile(input + "-lock", output))) return;
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
