#include "check/Edits.h"

#include "record/Offsets.h"
#include "record/Table.h"

namespace lumivard::platform::data::Check {

namespace {

constexpr unsigned int BADOFF = IDataStore::BADOFF;

}  // namespace

void Edits::applyTo(IDataStore& store) const {
    for (const auto& [offset, edit] : _edits) {
        if (edit.ofAnEntity()) changeEntity(store, offset, edit);
        if (edit.ofAList()) changeList(store, offset, edit);
        if (edit.defaults) {
            Record::Table table(&store, offset);
            table.defaults(BADOFF);
            table.update(true);
        }
        if (edit.name) {
            const auto* bytes = reinterpret_cast<const char*>(edit.name->c_str());
            Record::Entity(&store, offset).name(bytes, Record::textSection(edit.name->c_str()));
        }
    }
}

void Edits::changeEntity(IDataStore& store, unsigned int offset, const tEdit& edit) {
    Record::Entity entity(&store, offset);
    if (edit.refs) entity.refs(0);
    if (edit.parent) entity.parent(*edit.parent);
    if (edit.children) entity.children(BADOFF);
    if (edit.locale) entity.locale(BADOFF);
    entity.update(true);
}

void Edits::changeList(IDataStore& store, unsigned int offset, const tEdit& edit) {
    Record::Offsets list(&store, offset);
    std::vector<unsigned int> kept;
    auto dropped = edit.dropped.begin();
    std::size_t index = 0;
    for (const unsigned int entry : list.get()) {
        if (dropped != edit.dropped.end() && *dropped == index) {
            ++dropped;
        } else {
            kept.push_back(entry);
        }
        ++index;
    }
    list.shrink(Record::Offsets::kEntries, list.size() - Record::Offsets::kEntries);
    list.add(kept);
}

}  // namespace lumivard::platform::data::Check
