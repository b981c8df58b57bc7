#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "lumivard/platform/data/structure/IVisitor.h"
#include "tools/schemas/Layouts.h"

namespace lvp::tool {

/// Gathers what it is shown and prints it as a tree: a line for each item, with name, value, unit, kind, schemas,
/// target and display texts.
class TreePrinter : public lumivard::platform::data::structure::IVisitor {
public:
    /// Structs are shown field by field where the locator, which may be null, knows their schema. `hidden`: with what
    /// schemas have given and nobody has changed. What stands first is shown anyway if it was asked for by its path.
    TreePrinter(lumivard::platform::data::metadata::ISchemaLocator* locator, bool hidden, bool byPath)
        : _layouts(locator), _hidden(hidden), _byPath(byPath) {}

    void root(const tRoot& item) override;
    void primitive(const tPrimitive& item) override;
    bool table(const tTable& item) override;
    bool container(const tContainer& item) override;
    void text(std::wstring_view locale, std::wstring_view text) override;
    void unitDefault(lumivard::platform::data::units::tUnit units,
                     lumivard::platform::data::metadata::tValue valuetype) override;
    void leave() override { --_depth; }

    /// Prints what was gathered. Of what lies deeper than 100 levels the first branches are left out, and counted,
    /// since they would take the square of the depth.
    void print(std::ostream& out) const;

private:
    struct tLine {
        std::size_t depth;
        std::string text;
    };

    bool passesOver(unsigned char flags);
    void add(std::wstring_view name, const std::string& value, const char* kind);
    void note(const char* label, std::wstring_view text);
    bool enter();

    Layouts _layouts;
    bool _hidden;
    bool _byPath;
    bool _passed = false;  ///< the item that came last was passed over
    std::size_t _depth = 0;
    std::vector<tLine> _lines;
};

}  // namespace lvp::tool
