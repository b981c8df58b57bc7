#pragma once

#include <optional>

#include "design/Container.h"
#include "lumivard/platform/data/structure/IContainer.h"

namespace lumivard::platform::data {

/// The public face of a container. It owns the in-memory object and takes the store's guard around each call.
///
/// Members are defined by aspect: ContainerImpl.cpp (identity, finding, locales), ContainerImpl+Editing.cpp (making,
/// destroying, renaming, properties), ContainerImpl+Copy.cpp.
class ContainerImpl : public structure::IContainer {
public:
    class DesignFilter;
    class ContainerFilter;

    /// Opens a container's record, or makes one: takes what `Structural::Container` is made of. For callers that hold
    /// the guard.
    template <class... Arguments>
    explicit ContainerImpl(IDataStore* store, Arguments... arguments)
        : _container(std::in_place, store, arguments...) {}
    ~ContainerImpl() override;

    WideString tag() const override;
    WideString path() const override;
    IDataStore* store() const override;
    SharedPtr<structure::IContainer> parent() override;
    WideString base() const override;
    bool empty() const override;
    tType type() const override;
    bool destroy(WideString name) override;
    bool rename(WideString name) override;
    SharedPtr<structure::IContainer> create(tType type, WideString name, metadata::ISchema* schema) override;
    SharedPtr<metadata::IPrimitive> create(WideString name, metadata::tValue value) override;
    SharedPtr<metadata::ITable> create(WideString name, metadata::ISchema* schema) override;
    bool has(WideString name) override;
    SharedPtr<structure::IContainer> container(WideString name) override;
    SharedPtr<metadata::IProperty> property(WideString name) override;
    SharedPtr<metadata::IPropertyFilter> properties() override;
    SharedPtr<structure::IContainerFilter> containers() override;
    bool validates(metadata::ISchema* schema, bool quick) override;
    bool validates(WideString name, metadata::ISchema* schema, bool quick) override;
    bool copy(SharedPtr<structure::IContainer> source) override;
    bool clone(SharedPtr<structure::IContainer> source) override;
    bool clone(SharedPtr<metadata::IProperty> source) override;
    bool clone(WideString source, WideString destination, bool fromRoot) override;
    bool clone(IDataStore* store, WideString destination) override;
    unsigned int locales() override;
    WideString locale(unsigned int index) override;
    void describe(WideString locale, WideString text) override;
    WideString localize(WideString locale) override;

    Structural::Container* item() const { return &*_container; }

private:
    /// Whether a new child may bear a name: there is one, and no child of this object's index bears it.
    bool isFree(const WideString& name) const;

    mutable std::optional<Structural::Container> _container;  ///< until the end of this object
};

}  // namespace lumivard::platform::data
