#include "property/DesignPrimitiveImpl.h"

#include "lumivard/platform/core/memory/SharedPtr.h"
#include "metadata/Set.h"
#include "property/ExactCast.h"
#include "record/Guard.h"

namespace lumivard::platform::data {

using Record::Guard;

DesignPrimitiveImpl::~DesignPrimitiveImpl() {
    Record::releaseUnderGuard(_primitive);
}

SharedPtr<metadata::IPrimitive> DesignPrimitiveImpl::make(Metadata::Set& owner, const wchar_t* name,
                                                          metadata::tValue type, units::tUnit units) {
    auto face = core::memory::makeShared<metadata::IPrimitive, DesignPrimitiveImpl>(owner.store(), type, name);
    Design::Primitive& primitive = *static_cast<DesignPrimitiveImpl*>(face.get())->item();
    if (units != 0) primitive.units(units);  // before it has its name: a second try would find that taken
    primitive.comeTo(owner);
    return face;
}

metadata::IProperty* DesignPrimitiveImpl::container() const {
    return const_cast<DesignPrimitiveImpl*>(this);
}

unsigned int DesignPrimitiveImpl::dimension() {
    const Guard guard(store());
    return item()->dimension();
}

unsigned int DesignPrimitiveImpl::stride() const {
    const Guard guard(store());
    return Design::Primitive::stride(item()->valuetype());
}

unsigned int DesignPrimitiveImpl::bytes() {
    const Guard guard(store());
    return item()->valuesize();
}

metadata::tValue DesignPrimitiveImpl::valuetype() {
    const Guard guard(store());
    return item()->valuetype();
}

units::tUnit DesignPrimitiveImpl::units() {
    const Guard guard(store());
    return item()->units();
}

WideString DesignPrimitiveImpl::schema() const {
    const Guard guard(store());
    return item()->base();
}

WideString DesignPrimitiveImpl::uri() const {
    const Guard guard(store());
    return item()->uri();
}

bool DesignPrimitiveImpl::schema(WideString uri) {
    const Guard guard(store());
    return item()->base(uri.value());
}

bool DesignPrimitiveImpl::uri(WideString uri) {
    const Guard guard(store());
    return item()->uri(uri.value());
}

bool DesignPrimitiveImpl::reset(unsigned int count) {
    const Guard guard(store());
    return item()->reset(count);
}

bool DesignPrimitiveImpl::set(const void* data, unsigned int start, unsigned int count) {
    const Guard guard(store());
    if (!item()->set(static_cast<const char*>(data), start, count)) return false;
    item()->show();
    return true;
}

bool DesignPrimitiveImpl::get(void* data, unsigned int start, unsigned int count) {
    if (count == 0) return false;
    const Guard guard(store());
    return item()->get(static_cast<char*>(data), start, count) != 0;
}

WideString DesignPrimitiveImpl::valuelocale() {
    const Guard guard(store());
    return item()->valuelocale();
}

void DesignPrimitiveImpl::valuelocale(WideString locale) {
    const Guard guard(store());
    item()->valuelocale(locale.value());
}

metadata::IPrimitive* metadata::IPrimitive::to(IProperty* property) {
    return property && property->type() == 0 ? exactCast<DesignPrimitiveImpl>(property) : nullptr;
}

}  // namespace lumivard::platform::data
