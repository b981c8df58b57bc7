#include <algorithm>
#include <iomanip>
#include <iostream>

#include "lumivard/platform/core/string/WideString.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "tools/Commands.h"
#include "tools/Files.h"
#include "tools/Kinds.h"
#include "tools/Schemas.h"
#include "tools/Text.h"

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

}  // namespace

tExitStatus showSchema(const std::string& uris, const std::vector<std::string>& sources) {
    const Schemas schemas(sources);
    for (const tNamedSchema& named : schemas.resolve(uris)) print(named.uri, *named.schema->layout());
    flushOutput();
    return schemas.faulty() ? kFaults : kDone;
}

}  // namespace lvp::tool
