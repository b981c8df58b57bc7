#include "container/ContainerImpl.h"

#include "container/ContainerFilter.h"
#include "container/DesignFilter.h"
#include "container/Facades.h"
#include "lumivard/platform/core/memory/SharedPtr.h"
#include "record/Base.h"
#include "record/Guard.h"

namespace lumivard::platform::data {

using Record::Guard;

ContainerImpl::~ContainerImpl() {
    Record::releaseUnderGuard(_container);
}

WideString ContainerImpl::tag() const {
    const Guard guard(store());
    return _container->tag();
}

WideString ContainerImpl::path() const {
    const Guard guard(store());
    std::wstring path;
    _container->path(path);
    return path.c_str();
}

IDataStore* ContainerImpl::store() const {
    return _container->store();
}

SharedPtr<structure::IContainer> ContainerImpl::parent() {
    const Guard guard(store());
    return openContainer(store(), _container->parent());
}

WideString ContainerImpl::base() const {
    const Guard guard(store());
    return _container->base();
}

bool ContainerImpl::empty() const {
    return _container->items() == 0;
}

structure::IContainer::tType ContainerImpl::type() const {
    const Guard guard(store());
    return _container->type();
}

bool ContainerImpl::has(WideString name) {
    const Guard guard(store());
    return _container->lookup(name.value()) != IDataStore::BADOFF;
}

SharedPtr<structure::IContainer> ContainerImpl::container(WideString name) {
    const Guard guard(store());
    return openContainer(store(), name.value() ? _container->lookup(name.value()) : _container->offset());
}

SharedPtr<metadata::IPropertyFilter> ContainerImpl::properties() {
    const Guard guard(store());
    return core::memory::makeShared<metadata::IPropertyFilter, DesignFilter>(this);
}

SharedPtr<structure::IContainerFilter> ContainerImpl::containers() {
    const Guard guard(store());
    return core::memory::makeShared<structure::IContainerFilter, ContainerFilter>(this);
}

unsigned int ContainerImpl::locales() {
    const Guard guard(store());
    return _container->locales();
}

WideString ContainerImpl::locale(unsigned int index) {
    const Guard guard(store());
    std::wstring text;
    std::wstring locale;
    _container->locale(index, text, locale);
    return locale.c_str();
}

void ContainerImpl::describe(WideString locale, WideString text) {
    const Guard guard(store());
    _container->localize(text.value(), locale.value());
}

WideString ContainerImpl::localize(WideString locale) {
    const Guard guard(store());
    const unsigned int index = _container->localize(locale.value());
    if (index == Metadata::Item::kNoLocale) return {};
    std::wstring text;
    std::wstring name;
    _container->locale(index, text, name);
    return text.c_str();
}

}  // namespace lumivard::platform::data
