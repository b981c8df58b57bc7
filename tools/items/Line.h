#pragma once

#include <string>

#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "lumivard/platform/data/structure/IVisitor.h"

namespace lvp::tool {

/// A primitive's value on one line, cut to about so many characters: its numbers with blanks between them, its texts
/// with " | ", or "at " and where it lies, and the unit. The fields of a struct by its layout, which may be null.
std::string valueLine(const lumivard::platform::data::structure::IVisitor::tPrimitive& item, std::size_t columns,
                      lumivard::platform::data::metadata::IStructLayout* layout = nullptr);

}  // namespace lvp::tool
