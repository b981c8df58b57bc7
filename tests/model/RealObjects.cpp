#include "tests/model/RealObjects.h"

namespace lumivard::platform::model {

TreeObject::tPtr RealContainer::over(RealTree& tree, data::SharedPtr<IContainer> container) {
    return container ? std::make_unique<RealContainer>(tree, std::move(container)) : nullptr;
}

TreeObject::tPtr RealContainer::find(const std::wstring& path) {
    if (path.empty()) return nullptr;  // which would be a new object over this one
    if (auto container = over(_tree, _container->container(path.c_str()))) return container;
    return RealProperty::over(_tree, _container->property(path.c_str()));
}

std::vector<TreeObject::tPtr> RealContainer::children() {
    std::vector<tPtr> children;
    const auto properties = _container->properties();
    do {
        if (auto property = properties->current()) children.push_back(RealProperty::over(_tree, property));
    } while (properties->next());
    const auto containers = _container->containers();
    do {
        if (auto container = containers->current()) children.push_back(over(_tree, container));
    } while (containers->next());
    return children;
}

TreeObject::tPtr RealContainer::makePrimitive(const std::wstring& name, metadata::tValue kind, units::tUnit) {
    return RealProperty::over(_tree, _container->create(name.c_str(), kind));
}

TreeObject::tPtr RealContainer::makeTable(const std::wstring& name, int schema) {
    return RealProperty::over(_tree, _container->create(name.c_str(), _tree.schema(schema)));
}

TreeObject::tPtr RealContainer::makeContainer(IContainer::tType type, const std::wstring& name, int schema) {
    return over(_tree, _container->create(type, name.c_str(), _tree.schema(schema)));
}

bool RealContainer::copy(TreeObject& source) {
    const auto* container = dynamic_cast<RealContainer*>(&source);
    return container && _container->copy(container->_container);
}

// A property that was made by `create` is held by another face, to which no pointer of this kind leads.
bool RealContainer::clone(TreeObject& source) {
    if (const auto* container = dynamic_cast<RealContainer*>(&source)) return _container->clone(container->_container);
    const auto& property = dynamic_cast<RealProperty&>(source);
    return property.shared() && _container->clone(property.shared());
}

RealProperty::RealProperty(RealTree& tree, data::SharedPtr<metadata::IProperty> property)
    : _tree(tree),
      _sharedProperty(std::move(property)),
      _property(_sharedProperty.get()),
      _primitive(metadata::IPrimitive::to(_property)),
      _table(metadata::ITable::to(_property)) {}

RealProperty::RealProperty(RealTree& tree, data::SharedPtr<metadata::IPrimitive> primitive)
    : _tree(tree),
      _sharedPrimitive(std::move(primitive)),
      _property(_sharedPrimitive->container()),
      _primitive(_sharedPrimitive.get()) {}

RealProperty::RealProperty(RealTree& tree, data::SharedPtr<metadata::ITable> table)
    : _tree(tree), _sharedTable(std::move(table)), _property(_sharedTable->container()), _table(_sharedTable.get()) {}

std::vector<TreeObject::tPtr> RealProperty::children() {
    std::vector<tPtr> children;
    if (!_table) return children;
    const auto properties = _table->properties();
    do {
        if (auto property = properties->current()) children.push_back(over(_tree, property));
    } while (properties->next());
    return children;
}

std::optional<std::string> RealProperty::get(unsigned int start, unsigned int count) {
    if (!_primitive) return std::nullopt;
    std::string data(std::size_t{count} * _primitive->stride(), '~');
    if (!_primitive->get(data.data(), start, count)) return std::nullopt;
    return data;
}

bool RealProperty::write(const std::vector<std::wstring>& texts) {
    const std::unique_ptr<metadata::IStringArray> array(metadata::IStringArray::to(nullptr, 0));
    for (const std::wstring& text : texts) array->add(text.c_str());
    return _primitive && array->write(_primitive);
}

}  // namespace lumivard::platform::model
