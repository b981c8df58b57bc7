#include "schema/Comparator.h"

#include "metadata/Set.h"
#include "record/Primitive.h"

namespace lumivard::platform::data::Schema {

namespace {

bool isSet(Record::tType kind) {
    return kind == Record::kTable || kind == Record::kContainer;
}

}  // namespace

Comparator::Entity::Entity(IDataStore* store, unsigned int record) : offset(record) {
    const Record::Primitive entity(store, offset, Record::kInPlace);
    kind = entity.type();
    tag = entity.name();
    children = entity.children();
    if (kind == Record::kPrimitive) valuetype = entity.valuetype();
}

bool Comparator::Entity::operator==(const Entity& other) const {
    if (kind != other.kind || tag != other.tag) return false;
    return kind == Record::kTable || (kind == Record::kPrimitive && valuetype == other.valuetype);
}

Comparator::tWalk::tWalk(IDataStore* owner, const Entity& set) : store(owner), kind(set.kind) {
    if (isSet(kind)) items = Metadata::Set::entries(store, set.children);
}

bool Comparator::compare(IDataStore* store, unsigned int offset, IDataStore* schemaStore, unsigned int schemaOffset) {
    *this = Comparator();
    if (!push(store, Entity(store, offset), schemaStore, Entity(schemaStore, schemaOffset))) return false;
    while (!_pairs.empty()) {
        auto& [instance, schema] = _pairs.back();
        if (schema.done()) {
            _pairs.pop_back();
            advance();
            continue;
        }
        const Entity wanted = schema.current();
        const std::optional<Entity> found = find(instance, wanted);
        if (!found) return false;
        if (wanted.kind != Record::kTable) {
            advance();
        } else if (!push(store, *found, schemaStore, wanted)) {
            return false;
        }
    }
    return true;
}

bool Comparator::push(IDataStore* store, const Entity& instance, IDataStore* schemaStore, const Entity& schema) {
    if (schema.kind != Record::kTable || !_schemas.insert(schema.offset).second) return false;
    _pairs.push_back({tWalk(store, instance), tWalk(schemaStore, schema)});
    if (!_instances.insert(instance.offset).second) _again += _pairs.back().instance.items.size();
    return _again <= kMostAgain;
}

std::optional<Comparator::Entity> Comparator::find(tWalk& walk, const Entity& wanted) {
    for (; !walk.done(); ++walk.cursor) {
        Entity item = walk.current();
        if (item == wanted) return item;
    }
    return std::nullopt;
}

void Comparator::advance() {
    if (_pairs.empty()) return;
    auto& [instance, schema] = _pairs.back();
    if (instance.kind == Record::kContainer) ++instance.cursor;
    ++schema.cursor;
}

}  // namespace lumivard::platform::data::Schema
