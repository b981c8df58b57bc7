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
    _index = forward(0);
}

DesignTableImpl::DesignFilter::~DesignFilter() {
    Record::releaseUnderGuard(_table);
}

bool DesignTableImpl::DesignFilter::next() {
    if (_count == 0 || _index >= _count) return false;
    _index = forward(_index + 1);
    return _index < _table->items();
}

bool DesignTableImpl::DesignFilter::prev() {
    if (_count == 0 || _index == 0) return false;
    const unsigned int found = backward(_index - 1);
    if (found == IDataStore::BADOFF) return false;
    _index = found;
    return true;
}

SharedPtr<metadata::IProperty> DesignTableImpl::DesignFilter::current() {
    const Guard guard(_table->store());
    if (_count == 0 || _index >= _count) return {};
    return openProperty(_table->store(), _table->at(_index));
}

unsigned int DesignTableImpl::DesignFilter::forward(unsigned int index) const {
    const Guard guard(_table->store());
    while (index < _table->items() && !isProperty(index)) ++index;
    return index;
}

unsigned int DesignTableImpl::DesignFilter::backward(unsigned int index) const {
    const Guard guard(_table->store());
    for (;; --index) {
        if (isProperty(index)) return index;
        if (index == 0) return IDataStore::BADOFF;
    }
}

bool DesignTableImpl::DesignFilter::isProperty(unsigned int index) const {
    const Record::tType kind = Record::peek(_table->store(), _table->at(index));
    return kind == Record::kPrimitive || kind == Record::kTable;
}

}  // namespace lumivard::platform::data
