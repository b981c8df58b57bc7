#pragma once

#include <ostream>
#include <string>

#include "tools/diff/Difference.h"

namespace lvp::tool {

/// Writes one page that needs nothing else: the two sides beside each other, under the path of what holds the items.
class HtmlReport : public IReport {
public:
    /// Begins the page.
    HtmlReport(std::ostream& out, const std::string& a, const std::string& b);

    void tell(const tDifference& difference) override;

    /// Ends the page.
    void finish(const tCounts& counts, unsigned long faults);

private:
    void beginSection(const std::string& owner);
    void endSection();

    std::ostream& _out;
    bool _open = false;
    std::string _owner;
    std::string _head;
};

}  // namespace lvp::tool
