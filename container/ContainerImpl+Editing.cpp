#include "container/ContainerImpl.h"
#include "container/Facades.h"
#include "design/Primitive.h"
#include "design/Table.h"
#include "property/DesignPrimitiveImpl.h"
#include "property/DesignTableImpl.h"
#include "property/Facades.h"
#include "record/Base.h"
#include "record/Guard.h"
#include "schema/SchemaImpl.h"

namespace lumivard::platform::data {

using Record::Guard;
using Schema::SchemaImpl;

bool ContainerImpl::destroy(WideString name) {
    const Guard guard(store());
    return _container->remove(name.value());
}

bool ContainerImpl::rename(WideString name) {
    const Guard guard(store());
    const unsigned int parent = _container->parent();
    if (Record::peek(store(), parent) != Record::kContainer) return false;
    return Structural::Container(store(), parent, false).rename(_container->tag(), name.value());
}

SharedPtr<structure::IContainer> ContainerImpl::create(tType type, WideString name, metadata::ISchema* schema) {
    const Guard guard(store());
    if (!isFree(name) || SchemaImpl::isForeign(schema)) return {};
    return makeContainer(*_container, type, name.value(), schema);
}

SharedPtr<metadata::IPrimitive> ContainerImpl::create(WideString name, metadata::tValue value) {
    const Guard guard(store());
    if (!isFree(name)) return {};
    return DesignPrimitiveImpl::make(*_container, name.value(), value, units::kNoUnit);
}

SharedPtr<metadata::ITable> ContainerImpl::create(WideString name, metadata::ISchema* schema) {
    const Guard guard(store());
    if (!isFree(name) || SchemaImpl::isForeign(schema)) return {};
    return DesignTableImpl::make(*_container, name.value(), schema);
}

SharedPtr<metadata::IProperty> ContainerImpl::property(WideString name) {
    const Guard guard(store());
    return openProperty(store(), _container->lookup(name.value()));
}

bool ContainerImpl::validates(metadata::ISchema* schema, bool quick) {
    const auto* ours = SchemaImpl::of(schema);
    const Guard guard(store());
    return ours && ours->validates(*_container, _container->base(), quick);
}

bool ContainerImpl::validates(WideString name, metadata::ISchema* schema, bool quick) {
    const auto* ours = SchemaImpl::of(schema);
    const Guard guard(store());
    const unsigned int offset = _container->lookup(name.value());
    if (!ours) return false;
    switch (Record::peek(store(), offset)) {
        case Record::kContainer: {
            const Structural::Container child(store(), offset, true);
            return ours->validates(child, child.base(), quick);
        }
        case Record::kTable: {
            const Design::Table child(store(), offset, true);
            return ours->validates(child, child.base(), quick);
        }
        default:
            return false;
    }
}

bool ContainerImpl::isFree(const WideString& name) const {
    return name.value() && _container->find(name.value()) == IDataStore::BADOFF;
}

}  // namespace lumivard::platform::data
