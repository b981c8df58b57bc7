#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lumivard/platform/core/xml/XMLCallback.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"

namespace lvp::tool {

/// Gathers the events of a document and writes it so that equal content gives equal lines: items sorted by name, each
/// element on a line of its own, numbers one a line. It reads back as the same items with the same values.
class CanonicalDocument : public lumivard::platform::core::xml::XMLCallback {
public:
    void notifyStartElement(const char* name, const char** attributes) override;
    void notifyEndElement(const char* name) override;
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char* data, int length) override;

    /// Writes what was gathered, into a document whose header is there.
    void write(lumivard::platform::core::xml::XMLSerializer& serializer);

private:
    struct tElement {
        std::string kind;
        std::string values;  ///< the kind of the values in its text: that of the element around a `val`
        std::vector<std::pair<std::string, std::string>> attributes;
        std::string text;
        std::vector<std::size_t> children;
        bool subElement = false;  ///< `name`, `val`, `default`: no item
    };
    /// An element that is being written, and the child whose turn it is.
    struct tOpen {
        std::size_t element;
        std::size_t next;
    };

    const std::string& name(std::size_t element) const;
    void sort(tElement& element) const;
    void begin(lumivard::platform::core::xml::XMLSerializer& serializer, std::size_t element, std::size_t depth);
    void writeText(lumivard::platform::core::xml::XMLSerializer& serializer, std::size_t element, std::size_t depth);

    std::vector<tElement> _elements;
    std::vector<std::size_t> _open;
};

}  // namespace lvp::tool
