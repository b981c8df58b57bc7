#pragma once

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::core::xml {

/// Receives the events of a document in their order. All texts are UTF-8, owned by the parser and good during the call.
/// An exception that leaves an operation ends the parsing and reaches the caller of `XMLParser::parseDocument`.
class LVP_EXPORT XMLCallback {
public:
    virtual ~XMLCallback() = default;
    /// An element begins. `attributes` is an array of names and values in turn, ended by a null name.
    virtual void notifyStartElement(const char* name, const char** attributes) = 0;
    /// The innermost open element ends.
    virtual void notifyEndElement(const char* name) = 0;
    /// A namespace declaration comes into force. `prefix` is null for the default namespace, `uri` where it is undone.
    virtual void notifyStartNamespace(const char* prefix, const char* uri) = 0;
    /// A namespace declaration ends.
    virtual void notifyEndNamespace(const char* prefix) = 0;
    /// `length` bytes of text, without a terminator. One text may come in several calls.
    virtual void notifyCharacterData(const char* data, int length) = 0;
};

}  // namespace lumivard::platform::core::xml
