#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "container/ContainerImpl.h"
#include "design/Stride.h"
#include "lumivard/platform/data/structure/IVisitor.h"
#include "lumivard/platform/data/units/tUnitGroup.h"
#include "record/Anatomy.h"
#include "record/Container.h"
#include "record/Guard.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"
#include "schema/Finder.h"

namespace lumivard::platform::data::structure {

namespace {

constexpr unsigned int kTop = 0;

/// A text that lies at any address, copied to where it can be looked at; the memory serves many.
class Text {
public:
    std::wstring_view of(std::span<const char> section) {
        const std::size_t length = section.size() / sizeof(wchar_t);
        if (length == 0) return {};
        if (_copy.size() < length) _copy.resize(length);
        std::memcpy(_copy.data(), section.data(), length * sizeof(wchar_t));
        const std::wstring_view text(_copy.data(), length);
        return text.substr(0, text.find(L'\0'));
    }

private:
    std::vector<wchar_t> _copy;
};

/// Shows items with what they hold, depth first.
class Walk {
public:
    Walk(IDataStore* store, IVisitor& visitor) : _store(store), _visitor(visitor) {}

    /// Shows an item with all below it; false for what is none.
    bool show(unsigned int offset) {
        _start = offset;
        const Record::Primitive record(_store, offset, Record::kInPlace);
        if (!isItem(record)) return false;
        show(record);
        showLevels(0);
        return true;
    }

    /// Shows all that a set holds, and where it stands at the top that too.
    void showContents(unsigned int set) {
        _start = set;
        if (set == kTop) showTop();
        open(set);
        showLevels(1);
    }

private:
    /// The children of a set that was entered, and the one whose turn it is.
    struct tLevel {
        unsigned int set = 0;
        std::vector<unsigned int> entries;
        std::size_t next = 0;
    };

    /// Whether a record has all that its kind asks.
    static bool isItem(const Record::Entity& record) {
        return Record::isChild(record.type()) && Record::Anatomy::fits(record);
    }

    void show(const Record::Primitive& record) {
        if (record.type() == Record::kPrimitive) return showPrimitive(record);
        if (record.type() == Record::kTable) return showTable(record.offset());
        showContainer(record.offset());
    }

    void showTop() {
        const Record::Entity record(_store, kTop, Record::kInPlace);
        if (!Record::Anatomy::fits(record)) return;
        const unsigned int texts = record.locale();
        unsigned int defaults = IDataStore::BADOFF;
        const std::wstring name = record.name();
        IVisitor::tRoot shown;
        shown.name = name;
        if (record.type() == Record::kTable) {
            const Record::Table table(_store, kTop, Record::kInPlace);
            shown.kind = IVisitor::tRoot::kTable;
            shown.base = _first.of(table.section(Record::Table::kBase));
            defaults = table.defaults();
        } else if (record.type() == Record::kContainer) {
            const Record::Container container(_store, kTop, Record::kInPlace);
            shown.kind = kindOf(container);
            shown.base = _first.of(container.section(Record::Container::kBase));
            shown.target = _second.of(container.section(Record::Container::kInfo));
        }
        _visitor.root(shown);
        showTexts(texts);
        showDefaults(defaults);
    }

    static IVisitor::tRoot::tKind kindOf(const Record::Container& record) {
        switch (static_cast<IContainer::tType>(record.kind())) {
            case IContainer::kGroup:
                return IVisitor::tRoot::kGroup;
            case IContainer::kLink:
                return IVisitor::tRoot::kLink;
            default:
                return IVisitor::tRoot::kNode;
        }
    }

    void showPrimitive(const Record::Primitive& record) {
        const auto parts = record.parts();
        IVisitor::tPrimitive shown;
        shown.name = _name.of(parts.name);
        shown.valuetype = static_cast<metadata::tValue>(record.valuetype());
        shown.units = static_cast<units::tUnit>(record.units());
        shown.flags = record.flags();
        shown.stride = Design::stride(shown.valuetype);
        shown.valuelocale = _first.of(parts.valueLocale);
        shown.schema = _second.of(parts.base);
        if (shown.flags & Record::kExternal) {
            shown.uri = _third.of(parts.value);
        } else {
            shown.dimension = Design::dimension(shown.valuetype, static_cast<unsigned int>(parts.value.size()));
        }
        shown.store = _store;
        shown.offset = record.offset();
        const unsigned int texts = record.locale();
        _visitor.primitive(shown);
        showTexts(texts);
    }

    // Where texts and defaults stand is asked before the visitor is called, which may do away with the item.

    void showTable(unsigned int offset) {
        const Record::Table record(_store, offset, Record::kInPlace);
        const unsigned int texts = record.locale();
        const unsigned int defaults = record.defaults();
        if (!_visitor.table({_name.of(record.section(Record::Table::kName)), record.flags(),
                             _first.of(record.section(Record::Table::kBase)), offset}))
            return;
        showTexts(texts);
        showDefaults(defaults);
        open(offset);
    }

