#include "tools/base/Nearest.h"

#include <algorithm>
#include <utility>

namespace lvp::tool {

namespace {

constexpr std::size_t kLongest = 100;  // characters of a text for which names are compared one by one

/// How many characters have to be put in, taken out or replaced to make one text of another (Wagner and Fischer, 1974).
std::size_t distance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t i = 0; i <= to.size(); ++i) row[i] = i;
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

std::vector<std::string> nearest(std::string_view text, const std::vector<std::string>& names, std::size_t most) {
    if (text.empty() || text.size() > kLongest) return {};
    const std::string wanted = lower(text);
    std::vector<std::pair<std::size_t, const std::string*>> near;
    for (const std::string& each : names) {
        if (each.size() > kLongest) continue;
        const std::string name = lower(each);
        const std::size_t changes = distance(name, wanted);
        const bool holds = wanted.size() > 2 && name.find(wanted) != name.npos;
        if (holds || changes <= (wanted.size() + 1) / 3) near.emplace_back(changes, &each);
    }
    std::stable_sort(near.begin(), near.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> found;
    for (std::size_t i = 0; i < near.size() && i < most; ++i) found.push_back(*near[i].second);
    return found;
}

std::string lower(std::string_view text) {
    std::string small(text);
    for (char& character : small) {
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    }
    return small;
}

std::string listed(const std::vector<std::string>& texts) {
    std::string list;
    for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + text;
    return list;
}

}  // namespace lvp::tool
