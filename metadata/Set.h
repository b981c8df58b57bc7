#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "metadata/Item.h"
#include "metadata/NameIndex.h"

namespace lumivard::platform::data::Metadata {

/// An item that owns children: the records in the `Offsets` list that its own record names.
///
/// It keeps an index of their names, taken when it was opened, that follows what is done through this object and
/// nothing else; `update` catches up with the store. Names are unique in the index. The order of the list is the order
/// of adding. The index of a large set is shared with other objects over it (`Indexes`), as long as none of them sees
/// something else than the others.
///
/// Defined elsewhere: what is done to a whole subtree (`remove`, `rename`, `unreferenced`, `cleanup`, `duplicate`) in
/// design/Set+Subtree.cpp, how a dotted path is followed (`lookup`) in schema/Set+Lookup.cpp, what comes from a schema
/// (`inherit`, `hide`) in schema/Inherit.cpp.
class Set : public Item {
public:
    /// Drops the index and loads it again from the store; where that throws, the index stays as it was.
    void update();

    /// Loads the index from the list of children. Reads each child once, those of a large set only when nobody has done
    /// so since that set was changed by others than the library.
    void populate();

    /// The direct child of that exact name, dots included, in the index; `BADOFF` for an unknown or null name. No store
    /// access.
    unsigned int find(const wchar_t* name) const;

    /// Makes an existing record a child: sets its `parent`, and adds it to the list and the index. False, with nothing
    /// changed, for a record that is no primitive, table or container, or whose name the index has. Costs the same
    /// whatever the number of children, unless other objects know the set's index: then that is copied.
    bool add(unsigned int offset);

    /// The number of names in the index.
    unsigned int items() const { return _index ? static_cast<unsigned int>(_index->size()) : 0; }

    /// The entry of the stored list at a position, read now; `BADOFF` past its end.
    unsigned int at(unsigned int index) const;

    /// The first `items()` entries of the stored list, read now: what `at` gives for them one by one.
    std::vector<unsigned int> entries() const;

    /// Destroys a child and everything below it. False, with nothing changed, for an unknown name, a child that came
    /// from a schema, and a child that is open elsewhere, itself or in part.
    bool remove(const wchar_t* name);

    /// Changes a child's name. False, with nothing changed, when `to` is taken, `from` is unknown, either is null, or
    /// the child came from a schema. Objects that are open on the child keep its old name.
    bool rename(const wchar_t* from, const wchar_t* to);

    /// Whether no record below this one is open. Reads the whole subtree.
    bool unreferenced() override;

    /// Erases all children in the index, with everything below them, and the list. Nothing holds it back.
    void cleanup();

    /// Takes in copies of records of another store and of everything below them, as children that came from a schema
    /// and are hidden; not where the name is taken, in the index. A record that is no primitive, table or container is
    /// passed over.
    void inherit(IDataStore* source, const std::vector<unsigned int>& offsets);
    void inherit(IDataStore* source, unsigned int offset) { inherit(source, std::vector<unsigned int>{offset}); }

    /// Marks a record and everything below it as come from a schema and hidden; none but the three kinds.
    void hide(unsigned int offset);

    /// Copies all children of the stored list into another store, below a record there, and returns the offset of the
    /// new list, or `BADOFF` when there is no list. An entry of an unknown kind is not copied: its number stands in
    /// the new list.
    unsigned int duplicate(IDataStore* target, unsigned int parent);

    /// The child of a name or, where there is a ".", what the dotted path leads to from here; `BADOFF` for nothing, and
    /// for null.
    unsigned int lookup(const wchar_t* name) const;

    /// As `find`, for a name that is part of a text.
    unsigned int find(std::wstring_view name) const;

    /// The children that a set opened on `list` now would have in its index, in the order of the list: records of the
    /// three kinds, of each name the first.
    static std::vector<unsigned int> children(IDataStore* store, unsigned int list);

    /// The entries of `list` that `entries` of a set opened on it now would give.
    static std::vector<unsigned int> entries(IDataStore* store, unsigned int list);

    /// The first entries of `list`, no more than `most`.
    static std::vector<unsigned int> entries(IDataStore* store, unsigned int list, std::size_t most);

    /// The offset of the first child of that name in `list`, as `find` on a set opened now would answer.
    static unsigned int search(IDataStore* store, unsigned int list, std::wstring_view name);

protected:
    Set() = default;

    unsigned int _children = BADOFF;

private:
    /// The offsets in the index.
    std::vector<unsigned int> indexed() const;

    /// The index, as one that changes for nobody else who has it; it may be the one that is kept with the store.
    NameIndex& writable();

    /// Whether a record is in the list that this set's own record names now, and belongs to this set.
    bool owns(const Record::Entity& child) const;

    /// Adds a child to the stored list, which is made when there is none.
    void append(unsigned int offset, std::string_view name);

    /// Sees to it that no index that is kept with the store has a child that is about to get this set for its owner.
    void takeFromOwner(const Record::Entity& child) const;

    std::shared_ptr<NameIndex> _index;  ///< null for no names
};

}  // namespace lumivard::platform::data::Metadata
