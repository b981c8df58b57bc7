#include "property/DesignTableImpl.h"

#include <cwchar>

#include "design/Primitive.h"
#include "lumivard/platform/core/memory/SharedPtr.h"
#include "property/DesignFilter.h"
#include "property/DesignPrimitiveImpl.h"
#include "property/ExactCast.h"
#include "property/Facades.h"
#include "record/Base.h"
#include "record/Guard.h"
#include "schema/SchemaImpl.h"

namespace lumivard::platform::data {

using Record::Guard;

DesignTableImpl::~DesignTableImpl() {
    Record::releaseUnderGuard(_table);
}

SharedPtr<metadata::ITable> DesignTableImpl::open(IDataStore* store, unsigned int offset) {
    return core::memory::makeShared<metadata::ITable, DesignTableImpl>(store, offset, false);
}

SharedPtr<metadata::ITable> DesignTableImpl::make(Metadata::Set& owner, const wchar_t* name,
                                                  metadata::ISchema* schema) {
    auto face = core::memory::makeShared<metadata::ITable, DesignTableImpl>(owner.store(), name);
    Design::Table& table = *static_cast<DesignTableImpl*>(face.get())->item();
    table.comeTo(owner);
    if (schema) table.inherit(schema);
    return face;
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
    return core::memory::makeShared<metadata::IPropertyFilter, DesignFilter>(this);
}

bool DesignTableImpl::validates(metadata::ISchema* schema) {
    const auto* ours = Schema::SchemaImpl::of(schema);
    const Guard guard(store());
    return ours && ours->validates(*table(), table()->base(), false);
}

SharedPtr<metadata::ITable> DesignTableImpl::create(WideString name, metadata::ISchema* schema) {
    const Guard guard(store());
    if (!isFree(name) || Schema::SchemaImpl::isForeign(schema)) return {};
    return make(*table(), name.value(), schema);
}

SharedPtr<metadata::IPrimitive> DesignTableImpl::create(WideString name, metadata::tValue type, units::tUnit units) {
    const Guard guard(store());
    if (!isFree(name)) return {};
    return DesignPrimitiveImpl::make(*table(), name.value(), type, units);
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
    if (!name.value() || table()->find(name.value()) != BADOFF) return false;
    return !std::wcschr(name, L'.') || table()->lookup(name.value()) == BADOFF;
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
    return property && property->type() == 1 ? exactCast<DesignTableImpl>(property) : nullptr;
}

}  // namespace lumivard::platform::data
