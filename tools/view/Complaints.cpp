#include "tools/view/Complaints.h"

#include <algorithm>
#include <map>
#include <unordered_map>

#include "lumivard/platform/data.h"
#include "tools/base/Text.h"
#include "tools/items/Items.h"
#include "tools/schemas/Conformance.h"

namespace lvp::tool {

using namespace data;

namespace {

/// A name as the checker tells it in a path.
std::wstring shortName(const std::wstring& name) {
    constexpr std::size_t kMost = 60;
    return name.size() > kMost ? name.substr(0, kMost) + L"\u2026" : name;
}

/// Goes over items, and keeps the path of names to each: as the checker tells it, or such that an item can be opened by
/// it.
class Paths {
public:
    enum tWay { kTold, kOpened };

    Paths(const tPageItems& items, tWay way) : _items(items), _way(way) {}

    /// The path to the next item, from 0 on. Null for one that is too deep or has too long a path, or that no path
    /// opens, and for all below it.
    const std::wstring* next() {
        const std::size_t item = _next++;
        const std::size_t level = _items.level[item];
        if (level == 0) return &_path;
        if (level > _ends.size() || level > kLevels) return nullptr;
        _ends.resize(level);
        _path.resize(_ends.back());
        const std::wstring& name = _items.nameOf(item);
        if (_way == kOpened && name.find(L'.') != name.npos) return nullptr;
        if (level > 1) _path += L'.';
        _path += _way == kTold ? shortName(name) : name;
        if (_path.size() > kLength) return nullptr;
        _ends.push_back(_path.size());
        return &_path;
    }

private:
    static constexpr std::size_t kLevels = 1'000;
    static constexpr std::size_t kLength = 10'000;

    const tPageItems& _items;
    tWay _way;
    std::size_t _next = 0;
    std::vector<std::size_t> _ends{0};  ///< where the path to each set that is open ends; that to the root is empty
    std::wstring _path;
};

/// An item that is held against schemas.
struct tSubject {
    SharedPtr<structure::IContainer> container;
    SharedPtr<metadata::IProperty> property;

    tSubject(IDataStore& store, const std::string& path, bool isTable) {
        if (isTable) {
            property = propertyAt(store, path);
        } else {
            container = containerAt(store, path);
        }
    }
    std::string difference(metadata::ISchema* schema) const {
        if (container) return firstDifference(*container, schema);
        auto* table = metadata::ITable::to(property.get());
        return table ? firstDifference(*table, schema) : std::string();
    }
    explicit operator bool() const { return container || metadata::ITable::to(property.get()); }
};

/// Schemas by their URIs, each looked for once; null for one that there is not.
class Known {
public:
    explicit Known(const Schemas& schemas) : _schemas(schemas) {}

    metadata::ISchema* find(const std::wstring& uri) {
        const auto [entry, isNew] = _known.try_emplace(uri);
        if (isNew) entry->second = _schemas.locator()->resolve(uri.c_str());
        return entry->second.get();
    }
    std::vector<std::wstring> found() const {
        std::vector<std::wstring> uris;
        for (const auto& [uri, schema] : _known) {
            if (schema) uris.push_back(uri);
        }
        return uris;
    }

private:
    const Schemas& _schemas;
    std::map<std::wstring, SharedPtr<metadata::ISchema>> _known;
};

std::vector<std::wstring> split(const std::wstring& uris) {
    std::vector<std::wstring> all;
    for (std::size_t begin = 0; begin <= uris.size();) {
        const std::size_t end = std::min(uris.find(L';', begin), uris.size());
        if (end != begin) all.push_back(uris.substr(begin, end - begin));
        begin = end + 1;
    }
    return all;
}

/// What came of holding an item against its schemas.
struct tVerdict {
    std::wstring uris;       ///< the known ones, which it conforms to, or the first that it does not; empty for none
    std::string difference;  ///< from that one, behind its name
};

tVerdict compare(const tSubject& subject, const std::wstring& uris, Known& known) {
    tVerdict verdict;
    for (const std::wstring& uri : split(uris)) {
        metadata::ISchema* schema = known.find(uri);
        if (!schema) continue;
        const std::string cause = subject.difference(schema);
        if (!cause.empty()) return {uri, printable(utf8(uri)) + ": " + cause};
        verdict.uris += (verdict.uris.empty() ? L"" : L";") + uri;
    }
    return verdict;
}

}  // namespace

std::vector<std::size_t> itemsOf(const std::vector<check::Finding>& findings, const tPageItems& items) {
    std::vector<std::size_t> found(findings.size(), kNoItem);
    std::unordered_multimap<std::wstring, std::size_t> wanted;
    for (std::size_t i = 0; i < findings.size(); ++i) {
        const auto record = items.byRecord.find(findings[i].offset);
        if (record != items.byRecord.end()) {
            found[i] = record->second;
        } else if (!findings[i].path.empty()) {
            wanted.emplace(findings[i].path, i);
        }
    }
    Paths paths(items, Paths::kTold);
    for (std::size_t item = 0; item < items.size() && !wanted.empty(); ++item) {
        const std::wstring* path = paths.next();
        if (!path) continue;
        const auto [begin, end] = wanted.equal_range(*path);
        for (auto entry = begin; entry != end; ++entry) found[entry->second] = item;
        wanted.erase(begin, end);
    }
    return found;
}

std::vector<tConformance> conformance(IDataStore& store, const Schemas& schemas, tPageItems& items,
                                      std::vector<std::size_t>& found) {
    std::vector<tConformance> rows;
    Known known(schemas);
    Paths paths(items, Paths::kOpened);
    auto base = items.base.begin();
    for (std::size_t item = 0; item < items.size() && base != items.base.end(); ++item) {
        const std::wstring* path = paths.next();
        if (base->item != item) continue;
        const std::size_t named = base++->text;
        if (!path) continue;
        const tSubject subject(store, utf8(*path), items.kind[item] == tPageItems::kTable);
        if (!subject) continue;
        tVerdict verdict = compare(subject, *items.pool.texts()[named], known);
        if (verdict.uris.empty()) continue;
        rows.push_back({item, items.pool.place(verdict.uris), std::move(verdict.difference)});
    }
    // Of items that were not compared, too, the page tells which of their schemas were given.
    for (const auto* notes : {&items.base, &items.schema}) {
        for (const tPageItems::tNote& note : *notes) {
            for (const std::wstring& uri : split(*items.pool.texts()[note.text])) known.find(uri);
        }
    }
    for (const std::wstring& uri : known.found()) found.push_back(items.pool.place(uri));
    return rows;
}

}  // namespace lvp::tool
