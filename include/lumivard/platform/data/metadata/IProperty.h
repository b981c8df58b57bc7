#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::metadata {

class ITable;

/// What primitives and tables have in common: a name, a place in the tree, texts in several languages, flags. The
/// values of a primitive and the items of a table are reached by `IPrimitive::to` and `ITable::to`.
///
/// Only the library implements it. Threads: one at a time for each object; every operation but `store` holds the guard.
class LVP_EXPORT IProperty {
public:
    virtual ~IProperty() = default;

    /// The name that the property had when this object was opened.
    virtual WideString tag() const = 0;

    /// The names from the top level down to this property, joined by ".", without that of the store's root. The names
    /// above it come from the store, its own is `tag()`. Costs a read for each level.
    virtual WideString path() const = 0;

    /// The store that the property stands in; takes no guard.
    virtual IDataStore* store() const = 0;

    /// 0 for a primitive, 1 for anything else, which is a table.
    virtual unsigned int type() const = 0;

    /// Gives the property another name among its siblings. The name is taken as it is, a dot included.
    ///
    /// False, with nothing changed, when a sibling bears the name, when there is no name, when the property came from a
    /// schema, or when its parent is neither a table nor a container.
    ///
    /// The new name does not reach any object that is open: `tag()` and the end of `path()` of this one go on with the
    /// old name, and so do the objects over its parent. A further `rename` through this object would go by the old name
    /// too: open the property anew. Costs the opening of the parent.
    virtual bool rename(WideString name) = 0;

    /// The table that the property stands in, as a new object; null when it stands in a container or at the top.
    virtual SharedPtr<ITable> parent() = 0;

    /// How many locales the property has a text in.
    ///
    /// Texts that were set through this object are written when it goes, and show in objects that are opened after
    /// that; where the store throws then, or memory runs out, they are lost and nobody is told. This object itself
    /// shows them if the property had any text when it was opened; otherwise `locales` and `localize` here go on
    /// telling of none.
    virtual unsigned int locales() = 0;

    /// The name of the locale at `index`, from 0, in the order in which they were first described; empty when there is
    /// none there.
    virtual WideString locale(unsigned int index) = 0;

    /// Sets the property's text in a locale such as "en-us", in place of one that is there; a text without characters
    /// removes it. When it shows is told at `locales`.
    ///
    /// When this object goes it writes all texts, those that it has read with those that it was given: what another
    /// object wrote in between is lost. So let one object describe at a time.
    ///
    /// After a removal this object goes by stale places, until the property is opened anew: for each later locale
    /// `localize` gives, and `describe` changes or removes, the text of the one that follows it; for the last one there
    /// is none. To remove the only text has no lasting effect: it is back when the property is opened again.
    virtual void describe(WideString locale, WideString description) = 0;

    /// The text in a locale; empty when there is none.
    virtual WideString localize(WideString locale) = 0;

    /// The flag bits, as they stand in the store: 0x01 optional: a label for clients; 0x02 inherited: the item came
    /// from a schema and can be neither destroyed nor renamed; 0x04 hidden: it is still as it came from the schema and
    /// is left out of documents, until a value is set; 0x08 external: a primitive holds a URI in place of values. The
    /// other bits have no meaning here and are kept.
    virtual unsigned char flags() const = 0;

    /// Sets the bits of `bits`, in the store, at once. The library keeps 0x02, 0x04 and 0x08 itself: to set them by
    /// hand changes what is told of them above, the last one from the next opening on.
    virtual void on(unsigned char bits) = 0;

    /// Clears the bits of `bits` in the same way.
    virtual void off(unsigned char bits) = 0;
};

}  // namespace lumivard::platform::data::metadata
