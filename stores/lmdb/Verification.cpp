#include "stores/lmdb/Verification.h"

#include "stores/engine/EngineError.h"
#include "stores/lmdb/PageReader.h"
#include "stores/lmdb/PageVerifier.h"

namespace lumivard::platform::stores::lmdb {

namespace {

constexpr int kMostTries = 5;

// A writer may change pages between two reads of them: only a fault that is found again and again is there.
template <class Examine>
FileReport examineAgain(int descriptor, Examine examine) {
    for (int tries = 1;; ++tries) {
        PageVerifier verifier{PageReader(descriptor)};
        if (verifier.readMetas()) examine(verifier);
        if (verifier.report().faultCount == 0 || tries == kMostTries) return verifier.report();
    }
}

}  // namespace

FileReport verifyHeader(int descriptor) {
    return examineAgain(descriptor, [](PageVerifier& verifier) { verifier.verifyHeader(); });
}

FileReport verifyNewest(int descriptor, bool values) {
    return examineAgain(descriptor, [&](PageVerifier& verifier) { verifier.verifyAll(values); });
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
    if (report.faults.empty()) return;
    const FileFault& first = report.faults.front();
    if (first.code == "container.header") throw EngineError(first.text);
    throw EngineError("it is not a store file, or it is damaged: " + first.text);
}

}  // namespace lumivard::platform::stores::lmdb
