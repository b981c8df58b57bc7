#include "schema/Comparator.h"

#include "metadata/Set.h"
#include "record/Primitive.h"

namespace lumivard::platform::data::Schema {

namespace {

bool isSet(Record::tType kind) {
    return kind == Record::kTable || kind == Record::kContainer;
}

}  // namespace

Comparator::Entity::Entity(IDataStore* owner, unsigned int record) : store(owner), offset(record) {
    const Record::Entity entity(store, offset);
    kind = entity.type();
    tag = entity.name();
    children = entity.children();
    if (kind == Record::kPrimitive) valuetype = Record::Primitive(store, offset).valuetype();
}

bool Comparator::Entity::operator==(const Entity& other) const {
    if (kind != other.kind || tag != other.tag) return false;
    return kind == Record::kTable || (kind == Record::kPrimitive && valuetype == other.valuetype);
}

Comparator::tWalk::tWalk(const Entity& set) : store(set.store), kind(set.kind) {
    if (isSet(kind)) items = Metadata::Set::entries(store, set.children);
}

bool Comparator::compare(IDataStore* store, unsigned int offset, IDataStore* schemaStore, unsigned int schemaOffset) {
    _pairs.clear();
    _seen.clear();
    if (!push(Entity(store, offset), Entity(schemaStore, schemaOffset))) return false;
    for (;;) {
        auto& [instance, schema] = _pairs.back();
        if (schema.done()) {
            _pairs.pop_back();
            if (_pairs.empty()) return true;
            advance();
            continue;
        }
        const Entity wanted = schema.current();
        while (!instance.done() && !(instance.current() == wanted)) ++instance.cursor;
        if (instance.done()) return false;
        if (wanted.kind != Record::kTable) {
            advance();
        } else if (!push(instance.current(), wanted)) {
            return false;
        }
    }
}

bool Comparator::push(const Entity& instance, const Entity& schema) {
    if (schema.kind != Record::kTable || !_seen.insert(schema.offset).second) return false;
    _pairs.push_back({tWalk(instance), tWalk(schema)});
    return true;
}

void Comparator::advance() {
    auto& [instance, schema] = _pairs.back();
    if (instance.kind == Record::kContainer) ++instance.cursor;
    ++schema.cursor;
}

}  // namespace lumivard::platform::data::Schema
