#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "schema/Layout.h"

namespace lumivard::platform::data::Record {
class Primitive;
class Table;
}  // namespace lumivard::platform::data::Record

namespace lumivard::platform::data::Schema {

class SchemaLocatorImpl;

/// Builds one layout, and those that its struct members need and that the locator does not know yet. It keeps a stack
/// of its own, so that its need of the thread's stack does not grow with the depth of schemas.
///
/// A schema can reach itself through a struct member. A name that is met again while it is being built means nothing
/// there. What was cut that way is right only below the name that cut it: it serves the member that asked for it and is
/// then dropped, and the locator never sees it.
///
/// Schemas come from outside, and a few of them can ask for more fields than any memory holds: by members of members
/// under long names, or by schemas that all name each other. What a build may spend is limited (`kAllowance`); when it
/// is spent, all layouts that are being built end where they are, and only the one that was asked for is kept.
class LayoutBuilder {
public:
    explicit LayoutBuilder(SchemaLocatorImpl& locator) : _locator(locator) {}

    /// The layout of a name, which belongs to the locator; null when no store has a table of that name.
    Layout* build(const std::wstring& name);

private:
    /// What a build may spend, in bytes: 1 GiB of fields and their names. Work that leaves nothing behind is charged as
    /// if it did.
    static constexpr std::uint64_t kAllowance = 1u << 30;
    static constexpr std::uint64_t kItemAgain = 1u << 10;  // to look at an item of a schema that was built before

    /// A table whose members are being taken.
    struct tLevel {
        std::vector<unsigned int> members;
        std::size_t next;
        std::size_t prefix;  // the length of the prefix around it
    };

    /// A member that is a struct, while its schemas are being found.
    struct tMember {
        std::wstring name;
        unsigned int size;
        std::vector<std::wstring> uris;
        std::size_t next = 0;
        unsigned int found = 0;
        Layout* layout = nullptr;     // the last one found
        std::unique_ptr<Layout> cut;  // that one, when the locator does not have it

        void take(Layout* known);
    };

    /// A layout that is being built; the next frame is for the member of this one.
    struct tFrame {
        std::unique_ptr<Layout> layout;
        std::wstring prefix;
        std::vector<tLevel> levels;
        std::unordered_set<unsigned int> tables;  // those that were entered
        std::optional<tMember> member;
        std::size_t cutBy;  // the outermost frame whose name was met here; its own place when there is none further out
    };

    /// Begins to build the layout of a name; false when no store has the table.
    bool begin(const std::wstring& name);
    std::unique_ptr<Design::Table> find(const std::wstring& name);

    /// Ends the innermost frame: gives its layout to the locator or, where it was cut, to the member that wants it.
    Layout* end();

    /// Puts a table's members next, with `label` around their names.
    void enter(tFrame& frame, const Record::Table& table, const std::wstring& label);
    void takeNext(tFrame& frame);
    void takePrimitive(tFrame& frame, const Record::Primitive& primitive);
    void findNext(tFrame& frame);
    void expand(tFrame& frame, const tMember& member);
    void add(Layout& layout, std::wstring name, const metadata::IStructLayout::tField& field);
    void spend(std::uint64_t bytes);

    SchemaLocatorImpl& _locator;
    std::vector<tFrame> _frames;
    std::unordered_map<std::wstring, std::size_t> _open;  // by name, the place of its frame
    std::unordered_set<std::wstring> _begun;              // names that had a frame
    std::uint64_t _spent = 0;
    bool _over = false;
};

}  // namespace lumivard::platform::data::Schema
