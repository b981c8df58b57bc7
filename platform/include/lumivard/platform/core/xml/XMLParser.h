#pragma once

#include <memory>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/io/IDataReader.h"
#include "lumivard/platform/core/tracer/ISink.h"
#include "lumivard/platform/core/xml/XMLCallback.h"

/// The bytes of XML: reading and writing them.
namespace lumivard::platform::core::xml {

/// Reads XML 1.0 documents and hands their events to a callback. It opens no file and follows no reference out of the
/// document. Element and attribute names come as they are spelled, prefixes included.
///
/// Threads: one parser belongs to one thread at a time; several parsers may run at once.
class LVP_EXPORT XMLParser {
public:
    /// `callback` is not owned and outlives the parser. `sink` is not used and may be null.
    XMLParser(XMLCallback* callback, tracer::ISink* sink);
    virtual ~XMLParser();
    XMLParser(const XMLParser&) = delete;
    XMLParser& operator=(const XMLParser&) = delete;

    /// Reads one document from an opened reader to its end. UTF-8, UTF-16, ISO-8859-1 and US-ASCII are understood. May
    /// be called again for another document, though not from within a callback.
    ///
    /// Throws `std::runtime_error` when the document is not well-formed, or declares entities or attributes (with which
    /// a short document can cost as much as a long one), with a text like "line 3, column 7: mismatched tag"; the
    /// events before that place have been told. A declaration of one of the five entities that XML itself defines
    /// changes nothing and is no fault. Exceptions of the reader and of the callback pass; what was read just before a
    /// reader failed may not have been told.
    ///
    /// A document type that names a second document is accepted, and that document is not read. References to entities
    /// that it might declare are refused in text; in an attribute value they are passed over.
    ///
    /// Time is proportional to the length of the document. Memory is not: up to 8 MiB are read ahead, of which what was
    /// read last is kept until the next document or the end of the parser; a text comes in pieces, but a tag, a comment
    /// or a processing instruction is held whole, and so is the nesting. It throws as above for one of 8 MiB or more,
    /// and for elements that stand deeper in each other than 200,000.
    void parseDocument(io::IDataReader* reader);

    /// During a callback: the line of the event's first character, counted from 1. Otherwise where the last document
    /// ended or broke off; 0 before the first.
    unsigned long line() const;

    /// Likewise the column, in characters from 1; a tab is one.
    unsigned long column() const;

private:
    class State;
    std::unique_ptr<State> _state;
};

}  // namespace lumivard::platform::core::xml
