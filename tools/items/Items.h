#pragma once

#include <string>
#include <string_view>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/string/WideString.h"
#include "lumivard/platform/data/metadata/IProperty.h"
#include "lumivard/platform/data/structure/IContainer.h"
#include "lumivard/platform/data/structure/IVisitor.h"

// Items by dotted paths from the top of a store.
namespace lvp::tool {

using lumivard::platform::core::storage::datastore::IDataStore;
using lumivard::platform::core::string::WideString;
using lumivard::platform::data::SharedPtr;
using lumivard::platform::data::metadata::IProperty;
using lumivard::platform::data::structure::IContainer;
using lumivard::platform::data::structure::IVisitor;

/// A text in UTF-8, and back. What is none is a failure of `kWrongUsage`, since it would become another text.
WideString wide(const std::string& text);
std::string utf8(std::wstring_view text);

/// A path, cut before its last name; the owner of an item at the top is empty.
struct tItemPath {
    explicit tItemPath(const std::string& path);

    std::string whole;
    std::string owner;
    std::string name;
};

/// Shows a visitor what is at a path, or the whole store at an empty one; false when there is nothing.
bool visit(IDataStore& store, const std::string& path, IVisitor& visitor);

/// What is at a path: everything counts, tables and values at the top too.
enum class tItem : unsigned char { kNothing, kPrimitive, kTable, kContainer };
tItem itemAt(IDataStore& store, const std::string& path);

/// Throws a failure of `kCannotOpen`: there is nothing at the path. It tells where the path ends, and names that are
/// near to the one that is missing there.
[[noreturn]] void refusePath(IDataStore& store, const std::string& storeName, const std::string& path);

/// The container at a path; null when there is none.
SharedPtr<IContainer> containerAt(IDataStore& store, const std::string& path);

/// The property at a path; null when there is none that stands in a container, itself or in tables: those at the top of
/// a store cannot be opened.
SharedPtr<IProperty> propertyAt(IDataStore& store, const std::string& path);

/// Destroys an item in its owner, a container or a table; false when it is in use, or its owner cannot be opened.
bool destroyItem(IDataStore& store, const tItemPath& path);

/// Adds a copy of a property to a container, under a name, as a property like any other: without the marks of what came
/// from a schema. False when it cannot be made.
bool copyProperty(const SharedPtr<IProperty>& property, IContainer& owner, const std::string& name);

}  // namespace lvp::tool
