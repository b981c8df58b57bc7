#pragma once

#include <cstdint>

namespace lumivard::platform::data::Metadata {

/// Watches a walk along parent offsets, so that a chain that returns into itself ends: cycle detection after Richard
/// P. Brent, in constant space.
class Ascent {
public:
    /// Takes note of the next offset on the way; false when the walk has come round.
    bool step(unsigned int offset) {
        if (_steps == 0) {
            _mark = offset;
        } else if (offset == _mark) {
            return false;
        }
        if (++_steps > _limit) {
            _mark = offset;
            _limit *= 2;
            _steps = 1;
        }
        return true;
    }

private:
    unsigned int _mark = 0;
    std::uint64_t _steps = 0;
    std::uint64_t _limit = 1;
};

}  // namespace lumivard::platform::data::Metadata
