#pragma once

#include <array>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/model/PlainItem.h"

namespace lumivard::platform::model {

/// The same two stores in plain memory: what the headers say of each operation, in a line or a few. Objects over items
/// are `PlainObject`s, which keep what they saw when they were opened.
class PlainTree final : public Tree {
public:
    /// Where a model does otherwise than the library does, so that a test can show that such a thing is noticed.
    struct tRules {
        bool renamesReachOpenObjects = false;
        bool copiesShareTexts = false;
        bool destroyIgnoresOpenObjects = false;
    };

    PlainTree() : PlainTree(tRules()) {}
    explicit PlainTree(const tRules& rules);

    TreeObject::tPtr toplevel(unsigned int store, const std::wstring& name) override;
    TreeObject::tPtr find(unsigned int store, const std::wstring& path) override;
    void reopen() override {}

    const tRules& rules() const { return _rules; }

    /// Who does what follows, and whose objects come and go: one of several processes that share the stores. Nobody's
    /// objects keep another one from destroying what they look at. The objects of a process that has died
    /// `leaveNothing` when they go.
    void process(std::size_t number, bool leavesNothing = false) {
        _process = number;
        _leavesNothing = leavesNothing;
    }
    std::size_t process() const { return _process; }
    bool leavesNothing() const { return _leavesNothing; }

    PlainItem& root(unsigned int store) { return *_roots[store]; }
    PlainItem* schema(const std::wstring& name) { return _schemas->child(name); }

    PlainItem* make(PlainItem::tKind kind, const std::wstring& name);

    /// Where a path leads from an item: null for nowhere. One that goes exactly one name further than a primitive ends
    /// there.
    static PlainItem* follow(PlainItem& start, const std::wstring& path);

    /// Whether this process has nothing open from an item downwards, and its end with all that is found there by name.
    bool unused(PlainItem& item) const;
    void destroy(PlainItem& item);

    /// What of an item is copied.
    struct tCopied {
        std::shared_ptr<tTexts> texts;
        bool list;
        bool defaults;
    };

    /// A copy of an item and all below it, attached to nothing, without what was made from `before` on.
    PlainItem* copy(const PlainItem& source, std::size_t before);
    PlainItem* copy(const PlainItem& source, const tCopied& copied, std::size_t before);

    /// The number of the next item.
    std::size_t next() const { return _items.size(); }

    /// How many items there are that have not been destroyed.
    std::size_t alive() const { return _alive; }

    /// The path of some item, at the top or further down.
    std::wstring anyPath(unsigned int store, std::mt19937_64& random) const;

private:
    static void each(PlainItem& item, const std::function<void(PlainItem&)>& visit);

    tRules _rules;
    std::vector<std::unique_ptr<PlainItem>> _items;
    std::array<PlainItem*, 2> _roots;
    PlainItem* _schemas;
    std::size_t _alive = 0;
    std::size_t _process = 0;
    bool _leavesNothing = false;
};

}  // namespace lumivard::platform::model
