#include "stores/lmdb/Verification.h"

#include <span>
#include <string>
#include <utility>

#include "stores/lmdb/PageReader.h"
#include "stores/lmdb/PageVerifier.h"

namespace lumivard::platform::stores::lmdb {

namespace {

constexpr int kMostTries = 100;

// The file's two descriptions of itself, of which every commit changes one.
std::string descriptions(int descriptor) {
    std::string bytes(2 * page::kLargest, '\0');
    static_cast<void>(PageReader(descriptor).read(0, std::as_writable_bytes(std::span(bytes))));
    return bytes;
}

std::string refusal(const FileFault& fault) {
    if (fault.code == "container.header") return fault.text;
    return "it is not a store file, or it is damaged: " + fault.text;
}

}  // namespace

// A writer may change pages between two reads of them: a fault is there if it is found while nobody writes.
FileReport verifyHeader(int descriptor) {
    std::string before;
    for (int tries = 1;; ++tries) {
        PageVerifier verifier{PageReader(descriptor)};
        if (verifier.readMetas()) verifier.verifyHeader();
        if (verifier.report().faultCount == 0 || tries == kMostTries) return verifier.report();
        const std::string after = descriptions(descriptor);
        if (after == std::exchange(before, after)) return verifier.report();
    }
}

std::optional<FileReport> verifyAll(int descriptor, std::uint64_t transaction, bool values, const tProgress& progress) {
    for (int tries = 1;; ++tries) {
        PageVerifier verifier{PageReader(descriptor)};
        if (verifier.readMetas()) {
            if (!verifier.useTransaction(transaction)) return std::nullopt;
            verifier.verifyAll(values, progress);
        } else if (tries < kMostTries) {
            continue;  // a writer may have changed one of them meanwhile
        }
        return verifier.report();
    }
}

bool isShort(const FileReport& report) {
    return report.length / report.pageSize < report.pages;
}

void requireSound(const FileReport& report) {
    if (!report.faults.empty()) throw UnsoundFile(report);
}

UnsoundFile::UnsoundFile(const FileReport& report) : EngineError(refusal(report.faults.front())), _report(report) {}

}  // namespace lumivard::platform::stores::lmdb
