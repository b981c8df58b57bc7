#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/metadata/tValue.h"

namespace lumivard::platform::data::metadata {

/// How a struct value is packed: the members of a schema as one flat list of fields, without gaps and without
/// alignment. A value of the kind `kStruct` is a sequence of such blocks. It describes and reads nothing itself.
///
/// The members of a nested table appear as "table.member". A member that is a struct itself appears as its fields, as
/// "pose.x", or for two and more structs in it as "pose[0].x", "pose[1].x" and so on; bytes behind the last whole
/// struct are left out. A member whose schema is not found, is more than one, or is one that it stands in itself, has
/// no fields. A member without elements, or with a URI in their place, is a field of size 0.
///
/// It belongs to the locator that made it and lives until that goes or lets go of the schema's store
/// (`ISchemaLocator::pop`). Only the library implements it. Threads: it never changes, so any number may read it.
class LVP_EXPORT IStructLayout {
public:
    /// One field.
    struct tField {
        const wchar_t* name;  ///< the full name; belongs to the layout
        tValue type;          ///< of the elements
        unsigned int dim;     ///< the number of elements
        unsigned int offset;  ///< bytes from the start of the block
        unsigned int size;    ///< bytes of all elements together
    };

    virtual ~IStructLayout() = default;

    /// The number of fields.
    virtual unsigned int fields() const = 0;

    /// The size of a block in bytes: the sum of all `size`.
    virtual unsigned int stride() const = 0;

    /// The number of elements in a block: the sum of all `dim`.
    virtual unsigned int values() const = 0;

    /// The field of exactly this full name, the first if there are several; null when there is none.
    virtual const tField* get(WideString name) = 0;

    /// The field at `index`, from 0, in the order of the block; null when nothing is there.
    virtual const tField* get(unsigned int index) = 0;
};

}  // namespace lumivard::platform::data::metadata
