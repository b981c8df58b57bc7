#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/LVPUUID.h"
#include "lumivard/platform/core/io/IDataWriter.h"

namespace lumivard::platform::core::xml {

class XMLOutput;

/// Writes one XML document in UTF-8, element by element, as it is told: no indentation, no line ends of its own, since
/// white space is content. It does not check that names are XML names, nor that there is one outermost element.
///
/// What a parser would change on reading goes out as a character reference: tab, line feed and carriage return in
/// attributes, the carriage return in text. A character that XML cannot carry becomes U+FFFD.
///
/// Operations out of order, told below, throw `std::logic_error` and write nothing. Exceptions of the writer pass
/// through every operation; the document is then broken off for good. Threads: one at a time.
///
/// The operations on views do the same as those on wide texts that end in a zero, for callers who know how long a text
/// is. Narrow texts go out byte by byte: they are UTF-8 in which nothing marks up, as in names and numbers.
class LVP_EXPORT XMLSerializer {
public:
    /// `id` is not used.
    explicit XMLSerializer(LVPUUID& id);
    virtual ~XMLSerializer();
    XMLSerializer(const XMLSerializer&) = delete;
    XMLSerializer& operator=(const XMLSerializer&) = delete;

    /// Begins a document in `writer`, which is open, not owned, and stays until `detach`. Output is gathered and
    /// reaches the writer in blocks of some 64 KiB. What was not detached from a writer before is thrown away.
    /// Where there is no memory for the block it throws `std::bad_alloc`, and is not attached.
    virtual void attach(io::IDataWriter* writer);
    /// Writes the XML declaration, with the line end behind it. Out of order inside an element.
    virtual void emitXMLHeader();
    /// Opens an element. Out of order without a writer. `extra` is not used.
    virtual void startElement(const wchar_t* name, const wchar_t* extra);
    /// The same for a narrow name.
    void startElement(std::string_view name);
    /// Adds an attribute to the element that was just opened; a null value leaves the attribute out. Out of order once
    /// the element has content. `extra` is not used.
    virtual void addAttribute(const wchar_t* name, const wchar_t* value, const wchar_t* extra);
    /// The same for a value of known length.
    void addAttribute(std::string_view name, std::wstring_view value);
    /// The same for a narrow value.
    void addAttribute(std::string_view name, std::string_view value);
    /// Adds text to the innermost open element. Pieces join with nothing between; an empty or null piece is no content.
    /// Out of order when no element is open.
    virtual void addCharacterData(const wchar_t* text);
    /// The same for a text of known length.
    void addCharacterData(std::wstring_view text);
    /// The same for a narrow text.
    void addCharacterData(std::string_view text);
    /// Closes the innermost open element: as `<x/>` when it has no content. Out of order when none is open. `flag` is
    /// not used.
    virtual void endElement(bool flag);
    /// Hands everything that was written to the writer and lets it go. Elements that are open stay so in the document.
    /// Without a writer it does nothing.
    virtual void detach();

private:
    void beginAttribute(std::string_view name);
    void beginText(bool empty);
    void closeStartTag();

    std::unique_ptr<XMLOutput> _output;  ///< null without a writer
    /// The names of the open elements in one text, and where each of them begins.
    std::string _open;
    std::vector<unsigned long> _starts;
    bool _inStartTag = false;
};

}  // namespace lumivard::platform::core::xml
