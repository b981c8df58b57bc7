#pragma once

#include <stdexcept>
#include <string>

namespace lvp::tool {

/// What the process tells its caller when it ends.
enum tExitStatus : int {
    kDone = 0,
    kFaults = 1,       ///< done, but the input had faults, which were printed
    kWrongUsage = 2,   ///< the command line makes no sense
    kCannotOpen = 3,   ///< a store or document is not there, cannot be read, or is in use
    kCannotFinish = 4  ///< the work began and could not be ended
};

/// Ends a command with a status and one sentence for the user, which names the file and the cause.
class Failure : public std::runtime_error {
public:
    Failure(tExitStatus status, const std::string& sentence) : std::runtime_error(sentence), _status(status) {}
    tExitStatus status() const { return _status; }

private:
    tExitStatus _status;
};

}  // namespace lvp::tool
