#include "stores/lmdb/Verification.h"

#include "stores/lmdb/PageReader.h"
#include "stores/lmdb/PageVerifier.h"

namespace lumivard::platform::stores::lmdb {

namespace {

// A writer may change pages between two reads of them: only a fault that is found again and again is there.
constexpr int kMostTries = 20;

std::string refusal(const FileFault& fault) {
    if (fault.code == "container.header") return fault.text;
    return "it is not a store file, or it is damaged: " + fault.text;
}

}  // namespace

FileReport verifyHeader(int descriptor) {
    for (int tries = 1;; ++tries) {
        PageVerifier verifier{PageReader(descriptor)};
        if (verifier.readMetas()) verifier.verifyHeader();
        if (verifier.report().faultCount == 0 || tries == kMostTries) return verifier.report();
    }
}

std::optional<FileReport> verifyAll(int descriptor, std::uint64_t transaction, bool values) {
    for (int tries = 1;; ++tries) {
        PageVerifier verifier{PageReader(descriptor)};
        if (verifier.readMetas()) {
            if (!verifier.useTransaction(transaction)) return std::nullopt;
            verifier.verifyAll(values);
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
