#include "property/DesignTableImpl.h"

#include "design/Primitive.h"
#include "lumivard/platform/core/memory/SharedPtr.h"
#include "property/DesignFilter.h"
#include "property/DesignPrimitiveImpl.h"
#include "property/Facades.h"
#include "record/Base.h"
#include "record/Guard.h"
#include "schema/SchemaImpl.h"

namespace lumivard::platform::data {

using Record::Guard;

SharedPtr<metadata::ITable> DesignTableImpl::open(IDataStore* store, unsigned int offset, metadata::ISchema* schema) {
    auto table = std::make_unique<Design::Table>(store, offset, false);
    if (schema) table->inherit(schema);
    return core::memory::share<metadata::ITable>(std::make_unique<DesignTableImpl>(std::move(table)));
}

metadata::IProperty* DesignTableImpl::container() const {
    return const_cast<DesignTableImpl*>(this);
}

SharedPtr<metadata::IProperty> DesignTableImpl::lookup(WideString name) {
    const Guard guard(store());
    return openProperty(store(), table()->lookup(name.value()));
}

SharedPtr<metadata::IPropertyFilter> DesignTableImpl::properties() {
    const Guard guard(store());
    return core::memory::share<metadata::IPropertyFilter>(std::make_unique<DesignFilter>(this));
}

bool DesignTableImpl::validates(metadata::ISchema* schema) {
    const auto* ours = Schema::SchemaImpl::of(schema);
    const Guard guard(store());
    return ours && ours->validates(*table(), table()->base(), false);
}

SharedPtr<metadata::ITable> DesignTableImpl::create(WideString name, metadata::ISchema* schema) {
    const Guard guard(store());
    if (!isFree(name) || Schema::SchemaImpl::isForeign(schema)) return {};
    unsigned int offset;
    {
        const Design::Table made(store(), name.value());
        offset = made.offset();
        table()->add(offset);
    }
    return open(store(), offset, schema);
}

SharedPtr<metadata::IPrimitive> DesignTableImpl::create(WideString name, metadata::tValue type, units::tUnit units) {
    const Guard guard(store());
    if (!isFree(name)) return {};
    unsigned int offset;
    {
        Design::Primitive made(store(), type, name.value());
        offset = made.offset();
        if (units != 0) made.units(units);  // before it has its name: a second try would find that taken
        table()->add(offset);
    }
    return DesignPrimitiveImpl::open(store(), offset);
}

SharedPtr<metadata::IPrimitive> DesignTableImpl::create(WideString name, units::tUnitGroup group) {
    const Guard guard(store());
    const metadata::tValue type = _valuetype(group);
    if (type == 0) return {};
    return create(name, type, _units(group));
}

bool DesignTableImpl::destroy(WideString name) {
    const Guard guard(store());
    return table()->remove(name.value());
}

unsigned int DesignTableImpl::items() {
    const Guard guard(store());
    return table()->items();
}

SharedPtr<metadata::IProperty> DesignTableImpl::at(unsigned int index) {
    const Guard guard(store());
    return openProperty(store(), table()->at(index));
}

bool DesignTableImpl::defaults(units::tUnit units, metadata::tValue type) {
    const Guard guard(store());
    return table()->defaults(units, type);
}

unsigned int DesignTableImpl::groups() {
    const Guard guard(store());
    return static_cast<unsigned int>(table()->groups().size());
}

units::tUnitGroup DesignTableImpl::group(unsigned int index) {
    const Guard guard(store());
    const std::vector<units::tUnitGroup> groups = table()->groups();
    return index < groups.size() ? groups[index] : units::kNoGroup;
}

metadata::tValue DesignTableImpl::valuetype(units::tUnitGroup group) {
    const Guard guard(store());
    return _valuetype(group);
}

units::tUnit DesignTableImpl::units(units::tUnitGroup group) {
    const Guard guard(store());
    return _units(group);
}

WideString DesignTableImpl::base() {
    const Guard guard(store());
    return table()->base();
}

bool DesignTableImpl::isFree(const WideString& name) const {
    constexpr unsigned int BADOFF = IDataStore::BADOFF;
    return name.value() && table()->lookup(name.value()) == BADOFF && table()->find(name.value()) == BADOFF;
}

template <class Answer>
Answer DesignTableImpl::inherited(Answer (Design::Table::*question)(units::tUnitGroup) const,
                                  units::tUnitGroup group) const {
    const Answer own = (table()->*question)(group);
    if (own != 0) return own;
    const unsigned int parent = table()->parent();
    if (Record::peek(store(), parent) != Record::kTable) return Answer{};
    return (Design::Table(store(), parent, true).*question)(group);
}

metadata::tValue DesignTableImpl::_valuetype(units::tUnitGroup group) const {
    return inherited(&Design::Table::valuetype, group);
}

units::tUnit DesignTableImpl::_units(units::tUnitGroup group) const {
    return inherited(&Design::Table::units, group);
}

metadata::ITable* metadata::ITable::to(IProperty* property) {
    return property && property->type() == 1 ? dynamic_cast<DesignTableImpl*>(property) : nullptr;
}

}  // namespace lumivard::platform::data
