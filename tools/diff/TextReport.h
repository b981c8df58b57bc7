#pragma once

#include <ostream>

#include "tools/diff/Difference.h"

namespace lvp::tool {

/// Writes a line for each difference.
class TextReport : public IReport {
public:
    TextReport(std::ostream& out, bool colours) : _out(out), _colours(colours) {}

    void tell(const tDifference& difference) override;

private:
    std::ostream& _out;
    bool _colours;
};

}  // namespace lvp::tool
