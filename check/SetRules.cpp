#include "check/SetRules.h"

#include <unordered_map>
#include <utility>

namespace lumivard::platform::data::Check {

namespace {

/// The names of a set. Each knows the number that the next item of that name would get.
using tNames = std::unordered_map<std::wstring, unsigned int>;

/// A name that is not among those, made of one that is.
std::wstring freeName(tNames& names, const std::wstring& name) {
    for (unsigned int& number = names[name];;) {
        std::wstring made = name + L'~' + std::to_wstring(++number);
        if (!names.contains(made)) return made;
    }
}

void judgeDuplicate(Case& subject, tNames& names, unsigned int item, const std::wstring& name) {
    const tNode& node = subject.census[item];
    const std::string found = "its set has another item of the name " + quoted(name);
    if (!node.sound) {
        // Where a section claims too much, another name would be a guess at the others.
        subject.findings.add(kDuplicateName, node.offset, found);
        return;
    }
    std::wstring made = freeName(names, name);
    if (!subject.findings.add(kDuplicateName, node.offset, found, "renamed to " + quoted(made))) return;
    names.emplace(made, 1);
    subject.edits.rename(node.offset, std::move(made));
}

}  // namespace

void judgeNames(Case& subject, const std::vector<unsigned int>& items) {
    tNames names(items.size());
    std::vector<std::pair<unsigned int, std::wstring>> duplicates;
    for (const unsigned int item : items) {
        std::wstring name = subject.name(item);
        const tNode& node = subject.census[item];
        if (!node.readable) continue;
        if (name.empty() && node.sound) subject.findings.add(kEmptyName, node.offset, "it has no name");
        if (name.find(L'.') != std::wstring::npos) {
            subject.findings.add(kDottedName, node.offset, "its name is " + quoted(name));
        }
        const auto [entry, isNew] = names.try_emplace(std::move(name), 1);
        if (!isNew) duplicates.emplace_back(item, entry->first);
    }
    // Only now all names are known that a new one must differ from.
    for (const auto& [item, name] : duplicates) judgeDuplicate(subject, names, item, name);
}

}  // namespace lumivard::platform::data::Check
