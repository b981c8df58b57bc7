#pragma once

#include "tests/model/PlainTexts.h"
#include "tests/model/PlainTree.h"

namespace lumivard::platform::model {

/// An object over an item in plain memory. What it keeps from its opening stands in its members; all else it takes from
/// the item when it is asked. Members are defined by aspect: PlainObject.cpp (all items, sets), PlainObject+Copy.cpp,
/// PlainObject+Properties.cpp (tables, primitives).
class PlainObject final : public TreeObject {
public:
    enum tFace {
        kTyped,
        kWithoutRole,  ///< of a container: as the front end, `follow` and the making of a node give it
        kMade          ///< of a property: as `create` and `parent` give it, so that no copy can be made of it
    };

    /// Null for null, for the root and for what was destroyed.
    static tPtr open(PlainTree& tree, PlainItem* item, tFace face = kTyped);

    PlainObject(PlainTree& tree, PlainItem& item, tFace face);
    ~PlainObject() override;

    tKind kind() const override;
    bool isGone() const override { return _item.dead; }
    std::wstring tag() override { return _tag; }
    std::wstring path() override;
    tPtr parent() override;
    std::wstring base() override { return _base; }
    bool rename(const std::wstring& name) override;
    unsigned int locales() override { return _texts.locales(); }
    std::wstring locale(unsigned int index) override { return _texts.locale(index); }
    std::wstring localize(const std::wstring& locale) override { return _texts.localize(locale); }
    void describe(const std::wstring& locale, const std::wstring& text) override { _texts.describe(locale, text); }

    unsigned int flags() override { return _item.flags; }
    void on(unsigned char bits) override { _item.flags = static_cast<unsigned char>(_item.flags | bits); }
    void off(unsigned char bits) override { _item.flags = static_cast<unsigned char>(_item.flags & ~bits); }

    bool destroy(const std::wstring& name) override;
    tPtr find(const std::wstring& path) override;
    std::vector<tPtr> children() override;
    tPtr makePrimitive(const std::wstring& name, metadata::tValue kind, units::tUnit unit) override;
    tPtr makeTable(const std::wstring& name, int schema) override;

    int type() override { return _type; }
    bool has(const std::wstring& path) override { return lookup(path) != nullptr; }
    bool empty() override { return _known.empty(); }
    tPtr again() override { return open(_tree, &_item); }
    tPtr makeContainer(IContainer::tType type, const std::wstring& name, int schema) override;
    bool conforms(int schema) override;
    bool copy(TreeObject& source) override;
    bool clone(TreeObject& source) override;
    bool clone(const std::wstring& source, const std::wstring& destination, bool fromRoot) override;
    bool cloneTo(unsigned int store, const std::wstring& destination) override;
    bool isLink() override { return _face == kTyped && _type == IContainer::kLink; }
    std::wstring target() override { return isLink() ? _target : std::wstring(); }
    void target(const std::wstring& path) override;
    tPtr follow(unsigned int store) override;

    unsigned int items() override { return static_cast<unsigned int>(_known.size()); }
    tPtr at(unsigned int index) override;
    tPtr makeByGroup(const std::wstring& name, units::tUnitGroup group) override;
    bool defaults(units::tUnit unit, metadata::tValue kind) override;
    unsigned int groups() override { return static_cast<unsigned int>(_groups.size()); }
    units::tUnitGroup group(unsigned int index) override;
    unsigned int defaultKind(units::tUnitGroup group) override { return defaultOf(group, 1); }
    int defaultUnit(units::tUnitGroup group) override { return static_cast<int>(defaultOf(group, 0)); }

    unsigned int valuetype() override { return _valuetype; }
    int unit() override { return _item.unit; }
    unsigned int dimension() override { return _external ? 0 : _size / stride(); }
    unsigned int bytes() override { return _size; }
    std::wstring uri() override { return _external ? _uri : std::wstring(); }
    bool uri(const std::wstring& uri) override;
    bool schema(const std::wstring& uri) override;
    std::wstring valuelocale() override { return _valuelocale; }
    void valuelocale(const std::wstring& locale) override { _item.valuelocale = _valuelocale = locale; }
    bool reset(unsigned int count) override;
    bool set(const std::string& data, unsigned int start, unsigned int count) override;
    std::optional<std::string> get(unsigned int start, unsigned int count) override;
    bool write(const std::vector<std::wstring>& texts) override;

private:
    PlainItem* known(const std::wstring& name) const;
    PlainItem* lookup(const std::wstring& path) const;
    bool add(PlainItem* child);
    void reload();
    PlainItem* make(PlainItem::tKind kind, const std::wstring& name);
    bool isFree(const std::wstring& name) const;
    void inherit(int schema);
    void show();
    void loadDefaults();
    unsigned int ownDefault(units::tUnitGroup group, unsigned int which) const;
    unsigned int defaultOf(units::tUnitGroup group, unsigned int which);
    unsigned int stride() const;
    void put(std::string value);

    PlainTree& _tree;
    PlainItem& _item;
    std::size_t _process;
    tFace _face;
    PlainItem* _parent;
    std::wstring _tag;
    std::wstring _base;
    PlainTexts _texts;

    tIndex _known;
    bool _knowsList;

    IContainer::tType _type;
    std::wstring _target;

    bool _knowsDefaults = false;
    std::map<int, std::size_t> _groups;

    metadata::tValue _valuetype;
    unsigned int _size;
    bool _external;
    std::wstring _uri;
    std::wstring _valuelocale;
};

}  // namespace lumivard::platform::model
