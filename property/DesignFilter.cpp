#include "property/DesignFilter.h"

#include "property/Facades.h"
#include "record/Base.h"
#include "record/Guard.h"

namespace lumivard::platform::data {

using Record::Guard;

DesignTableImpl::DesignFilter::DesignFilter(DesignTableImpl* table) {
    const Guard guard(table->store());
    _table = std::make_unique<Design::Table>(table->store(), table->item()->offset(), false);
    _count = _table->items();
    forward();
}

DesignTableImpl::DesignFilter::~DesignFilter() {
    Record::releaseUnderGuard(_table);
}

bool DesignTableImpl::DesignFilter::next() {
    if (_count == 0 || _index >= _count) return false;
    ++_index;
    return forward() != IDataStore::BADOFF;
}

bool DesignTableImpl::DesignFilter::prev() {
    if (_count == 0 || _index == 0) return false;
    const unsigned int before = _index;
    --_index;
    if (backward() != IDataStore::BADOFF) return true;
    _index = before;
    return false;
}

SharedPtr<metadata::IProperty> DesignTableImpl::DesignFilter::current() {
    const Guard guard(_table->store());
    if (_count == 0 || _index >= _count) return {};
    return openProperty(_table->store(), _table->at(_index));
}

unsigned int DesignTableImpl::DesignFilter::forward() {
    const Guard guard(_table->store());
    for (; _index < _table->items(); ++_index) {
        if (onProperty()) return _index;
    }
    return IDataStore::BADOFF;
}

unsigned int DesignTableImpl::DesignFilter::backward() {
    const Guard guard(_table->store());
    for (;; --_index) {
        if (onProperty()) return _index;
        if (_index == 0) return IDataStore::BADOFF;
    }
}

bool DesignTableImpl::DesignFilter::onProperty() const {
    const Record::tType kind = Record::peek(_table->store(), _table->at(_index));
    return kind == Record::kPrimitive || kind == Record::kTable;
}

}  // namespace lumivard::platform::data
