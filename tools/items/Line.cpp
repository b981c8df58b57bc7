#include "tools/items/Line.h"

#include "tools/base/Kinds.h"
#include "tools/base/Text.h"
#include "tools/base/Units.h"
#include "tools/base/Values.h"
#include "tools/items/Items.h"

namespace lvp::tool {

std::string valueLine(const IVisitor::tPrimitive& item, std::size_t columns) {
    std::string line;
    if (item.flags & kExternal) {
        line = "at " + shortened(utf8(item.uri), columns);
    } else {
        // No value takes less than a byte, and no character of a text more than six: what is left out never shows.
        std::vector<char> bytes(std::min<std::size_t>(std::size_t{item.dimension} * item.stride, columns * 8));
        if (item.stride == 0 || !item.get(bytes.data(), 0, static_cast<unsigned int>(bytes.size() / item.stride))) {
            bytes.clear();
        }
        const char* const between = formOf(item.valuetype) == tForm::kTexts ? " | " : " ";
        for (const std::string& value : valuesOf(item.valuetype, bytes)) line += (line.empty() ? "" : between) + value;
        line = shortened(line, columns);
    }
    if (item.units != lumivard::platform::data::units::kNoUnit) line += " " + printable(unitName(item.units));
    return line;
}

}  // namespace lvp::tool
