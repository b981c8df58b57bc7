#include "tools/view/PageData.h"

#include "tools/base/ExitStatus.h"
#include "tools/base/Kinds.h"
#include "tools/items/Items.h"
#include "tools/stores/CheckResult.h"
#include "tools/view/Complaints.h"
#include "tools/view/PageItems.h"

namespace lvp::tool {

using lumivard::platform::data::check::Finding;
using lumivard::platform::data::check::tSeverity;
using lumivard::platform::data::metadata::IStructLayout;
using lumivard::platform::data::metadata::tValue;

namespace {

template <class Numbers>
void writeColumn(JsonWriter& json, const char* name, const Numbers& numbers) {
    json.key(name).beginArray();
    for (const auto number : numbers) json.value(+number);
    json.endArray();
}

/// An array of rows: `write` is called for each, within an array.
template <class Rows, class Write>
void writeRows(JsonWriter& json, const char* name, const Rows& rows, Write write) {
    json.key(name).beginArray();
    for (const auto& row : rows) {
        json.beginArray();
        write(row);
        json.endArray();
    }
    json.endArray();
}

void writeHead(JsonWriter& json, const tPageSource& source, const tPageItems& items) {
    json.key("store").value(source.name);
    json.key("version").value(items.version);
    json.key("limits").beginObject();
    json.key("elements").value(source.limits.elements);
    json.key("characters").value(source.limits.characters);
    json.endObject();
    json.key("kinds").beginArray();
    for (unsigned int kind = 0; kind <= tValue::kStruct; ++kind) json.value(nameOf(static_cast<tValue>(kind)));
    json.endArray();
}

void writeItems(JsonWriter& json, const tPageItems& items) {
    writeColumn(json, "level", items.level);
    writeColumn(json, "kind", items.kind);
    writeColumn(json, "name", items.name);
    writeColumn(json, "flags", items.flags);
    writeColumn(json, "unit", items.unit);
    const auto notes = [&](const char* name, const std::vector<tPageItems::tNote>& all) {
        writeRows(json, name, all, [&](const tPageItems::tNote& note) {
            json.value(note.item);
            json.value(note.text);
        });
    };
    notes("base", items.base);
    notes("target", items.target);
    notes("uri", items.uri);
    notes("schema", items.schema);
    notes("locale", items.locale);
    writeRows(json, "texts", items.names, [&](const tPageItems::tName& name) {
        json.value(name.item);
        json.value(name.locale);
        json.value(utf8(name.text));
    });
    writeRows(json, "defaults", items.defaults, [&](const tPageItems::tDefault& one) {
        json.value(one.item);
        json.value(one.unit);
        json.value(unsigned{one.kind});
    });
}

void writeLayout(JsonWriter& json, IStructLayout& layout) {
    json.beginArray();
    for (unsigned int i = 0; i < layout.fields(); ++i) {
        const IStructLayout::tField& field = *layout.get(i);
        json.beginArray();
        json.value(utf8(field.name));
        json.value(nameOf(field.type));
        json.endArray();
    }
    json.endArray();
}

void writeAllValues(JsonWriter& json, const tPageSource& source, const tPageItems& items) {
    json.key("value");
    const tPageValues values = writeValues(json, *source.store, source.schemas->locator(), source.limits);
    if (values.items != items.size()) throw Failure(kCannotFinish, "the store was changed while it was read");
    writeRows(json, "cut", values.cuts, [&](const tPageValues::tCut& cut) {
        json.value(cut.item);
        json.value(cut.total);
    });
    writeRows(json, "layout", values.structs, [&](const tPageValues::tLayout& layout) {
        json.value(layout.item);
        json.value(layout.layout);
    });
    json.key("layouts").beginArray();
    for (IStructLayout* layout : values.layouts) writeLayout(json, *layout);
    json.endArray();
}

void writeConformance(JsonWriter& json, const tPageSource& source, tPageItems& items) {
    if (!source.schemas->locator()) {
        json.key("schemas").literal("null");
        json.key("conformance").literal("null");
        return;
    }
    std::vector<std::size_t> found;
    const auto rows = conformance(*source.store, *source.schemas, items, found);
    writeColumn(json, "schemas", found);
    writeRows(json, "conformance", rows, [&](const tConformance& row) {
        json.value(row.item);
        json.value(row.uris);
        json.value(row.difference);
    });
}

void writeFindings(JsonWriter& json, const tPageSource& source, const tPageItems& items) {
    const std::vector<Finding>& findings = source.report.findings;
    const std::vector<std::size_t> places = itemsOf(findings, items);
    std::size_t next = 0;
    writeRows(json, "findings", findings, [&](const Finding& finding) {
        const std::size_t item = places[next++];
        json.value(item == kNoItem ? std::int64_t{-1} : static_cast<std::int64_t>(item));
        json.value(word(finding.severity));
        json.value(finding.code);
        json.value(utf8(finding.path));
        json.value(finding.found);
        json.value(finding.repair);
    });
    json.key("severities").beginObject();
    for (const auto severity : {tSeverity::kNote, tSeverity::kStale, tSeverity::kDamage, tSeverity::kFatal}) {
        json.key(word(severity)).value(source.report.count(severity));
    }
    json.endObject();
    json.key("unattached").beginObject();
    json.key("records").value(source.report.unattached);
    json.key("bytes").value(source.report.unattachedBytes);
    json.endObject();
}

}  // namespace

void writePageData(std::ostream& out, const tPageSource& source) {
    tPageItems items = gatherItems(*source.store);
    if (items.size() == 0) throw Failure(kCannotFinish, "nothing in the store can be reached: check it");
    JsonWriter json(out);
    json.beginObject();
    writeHead(json, source, items);
    writeItems(json, items);
    writeAllValues(json, source, items);
    writeConformance(json, source, items);
    writeFindings(json, source, items);
    json.key("strings").beginArray();
    for (const std::wstring* text : items.pool.texts()) json.value(utf8(*text));
    json.endArray();
    json.endObject();
}

}  // namespace lvp::tool
