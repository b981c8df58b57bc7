#include "container/Cursor.h"

#include "record/Container.h"
#include "record/Guard.h"
#include "record/Offsets.h"

namespace lumivard::platform::data {

using Record::Guard;

Cursor::Cursor(const ContainerImpl& container, tAccepts accepts) : _store(container.store()), _accepts(accepts) {
    const unsigned int list = Record::Container(_store, container.item()->offset()).children();
    if (list != IDataStore::BADOFF) _offsets = Record::Offsets(_store, list).get();
    const Guard guard(_store);
    _index = accepted(0);
}

bool Cursor::next() {
    if (_index >= _offsets.size()) return false;
    const Guard guard(_store);
    _index = accepted(_index + 1);
    return _index < _offsets.size();
}

bool Cursor::prev() {
    if (_index == 0) return false;
    const Guard guard(_store);
    for (std::size_t index = _index; index > 0; --index) {
        if (!_accepts(Record::peek(_store, _offsets[index - 1]))) continue;
        _index = index - 1;
        return true;
    }
    return false;
}

std::size_t Cursor::accepted(std::size_t index) const {
    while (index < _offsets.size() && !_accepts(Record::peek(_store, _offsets[index]))) ++index;
    return index;
}

}  // namespace lumivard::platform::data
