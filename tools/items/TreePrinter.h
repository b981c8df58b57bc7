#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "lumivard/platform/core/xml/XMLCallback.h"

namespace lvp::tool {

/// Gathers the events of a document and prints its items as a tree: a line for each, with name, value, unit, kind,
/// schemas, target and display texts.
class TreePrinter : public lumivard::platform::core::xml::XMLCallback {
public:
    void notifyStartElement(const char* name, const char** attributes) override;
    void notifyEndElement(const char* name) override;
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char* data, int length) override;

    /// Prints what was gathered.
    void print(std::ostream& out) const;

private:
    struct tLine {
        std::size_t depth = 0;
        bool isValue = false;
        std::string name;
        std::string kind;
        std::string units;
        std::string notes;  ///< schemas, target, display texts
        std::vector<std::string> values;
    };

    void startItem(const std::string& kind, const char** attributes);
    static std::string describe(const tLine& line);

    std::vector<tLine> _lines;
    std::vector<std::size_t> _open;  ///< the lines of the open items, innermost last
    std::string _sub;                ///< the open sub-element, or empty
    std::string _locale;
    std::string _text;
};

}  // namespace lvp::tool
