#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/io/IDataReader.h"
#include "lumivard/platform/core/io/IDataWriter.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::metadata {

class ISchemaLocator;
class IURIResolver;

}  // namespace lumivard::platform::data::metadata

namespace lumivard::platform::data::structure {

class IContainer;

}  // namespace lumivard::platform::data::structure

/// Documents.
namespace lumivard::platform::data::format::xml {

/// Reads documents into stores and writes them out. It has no instances and holds nothing. It opens no file and follows
/// no reference: readers and writers are the caller's.
///
/// Threads: several documents may be read and written at once, over different stores. No operation takes the guard of
/// the store that it works on: who shares that holds it for the whole call. The `class` of a container takes the guard
/// of the schema's store meanwhile, that of a table does not. Time grows with the document, memory with its depth, its
/// longest text and the values that it makes. Documents of strangers are bounded where a few bytes could ask for much:
/// of what a `dim` reserves and no text fills a document has 128 MiB, and no tag is as long as 8 MiB, no element deeper
/// than 200,000. Otherwise there is no limit but the memory.
class LVP_EXPORT IXMLFrontEnd {
public:
    /// Hears what is wrong with a document. The caller implements it; it is called on the thread of `parse`, while that
    /// runs, and may be null. What it throws ends the reading like an exception of the reader.
    class LVP_EXPORT IErrorReporter {
    public:
        virtual ~IErrorReporter() = default;

        /// An element could not be taken: the name of the element, " : ", and the fault, on one line without a line
        /// end. The element is left out with all that it holds, but for its text, which may join the value around it,
        /// and the reading goes on. A record that was made for it stays in the store, with nothing that refers to it.
        virtual void report(const WideString& message) = 0;

        /// Comes right before each `report`: where the element begins; the line and the
        /// column from 1, the column in characters.
        virtual void located(unsigned long /*line*/, unsigned long /*column*/) {}

        /// The reading broke off before the end of the document, for instance because it is not well-formed XML: why,
        /// with line and column where they are known; empty where the memory that ran out does not suffice to say it.
        /// What was read until then is in the store, with nothing left open.
        virtual void malformed(const WideString& /*message*/) {}
    };

    /// Reads a document into a store, and flushes the store at the end in any case.
    ///
    /// This is how an empty store is filled: a `root` element on top becomes the root of the store and sets its
    /// version, and another element on top stands in its place. In a store that is set up, the top element is made anew
    /// and attached to nothing: there, read into a container.
    ///
    /// `reader` is opened here, read to its end and closed. When its `open` gives false nothing is read, and nobody is
    /// told. `locator` finds the schemas that elements name; with null, `class` attributes are passed over and `struct`
    /// elements are refused. A `class` that it does not find is passed over and not kept, and a struct whose `type` it
    /// does not find has neither type nor value. `resolver` is not used. None of them is owned.
    ///
    /// An exception while reading, whoever throws it, ends the reading, is told to `malformed`, and goes no further: a
    /// caller without a reporter does not learn of it. What `flush` throws passes through, and so does what the
    /// reader's `open` throws, with nothing flushed.
    static void parse(IDataStore* store, core::io::IDataReader* reader, metadata::ISchemaLocator* locator,
                      metadata::IURIResolver* resolver, IErrorReporter* reporter);

    /// Reads what stands in the top element of a document into a container that is there. The top element itself may be
    /// any that stands for an item and has what such an element needs, or else the whole document is left out. The
    /// container takes nothing from it: the version of a `root` becomes the store's, and what a `class` on it would
    /// inherit is made and left attached to nothing.
    ///
    /// A property that the container holds already takes in the content of an element of the same name and kind, tables
    /// with the same `class` too, and is shown if it was hidden; attributes of such an element have no effect. Any
    /// other element under a name that is taken is refused. Either leaves its record in the store, attached to nothing.
    /// Localized texts of the container itself are set as by `IContainer::describe`.
    ///
    /// `container` is an object of this library; it knows at once what was added to it, while other objects that are
    /// open over it do not. The other arguments are as above. The store is not flushed, and exceptions pass through,
    /// after `malformed` was told.
    static void parse(structure::IContainer* container, core::io::IDataReader* reader,
                      metadata::ISchemaLocator* locator, metadata::IURIResolver* resolver, IErrorReporter* reporter);

    /// Writes the item at the record offset `offset`, with all that it holds, as a document in UTF-8; 0 is the root,
    /// and so the whole store. What is hidden is left out. Where there is nothing to write at the offset, the document
    /// has a declaration and no element.
    ///
    /// `writer` is opened here, written to and closed, and not owned. That its `open` gives false is not looked at; who
    /// wants to know opens it once before. `locator` finds the layouts of structs; with null, structs go out without a
    /// value. Real numbers go out with 7 digits.
    ///
    /// Exceptions of the store and of the writer pass through, and then the writer is not closed.
    static void serialize(IDataStore* store, core::io::IDataWriter* writer, metadata::ISchemaLocator* locator,
                          unsigned int offset);
};

}  // namespace lumivard::platform::data::format::xml
