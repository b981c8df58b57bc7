#include "check/Findings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumivard::platform::data::Check {

bool Findings::add(tRule number, unsigned int offset, std::string found, std::string repair, tSeverity most) {
    const Rule& broken = rule(number);
    const tSeverity severity = std::min(broken.severity, most);
    if (_options.without.contains(broken.code)) return false;
    ++_byCode[broken.code];
    ++_bySeverity[static_cast<std::size_t>(severity)];
    const tKey key{offset, number, _count++};
    const bool full = _kept.size() >= _options.keep;
    if (full && (_kept.empty() || std::prev(_kept.end())->first < key)) return true;
    _kept.emplace(key, Finding{broken.code, severity, offset, {}, std::move(found), std::move(repair)});
    if (full) _kept.erase(std::prev(_kept.end()));
    return true;
}

}  // namespace lumivard::platform::data::Check
