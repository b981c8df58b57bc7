#pragma once

#include "metadata/Set.h"
#include "xml/SiblingNames.h"

namespace lumivard::platform::data {

/// The children of a set that a document fills, most of which come under names of their own.
///
/// Under a set that the document has just made they are put straight into the stored list, and of their names only the
/// hashes are kept; the set's own index knows nothing of them before `settle`. A name that may be taken already, or
/// anything else that needs the index, settles the set, and from there on it is used as any other.
///
/// One thread. Exceptions of the store pass through. The set is not owned.
class OpenChildren {
public:
    /// `isNew` tells that the set has no children and that no other object is open on it. A null set takes none.
    OpenChildren(Metadata::Set* set, bool isNew) : _set(set), _direct(isNew) {}

    /// The set, or null where there is none.
    const Metadata::Set* set() const { return _set; }

    /// Sees to it that a child of that name can be added; false where there is one.
    bool claim(const wchar_t* name);

    /// Adds a record that tells this set as its parent, under the name that was claimed last.
    void add(unsigned int offset);

    /// Adds a record that has no parent so far.
    void adopt(unsigned int offset);

    /// Lets the index of the set catch up, and gives it.
    Metadata::Set& settle();

private:
    void append(unsigned int offset);

    /// The stored list, which another object may have made; `BADOFF` when there is none.
    unsigned int presentList() const;

    Metadata::Set* _set;
    bool _direct;
    SiblingNames _names;
    unsigned int _list = Metadata::Set::BADOFF;
};

}  // namespace lumivard::platform::data
