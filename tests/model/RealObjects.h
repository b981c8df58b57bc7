#pragma once

#include "tests/model/RealTree.h"

namespace lumivard::platform::model {

inline std::wstring plain(const data::WideString& text) {
    return static_cast<const wchar_t*>(text);
}

/// A container of the library.
class RealContainer final : public TreeObject {
public:
    RealContainer(RealTree& tree, data::SharedPtr<IContainer> container)
        : _tree(tree), _container(std::move(container)) {}

    /// Null for null.
    static tPtr over(RealTree& tree, data::SharedPtr<IContainer> container);

    tKind kind() const override { return kContainer; }
    std::wstring tag() override { return plain(_container->tag()); }
    std::wstring path() override { return plain(_container->path()); }
    tPtr parent() override { return over(_tree, _container->parent()); }
    std::wstring base() override { return plain(_container->base()); }
    bool rename(const std::wstring& name) override { return _container->rename(name.c_str()); }
    unsigned int locales() override { return _container->locales(); }
    std::wstring locale(unsigned int index) override { return plain(_container->locale(index)); }
    std::wstring localize(const std::wstring& locale) override { return plain(_container->localize(locale.c_str())); }
    void describe(const std::wstring& locale, const std::wstring& text) override {
        _container->describe(locale.c_str(), text.c_str());
    }
    bool destroy(const std::wstring& name) override { return _container->destroy(name.c_str()); }
    tPtr find(const std::wstring& path) override;
    std::vector<tPtr> children() override;
    tPtr makePrimitive(const std::wstring& name, metadata::tValue kind, units::tUnit) override;
    tPtr makeTable(const std::wstring& name, int schema) override;
    int type() override { return _container->type(); }
    bool has(const std::wstring& path) override { return _container->has(path.c_str()); }
    bool empty() override { return _container->empty(); }
    tPtr again() override { return over(_tree, _container->container(data::WideString())); }
    tPtr makeContainer(IContainer::tType type, const std::wstring& name, int schema) override;
    bool conforms(int schema) override { return _container->validates(_tree.schema(schema), true); }
    bool copy(TreeObject& source) override;
    bool clone(TreeObject& source) override;
    bool clone(const std::wstring& source, const std::wstring& destination, bool fromRoot) override {
        return _container->clone(source.c_str(), destination.c_str(), fromRoot);
    }
    bool cloneTo(unsigned int store, const std::wstring& destination) override {
        return _container->clone(_tree.store(store), destination.c_str());
    }
    bool isLink() override { return link() != nullptr; }
    std::wstring target() override { return link() ? plain(link()->target()) : std::wstring(); }
    void target(const std::wstring& path) override {
        if (link()) link()->target(path.c_str());
    }
    tPtr follow(unsigned int store) override {
        return link() ? over(_tree, link()->follow(_tree.store(store))) : nullptr;
    }

private:
    data::structure::ILink* link() { return data::structure::ILink::to(_container.get()); }

    RealTree& _tree;
    data::SharedPtr<IContainer> _container;
};

/// A primitive or a table of the library.
class RealProperty final : public TreeObject {
public:
    RealProperty(RealTree& tree, data::SharedPtr<metadata::IProperty> property);
    RealProperty(RealTree& tree, data::SharedPtr<metadata::IPrimitive> primitive);
    RealProperty(RealTree& tree, data::SharedPtr<metadata::ITable> table);

    /// Null for null.
    template <class Face>
    static tPtr over(RealTree& tree, data::SharedPtr<Face> face) {
        return face ? std::make_unique<RealProperty>(tree, std::move(face)) : nullptr;
    }

    metadata::IProperty& property() const { return *_property; }
    const data::SharedPtr<metadata::IProperty>& shared() const { return _sharedProperty; }

