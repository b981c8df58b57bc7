#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace lumivard::platform::stores::load {

/// One of the processes that use a store together.
struct tTask {
    std::string location;
    std::filesystem::path folder;  ///< for its notes; while it holds a file "hold", nothing is begun
    unsigned int number = 0;       ///< of the worker
    std::uint64_t steps = 0;       ///< how many to take; 0: until told to stop by SIGTERM
};

/// Takes steps in a ledger, each under a guard, and notes in `writer.<number>` what became of each. Goes on after
/// errors of the store, as an application would: opens it again where it may not be changed any more. Throws `Fault`.
void write(const tTask& task);

/// Looks at a ledger, which it opens for reading only, over and over: it has to agree, and never to go back. Notes
/// errors in `reader.<number>`, and at the end how often it has looked. Throws `Fault`.
void read(const tTask& task);

}  // namespace lumivard::platform::stores::load
