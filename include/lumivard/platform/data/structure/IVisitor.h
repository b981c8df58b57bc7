#pragma once

#include <string_view>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/structure/IContainer.h"
#include "lumivard/platform/data/units/tUnit.h"

namespace lumivard::platform::data::structure {

/// Is shown what a store holds, as it is now, without an object being opened for it: the quick way to read a value at a
/// path, or a whole tree. Each item costs a look at its record, which is the least that reading can cost; nothing is
/// counted as open, and nothing is written.
///
/// A client derives from it, and takes in what it wants to see. What it is given stands during the call alone. It may
/// open, change and flush whatever it likes meanwhile: of a set the children are shown that it had when it was entered,
/// as far as they are still there.
///
/// What a schema has put there as a hidden default is shown too, with its flag. In a damaged store an item is shown
/// only where its owner lists it, and each set once.
class LVP_EXPORT IVisitor {
public:
    /// What stands at the top of a store: its root, or the table or container that a document had there instead.
    struct LVP_EXPORT tRoot {
        /// The sorts of items that may stand there.
        enum tKind : unsigned char {
            kRoot,   ///< a root, as every store has that was not made of another document
            kTable,  ///< a table
            kNode,   ///< a container: a node
            kGroup,  ///< a container: a group
            kLink    ///< a container: a link
        };

        std::wstring_view name;    ///< what it is called
        tKind kind = kRoot;        ///< what it is
        std::wstring_view base;    ///< of a table or container: the schemas that it inherits from
        std::wstring_view target;  ///< of a link: where it leads
    };

    /// What a primitive is.
    struct LVP_EXPORT tPrimitive {
        std::wstring_view name;               ///< as `IProperty::tag`
        metadata::tValue valuetype = {};      ///< as `IPrimitive::valuetype`
        units::tUnit units = units::kNoUnit;  ///< as `IPrimitive::units`
        unsigned char flags = 0;              ///< as `IProperty::flags`
        unsigned int stride = 0;              ///< bytes of one value, as `IPrimitive::stride`
        unsigned int dimension = 0;           ///< the number of values, as `IPrimitive::dimension`
        std::wstring_view valuelocale;        ///< the locale of the value
        std::wstring_view schema;             ///< of a struct: its type
        std::wstring_view uri;                ///< where the value is to be found, if it is not here

        IDataStore* store = nullptr;  ///< where it stands
        unsigned int offset = 0;      ///< its record there

        /// Copies `count` values, beginning with value `start`, to `data`, as they are in the store at this moment.
        /// False, and nothing copied, when there are not so many, or none are asked for.
        bool get(void* data, unsigned int start, unsigned int count) const;
    };

    /// What a table is, beside what it holds.
    struct tTable {
        std::wstring_view name;   ///< as `IProperty::tag`
        unsigned char flags = 0;  ///< as `IProperty::flags`
        std::wstring_view base;   ///< the schemas that it inherits from, as `ITable::base`
        unsigned int offset = 0;  ///< its record
    };

    /// What a container is, beside what it holds.
    struct tContainer {
        std::wstring_view name;                      ///< as `IContainer::tag`
        IContainer::tType type = IContainer::kNode;  ///< as `IContainer::type`
        unsigned char flags = 0;                     ///< as `IProperty::flags`
        std::wstring_view base;                      ///< the schemas that it inherits from, as `IContainer::base`
        std::wstring_view target;                    ///< of a link: where it leads, as `ILink::target`
        unsigned int offset = 0;                     ///< its record
    };

    virtual ~IVisitor() = default;

    /// The top of a store, before what stands there, where the whole of a store is shown. There is no `leave` for it.
    virtual void root(const tRoot& item);

    /// A primitive.
    virtual void primitive(const tPrimitive& item);

    /// A table, before what it holds. True enters it: what it holds comes next, in the order in which it was added, and
    /// then `leave`. False passes over both.
    virtual bool table(const tTable& item);

    /// The same for a container.
    virtual bool container(const tContainer& item);

    /// What the item that came last is called in a locale: right behind the root, a primitive, or a set that is
    /// entered, once for each of its texts, in their order.
    virtual void text(std::wstring_view locale, std::wstring_view text);

    /// The unit and the kind that the table which is entered has as the default of the unit's group, as
    /// `ITable::defaults`: behind the table's texts, once for each group in which it has one itself.
    virtual void unitDefault(units::tUnit units, metadata::tValue valuetype);

    /// The set that was entered last, and not yet left, has been shown.
    virtual void leave();

    /// Shows the item at a dotted path, with all that it holds, and returns true; false when nothing is there. Under an
    /// empty path lies the whole: all that stands at the top of the store, or in the container. The path is followed as
    /// `IContainer::property` does it, but through the store as it is now.
    ///
    /// Holds the store's guard all the time. Costs a search in each set on the path, and a look at each item that is
    /// shown, at its texts and defaults too where it has any; the depth of the tree is bounded by memory only.
    /// Exceptions of the store and of the visitor pass through.
    static bool visit(IDataStore* store, std::wstring_view path, IVisitor& visitor);

    /// The same for a path that begins in a container.
    static bool visit(IContainer* container, std::wstring_view path, IVisitor& visitor);
};

}  // namespace lumivard::platform::data::structure
