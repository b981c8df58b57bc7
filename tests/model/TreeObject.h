#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lumivard/platform/data.h"

namespace lumivard::platform::model {

namespace metadata = data::metadata;
namespace units = data::units;
using data::structure::IContainer;

/// What a client can ask of an object over an item and do through it, in plain types: the operations of the public
/// interfaces under short names. Those that a kind of item does not have give nothing.
class TreeObject {
public:
    using tPtr = std::unique_ptr<TreeObject>;
    enum tKind { kPrimitive, kTable, kContainer };

    TreeObject() = default;
    virtual ~TreeObject() = default;
    TreeObject(const TreeObject&) = delete;
    TreeObject& operator=(const TreeObject&) = delete;

    // All items.
    virtual tKind kind() const = 0;
    virtual bool isGone() const { return false; }  ///< of a model: another process has destroyed what it looks at
    virtual std::wstring tag() = 0;
    virtual std::wstring path() = 0;
    virtual tPtr parent() = 0;
    virtual std::wstring base() = 0;  ///< the schemas of a container, a table or a struct
    virtual bool rename(const std::wstring& name) = 0;
    virtual unsigned int locales() = 0;
    virtual std::wstring locale(unsigned int index) = 0;
    virtual std::wstring localize(const std::wstring& locale) = 0;
    virtual void describe(const std::wstring& locale, const std::wstring& text) = 0;

    // Primitives and tables.
    virtual unsigned int flags() { return 0; }
    virtual void on(unsigned char) {}
    virtual void off(unsigned char) {}

    // Tables and containers. A schema is a number, that of none is -1.
    virtual bool destroy(const std::wstring&) { return false; }
    virtual tPtr find(const std::wstring&) { return nullptr; }
    virtual std::vector<tPtr> children() { return {}; }
    virtual tPtr makePrimitive(const std::wstring&, metadata::tValue, units::tUnit) { return nullptr; }
    virtual tPtr makeTable(const std::wstring&, int) { return nullptr; }

    // Containers.
    virtual int type() { return 0; }
    virtual bool has(const std::wstring&) { return false; }
    virtual bool empty() { return false; }
    virtual tPtr again() { return nullptr; }  ///< a new object over the same container
    virtual tPtr makeContainer(IContainer::tType, const std::wstring&, int) { return nullptr; }
    virtual bool conforms(int) { return false; }  ///< by what `base` says
    virtual bool copy(TreeObject&) { return false; }
    virtual bool clone(TreeObject&) { return false; }
    virtual bool clone(const std::wstring&, const std::wstring&, bool) { return false; }
    virtual bool cloneTo(unsigned int, const std::wstring&) { return false; }
    virtual bool isLink() { return false; }  ///< with the role of one
    virtual std::wstring target() { return {}; }
    virtual void target(const std::wstring&) {}
    virtual tPtr follow(unsigned int) { return nullptr; }

    // Tables.
    virtual unsigned int items() { return 0; }
    virtual tPtr at(unsigned int) { return nullptr; }
    virtual tPtr makeByGroup(const std::wstring&, units::tUnitGroup) { return nullptr; }
    virtual bool defaults(units::tUnit, metadata::tValue) { return false; }
    virtual unsigned int groups() { return 0; }
    virtual units::tUnitGroup group(unsigned int) { return units::kNoGroup; }
    virtual unsigned int defaultKind(units::tUnitGroup) { return 0; }
    virtual int defaultUnit(units::tUnitGroup) { return 0; }

    // Primitives. Elements are bytes.
    virtual unsigned int valuetype() { return 0; }
    virtual int unit() { return 0; }
    virtual unsigned int dimension() { return 0; }
    virtual unsigned int bytes() { return 0; }
    virtual std::wstring uri() { return {}; }
    virtual bool uri(const std::wstring&) { return false; }
    virtual bool schema(const std::wstring&) { return false; }
    virtual std::wstring valuelocale() { return {}; }
    virtual void valuelocale(const std::wstring&) {}
    virtual bool reset(unsigned int) { return false; }
    /// `data` has `start + count` elements, whichever of them are taken.
    virtual bool set(const std::string&, unsigned int, unsigned int) { return false; }
    virtual std::optional<std::string> get(unsigned int, unsigned int) { return std::nullopt; }
    virtual bool write(const std::vector<std::wstring>&) { return false; }
};

/// Two stores full of items, by their numbers, and the ways into them.
class Tree {
public:
    Tree() = default;
    virtual ~Tree() = default;
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    virtual TreeObject::tPtr toplevel(unsigned int store, const std::wstring& name) = 0;
    virtual TreeObject::tPtr find(unsigned int store, const std::wstring& path) = 0;

    /// Closes the stores and opens them again, where they outlive that. No object is left.
    virtual void reopen() = 0;
};

/// The schemas that both trees know, by their numbers: what stands in each, and which of them each number names.
inline constexpr const wchar_t* kSchemaNames[] = {L"S0", L"S1", L"S0;S1"};

}  // namespace lumivard::platform::model
