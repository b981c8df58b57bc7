#pragma once

#include <string>
#include <vector>

#include "lumivard/platform/core/xml/XMLCallback.h"

namespace lvp::tool {

using lumivard::platform::core::xml::XMLCallback;

/// Passes on the events of one item of a document, the one at a dotted path from the top element, and of everything in
/// it. An empty path is the whole document.
class SubtreeFilter : public XMLCallback {
public:
    SubtreeFilter(const std::string& path, XMLCallback& target);

    /// Whether the item was there.
    bool found() const { return _found; }

    void notifyStartElement(const char* name, const char** attributes) override;
    void notifyEndElement(const char* name) override;
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char* data, int length) override;

private:
    XMLCallback& _target;
    std::vector<std::string> _pieces;
    std::size_t _depth = 0;    ///< open elements
    std::size_t _matched = 0;  ///< of these, how many lie on the path, the top element included
    bool _inside = false;
    bool _found = false;
};

/// The value of an attribute, or null.
const char* attribute(const char** attributes, const char* name);

}  // namespace lvp::tool
