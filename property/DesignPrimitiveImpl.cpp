#include "property/DesignPrimitiveImpl.h"

#include "lumivard/platform/core/memory/SharedPtr.h"
#include "record/Guard.h"

namespace lumivard::platform::data {

using Record::Guard;

SharedPtr<metadata::IPrimitive> DesignPrimitiveImpl::open(IDataStore* store, unsigned int offset) {
    auto primitive = std::make_unique<Design::Primitive>(store, offset);
    return core::memory::share<metadata::IPrimitive>(std::make_unique<DesignPrimitiveImpl>(std::move(primitive)));
}

metadata::IProperty* DesignPrimitiveImpl::container() const {
    return const_cast<DesignPrimitiveImpl*>(this);
}

unsigned int DesignPrimitiveImpl::dimension() {
    const Guard guard(store());
    return primitive()->dimension();
}

unsigned int DesignPrimitiveImpl::stride() const {
    const Guard guard(store());
    return Design::Primitive::stride(primitive()->valuetype());
}

unsigned int DesignPrimitiveImpl::bytes() {
    const Guard guard(store());
    return primitive()->valuesize();
}

metadata::tValue DesignPrimitiveImpl::valuetype() {
    const Guard guard(store());
    return primitive()->valuetype();
}

units::tUnit DesignPrimitiveImpl::units() {
    const Guard guard(store());
    return primitive()->units();
}

WideString DesignPrimitiveImpl::schema() const {
    const Guard guard(store());
    return primitive()->base();
}

WideString DesignPrimitiveImpl::uri() const {
    const Guard guard(store());
    return primitive()->uri();
}

bool DesignPrimitiveImpl::schema(WideString uri) {
    const Guard guard(store());
    return primitive()->base(uri.value());
}

bool DesignPrimitiveImpl::uri(WideString uri) {
    const Guard guard(store());
    return primitive()->uri(uri.value());
}

bool DesignPrimitiveImpl::reset(unsigned int count) {
    const Guard guard(store());
    return primitive()->reset(count);
}

bool DesignPrimitiveImpl::set(const void* data, unsigned int start, unsigned int count) {
    const Guard guard(store());
    if (!primitive()->set(static_cast<const char*>(data), start, count)) return false;
    primitive()->show();
    return true;
}

bool DesignPrimitiveImpl::get(void* data, unsigned int start, unsigned int count) {
    if (count == 0) return false;
    const Guard guard(store());
    return primitive()->get(static_cast<char*>(data), start, count) != 0;
}

WideString DesignPrimitiveImpl::valuelocale() {
    const Guard guard(store());
    return primitive()->valuelocale();
}

void DesignPrimitiveImpl::valuelocale(WideString locale) {
    const Guard guard(store());
    primitive()->valuelocale(locale.value());
}

metadata::IPrimitive* metadata::IPrimitive::to(IProperty* property) {
    return property && property->type() == 0 ? dynamic_cast<DesignPrimitiveImpl*>(property) : nullptr;
}

}  // namespace lumivard::platform::data
