#include "tools/items/Line.h"

#include <algorithm>
#include <span>
#include <vector>

#include "tools/base/Kinds.h"
#include "tools/base/Text.h"
#include "tools/base/Units.h"
#include "tools/base/Values.h"
#include "tools/items/Items.h"

namespace lvp::tool {

using lumivard::platform::data::metadata::IStructLayout;
using lumivard::platform::data::metadata::tValue;

namespace {

void append(std::string& line, tValue kind, std::span<const char> bytes) {
    const char* const between = formOf(kind) == tForm::kTexts ? " | " : " ";
    for (const std::string& value : valuesOf(kind, bytes)) line += (line.empty() ? "" : between) + value;
}

/// The fields of one block after the other, until the line is full.
std::string fieldsOf(const IVisitor::tPrimitive& item, std::size_t columns, IStructLayout& layout) {
    std::string line;
    std::vector<char> block(layout.stride());
    for (unsigned int start = 0; start < item.dimension && line.size() <= columns * 8; start += layout.stride()) {
        if (!item.get(block.data(), start, layout.stride())) break;
        for (unsigned int i = 0; i < layout.fields() && line.size() <= columns * 8; ++i) {
            const IStructLayout::tField& field = *layout.get(i);
            const std::size_t size = std::min<std::size_t>(field.size, columns * 8);
            append(line, field.type, std::span(block).subspan(field.offset, size));
        }
    }
    return line;
}

}  // namespace

std::string valueLine(const IVisitor::tPrimitive& item, std::size_t columns, IStructLayout* layout) {
    std::string line;
    if (item.flags & kExternal) {
        line = "at " + shortened(utf8(item.uri), columns);
    } else if (layout) {
        line = shortened(fieldsOf(item, columns, *layout), columns);
    } else {
        // No value takes less than a byte, and no character of a text more than six: what is left out never shows.
        std::vector<char> bytes(std::min<std::size_t>(std::size_t{item.dimension} * item.stride, columns * 8));
        if (item.stride == 0 || !item.get(bytes.data(), 0, static_cast<unsigned int>(bytes.size() / item.stride))) {
            bytes.clear();
        }
        append(line, item.valuetype, bytes);
        line = shortened(line, columns);
    }
    if (item.units != lumivard::platform::data::units::kNoUnit) line += " " + printable(unitName(item.units));
    return line;
}

}  // namespace lvp::tool
