#pragma once

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>

namespace lumivard::platform::stores::load {

/// Compares a ledger, in which nobody works meanwhile, with what all its writers have noted in a folder, and writes
/// figures as `name=number`, in a line. What is counted began at `since`, in microseconds since 1970; what is compared
/// is all. Throws `Fault` for anything that is not as it was promised.
void check(const std::string& location, const std::string& store, const std::filesystem::path& folder,
           std::uint64_t since, std::ostream& figures);

}  // namespace lumivard::platform::stores::load