    tKind kind() const override { return _table ? kTable : kPrimitive; }
    std::wstring tag() override { return plain(_property->tag()); }
    std::wstring path() override { return plain(_property->path()); }
    tPtr parent() override { return over(_tree, _property->parent()); }
    std::wstring base() override { return plain(_table ? _table->base() : _primitive->schema()); }
    bool rename(const std::wstring& name) override { return _property->rename(name.c_str()); }
    unsigned int locales() override { return _property->locales(); }
    std::wstring locale(unsigned int index) override { return plain(_property->locale(index)); }
    std::wstring localize(const std::wstring& locale) override { return plain(_property->localize(locale.c_str())); }
    void describe(const std::wstring& locale, const std::wstring& text) override {
        _property->describe(locale.c_str(), text.c_str());
    }
    unsigned int flags() override { return _property->flags(); }
    void on(unsigned char bits) override { _property->on(bits); }
    void off(unsigned char bits) override { _property->off(bits); }

    bool destroy(const std::wstring& name) override { return _table && _table->destroy(name.c_str()); }
    tPtr find(const std::wstring& path) override {
        return _table ? over(_tree, _table->lookup(path.c_str())) : nullptr;
    }
    std::vector<tPtr> children() override;
    tPtr makePrimitive(const std::wstring& name, metadata::tValue kind, units::tUnit unit) override {
        return _table ? over(_tree, _table->create(name.c_str(), kind, unit)) : nullptr;
    }
    tPtr makeByGroup(const std::wstring& name, units::tUnitGroup group) override {
        return _table ? over(_tree, _table->create(name.c_str(), group)) : nullptr;
    }
    tPtr makeTable(const std::wstring& name, int schema) override {
        return _table ? over(_tree, _table->create(name.c_str(), _tree.schema(schema))) : nullptr;
    }
    unsigned int items() override { return _table ? _table->items() : 0; }
    tPtr at(unsigned int index) override { return _table ? over(_tree, _table->at(index)) : nullptr; }
    bool defaults(units::tUnit unit, metadata::tValue kind) override { return _table && _table->defaults(unit, kind); }
    unsigned int groups() override { return _table ? _table->groups() : 0; }
    units::tUnitGroup group(unsigned int index) override { return _table ? _table->group(index) : units::kNoGroup; }
    unsigned int defaultKind(units::tUnitGroup group) override {
        return _table ? static_cast<unsigned int>(_table->valuetype(group)) : 0;
    }
    int defaultUnit(units::tUnitGroup group) override { return _table ? static_cast<int>(_table->units(group)) : 0; }

    unsigned int valuetype() override { return _primitive ? static_cast<unsigned int>(_primitive->valuetype()) : 0; }
    int unit() override { return _primitive ? static_cast<int>(_primitive->units()) : 0; }
    unsigned int dimension() override { return _primitive ? _primitive->dimension() : 0; }
    unsigned int bytes() override { return _primitive ? _primitive->bytes() : 0; }
    std::wstring uri() override { return _primitive ? plain(_primitive->uri()) : std::wstring(); }
    bool uri(const std::wstring& uri) override { return _primitive && _primitive->uri(uri.c_str()); }
    bool schema(const std::wstring& uri) override { return _primitive && _primitive->schema(uri.c_str()); }
    std::wstring valuelocale() override { return _primitive ? plain(_primitive->valuelocale()) : std::wstring(); }
    void valuelocale(const std::wstring& locale) override {
        if (_primitive) _primitive->valuelocale(locale.c_str());
    }
    bool reset(unsigned int count) override { return _primitive && _primitive->reset(count); }
    bool set(const std::string& data, unsigned int start, unsigned int count) override {
        return _primitive && _primitive->set(data.data(), start, count);
    }
    std::optional<std::string> get(unsigned int start, unsigned int count) override;
    bool write(const std::vector<std::wstring>& texts) override;

private:
    RealTree& _tree;
    data::SharedPtr<metadata::IProperty> _sharedProperty;
    data::SharedPtr<metadata::IPrimitive> _sharedPrimitive;
    data::SharedPtr<metadata::ITable> _sharedTable;
    metadata::IProperty* _property;
    metadata::IPrimitive* _primitive = nullptr;
    metadata::ITable* _table = nullptr;
};

}  // namespace lumivard::platform::model
