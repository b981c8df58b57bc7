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
/// A schema can reach itself: a has a member of b, and b one of a. A name that is met again while it is being built
/// means nothing there: within a, b has no member of a. But that b is cut, and right only there. It serves the member
/// that asked for it and is then dropped; the locator never sees it, and gives a whole one to who asks for b.
///
/// Schemas come from outside, and a few of them can ask for more than any memory or patience holds: by members of
/// members under long names, or by many schemas that all name each other. What a build may spend is limited
/// (`kAllowance`). When it is spent, all layouts that are still being built end where they are, and of these only the
/// one that was asked for is kept.
class LayoutBuilder {
public:
    LayoutBuilder(SchemaLocatorImpl& locator, TableSearch& search) : _locator(locator), _search(search) {}

    /// The layout of a name, which belongs to the locator; null when no store has a table of that name.
    Layout* build(const std::wstring& name);

private:
    /// What a build may spend, in bytes: those of fields and their names, and those of records that are read for a
    /// schema that was built before in the same build.
    static constexpr std::uint64_t kAllowance = 1u << 28;
    static constexpr std::uint64_t kItem = 1u << 9;  // to look at an item, on top of its bytes

    /// A table whose members are being taken.
    struct tLevel {
        std::vector<unsigned int> members;
        std::size_t next;
        std::size_t prefix;  // the length of the prefix around it
    };

    /// A member that is a struct, while its schemas are being found.
    struct tMember {
        std::wstring name;
        unsigned int size = 0;
        std::vector<std::wstring> uris;
        std::size_t next = 0;
        unsigned int found = 0;
        Layout* layout = nullptr;     // the last one found
        std::unique_ptr<Layout> cut;  // that one, when it is cut

        void take(Layout* known);
    };

    /// A layout that is being built; the next frame is for the member of this one.
    struct tFrame {
        std::unique_ptr<Layout> layout;
        std::wstring prefix;
        std::vector<tLevel> levels;
        std::unordered_set<unsigned int> entered;  // tables and lists
        std::optional<tMember> member;
        std::size_t cutBy;  // the place of the outermost frame that cut it; its own place when none further out did
        bool again;         // whether the name had a frame before
    };

    /// Begins to build the layout of a name; false when no store has the table.
    bool begin(const std::wstring& name);

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
    TableSearch& _search;
    std::vector<tFrame> _frames;
    std::unordered_map<std::wstring, std::size_t> _open;  // by name, the place of its frame
    std::unordered_set<std::wstring> _begun;              // names that had a frame
    std::unordered_set<std::wstring> _unknown;            // names that no store has
    std::uint64_t _spent = 0;
    bool _over = false;
};

}  // namespace lumivard::platform::data::Schema
