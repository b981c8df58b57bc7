#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>

#include "lumivard/platform/core/string/WideString.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "tools/Verbs.h"
#include "tools/base/Files.h"
#include "tools/base/JsonWriter.h"
#include "tools/base/Kinds.h"
#include "tools/base/Text.h"
#include "tools/schemas/Schemas.h"

namespace lvp::tool {

using lumivard::platform::core::string::WideString;
using lumivard::platform::data::metadata::IStructLayout;

namespace {

struct tRow {
    std::string name;
    std::string kind;
    std::string count;
    std::string offset;
    std::string size;
};

std::string fieldName(const IStructLayout::tField& field) {
    return printable(WideString(field.name).string());
}

void print(const std::string& uri, IStructLayout& layout) {
    std::vector<tRow> rows{{"field", "kind", "count", "offset", "size"}};
    for (unsigned int i = 0; i < layout.fields(); ++i) {
        const auto& field = *layout.get(i);
        rows.push_back({fieldName(field), nameOf(field.type), std::to_string(field.dim), std::to_string(field.offset),
                        std::to_string(field.size)});
    }
    const auto width = [&](std::string tRow::*column) {
        std::size_t widest = 0;
        for (const tRow& row : rows) widest = std::max(widest, (row.*column).size());
        return static_cast<int>(widest);
    };
    const int name = width(&tRow::name);
    const int kind = width(&tRow::kind);
    const int count = width(&tRow::count);
    const int offset = width(&tRow::offset);
    const int size = width(&tRow::size);
    std::cout << printable(uri) << ": " << layout.fields() << " fields, " << layout.values() << " values, "
              << layout.stride() << " bytes\n";
    for (const tRow& row : rows) {
        std::cout << "  " << std::left << std::setw(name) << row.name << "  " << std::setw(kind) << row.kind << "  "
                  << std::right << std::setw(count) << row.count << "  " << std::setw(offset) << row.offset << "  "
                  << std::setw(size) << row.size << '\n';
    }
}

void printJson(const std::vector<tNamedSchema>& schemas) {
    JsonWriter json(std::cout);
    json.beginObject();
    json.key("schemas").beginArray();
    for (const tNamedSchema& named : schemas) {
        IStructLayout& layout = *named.schema->layout();
        json.beginObject();
        json.key("uri").value(named.uri);
        json.key("values").value(layout.values());
        json.key("bytes").value(layout.stride());
        json.key("fields").beginArray();
        for (unsigned int i = 0; i < layout.fields(); ++i) {
            const auto& field = *layout.get(i);
            json.beginObject();
            json.key("name").value(WideString(field.name).string());
            json.key("kind").value(nameOf(field.type));
            json.key("count").value(field.dim);
            json.key("offset").value(field.offset);
            json.key("size").value(field.size);
            json.endObject();
        }
        json.endArray();
        json.endObject();
    }
    json.endArray();
    json.endObject();
    std::cout << '\n';
}

struct tOptions {
    std::string uris;
    std::vector<std::string> schemas;
    bool json = false;
};

tExitStatus showSchema(const tOptions& options) {
    const Schemas schemas(options.schemas);
    const std::vector<tNamedSchema> all = schemas.resolve(options.uris);
    if (options.json) {
        printJson(all);
    } else {
        for (const tNamedSchema& named : all) print(named.uri, *named.schema->layout());
    }
    flushOutput();
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace

void declareSchema(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("schema", "Show how a struct of a schema is laid out", "schema Mechanical --schemas schemas.xml",
             [options] { return showSchema(*options); })
        .argument("URI", options->uris, "The schemas, joined by ;")
        .needSchemas(options->schemas)
        .json(options->json);
}

}  // namespace lvp::tool