    void showContainer(unsigned int offset) {
        const Record::Container record(_store, offset, Record::kInPlace);
        const unsigned int texts = record.locale();
        if (!_visitor.container({_name.of(record.section(Record::Container::kName)),
                                 static_cast<IContainer::tType>(record.kind()), record.flags(),
                                 _first.of(record.section(Record::Container::kBase)),
                                 _second.of(record.section(Record::Container::kInfo)), offset}))
            return;
        showTexts(texts);
        open(offset);
    }

    void showTexts(unsigned int offset) {
        if (offset == IDataStore::BADOFF) return;
        const std::wstring payload = Record::Locale(_store, offset, Record::kInPlace).payload();
        Record::Locale::each(payload,
                             [this](std::wstring_view locale, std::wstring_view text) { _visitor.text(locale, text); });
    }

    void showDefaults(unsigned int offset) {
        if (offset == IDataStore::BADOFF) return;
        const std::vector<unsigned int> pairs = Record::Offsets(_store, offset, Record::kInPlace).get();
        std::set<units::tUnitGroup> shown{units::kNoGroup};
        for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
            const auto unit = static_cast<units::tUnit>(pairs[i]);
            if (shown.insert(units::group(unit)).second) {
                _visitor.unitDefault(unit, static_cast<metadata::tValue>(pairs[i + 1]));
            }
        }
    }

    void open(unsigned int set) {
        const unsigned int list = Record::Entity(_store, set, Record::kInPlace).children();
        if (_depth == _levels.size()) _levels.emplace_back();
        tLevel& level = _levels[_depth++];
        level.set = set;
        level.next = 0;
        const Record::Offsets offsets(_store, list, Record::kInPlace);
        offsets.get(level.entries);
        if (offsets.rising()) return;
        std::unordered_set<unsigned int> seen;
        std::erase_if(level.entries, [&](unsigned int entry) { return !seen.insert(entry).second; });
    }

    /// Shows the children of the sets that are open; the outermost `silent` of them were not entered.
    void showLevels(std::size_t silent) {
        while (_depth > 0) {
            tLevel& level = _levels[_depth - 1];
            if (level.next < level.entries.size()) {
                showChild(level.set, level.entries[level.next++]);
            } else {
                --_depth;
                if (_depth >= silent) _visitor.leave();
            }
        }
    }

    /// An item stands where its owner lists it. So each has one way to it, and one that comes round passes the start.
    void showChild(unsigned int owner, unsigned int offset) {
        if (offset == _start) return;
        const Record::Primitive record(_store, offset, Record::kInPlace);
        if (isItem(record) && record.parent() == owner) show(record);
    }

    IDataStore* _store;
    IVisitor& _visitor;
    unsigned int _start = kTop;
    std::vector<tLevel> _levels;  ///< the first `_depth` of them are open; the memory of the others serves again
    std::size_t _depth = 0;
    Text _name;
    Text _first;
    Text _second;
    Text _third;
};

bool visitFrom(IDataStore* store, unsigned int start, std::wstring_view path, IVisitor& visitor) {
    Walk walk(store, visitor);
    if (path.find(L'\0') != path.npos) return false;  // as no name has one
    if (!path.empty()) return walk.show(Schema::Finder(store, start, path).offset);
    const Record::Entity top(store, start, Record::kInPlace);
    if (!top.whole() || !Schema::Finder::isSet(top.type())) return false;
    walk.showContents(start);
    return true;
}

}  // namespace

// The record is looked at anew: what was seen of it is gone when the visitor has opened or changed something, or
// flushed.
bool IVisitor::tPrimitive::get(void* data, unsigned int start, unsigned int count) const {
    const Record::Primitive record(store, offset, Record::kInPlace);
    if (count == 0 || record.type() != Record::kPrimitive || record.valuetype() != valuetype) return false;
    if (record.flags() & Record::kExternal) return false;
    const auto value = record.value();
    const std::uint64_t begin = std::uint64_t{start} * stride;
    const std::uint64_t size = std::uint64_t{count} * stride;
    if (size == 0 || begin + size > value.size()) return false;
    std::memcpy(data, value.data() + begin, size);
    return true;
}

void IVisitor::root(const tRoot&) {}

void IVisitor::primitive(const tPrimitive&) {}

bool IVisitor::table(const tTable&) {
    return true;
}

bool IVisitor::container(const tContainer&) {
    return true;
}

void IVisitor::text(std::wstring_view, std::wstring_view) {}

void IVisitor::unitDefault(units::tUnit, metadata::tValue) {}

void IVisitor::leave() {}

bool IVisitor::visit(IDataStore* store, std::wstring_view path, IVisitor& visitor) {
    const Record::Guard guard(store);
    return store->extent() != 0 && visitFrom(store, kTop, path, visitor);
}

bool IVisitor::visit(IContainer* container, std::wstring_view path, IVisitor& visitor) {
    const auto* const ours = dynamic_cast<const ContainerImpl*>(container);
    if (!ours) return false;
    const Record::Guard guard(ours->store());
    return visitFrom(ours->store(), ours->item()->offset(), path, visitor);
}

}  // namespace lumivard::platform::data::structure
