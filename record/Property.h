#pragma once

#include "record/Entity.h"

namespace lumivard::platform::data::Record {

/// What primitives and tables have in common, which is the entity header.
class Property : public Entity {
public:
    Property(IDataStore* store, unsigned int offset) : Entity(store, offset) {}
    Property(IDataStore* store, unsigned int offset, tInPlace place) : Entity(store, offset, place) {}

protected:
    Property(IDataStore* store, std::uint64_t size, tType type) : Entity(store, size, type) {}
};

}  // namespace lumivard::platform::data::Record
