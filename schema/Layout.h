#pragma once

#include <deque>
#include <memory>
#include <string>

#include "design/Table.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "metadata/TextMap.h"

namespace lumivard::platform::data::Schema {

/// A schema as one flat list of fields, each behind the one before, without padding. It keeps the schema's table open,
/// which is what holds `destroy` off it, and is told its fields by `LayoutBuilder`.
///
/// Threads: one while it is built, any number afterwards.
class Layout final : public metadata::IStructLayout {
public:
    /// Takes over the table, which is populated.
    Layout(std::wstring name, std::unique_ptr<Design::Table> table) : _name(std::move(name)), _set(std::move(table)) {}

    unsigned int fields() const override { return static_cast<unsigned int>(_fields.size()); }
    unsigned int stride() const override { return _stride; }
    unsigned int values() const override { return _values; }
    const tField* get(WideString name) override;
    const tField* get(unsigned int index) override { return index < _fields.size() ? &_fields[index] : nullptr; }

    /// The URI under which the schema was found. The text stays where it is as long as the layout lives.
    const wchar_t* name() const { return _name.c_str(); }

    Metadata::Set& set() const { return *_set; }

    /// Adds a field behind the others; the first of several of one name is the one that is found by it. False, with
    /// nothing added, when a sum would not fit in 32 bits any more.
    bool add(std::wstring name, metadata::tValue type, unsigned int dim, unsigned int size);

private:
    struct Field : tField {
        std::wstring text;
    };

    std::wstring _name;
    std::unique_ptr<Metadata::Set> _set;
    Metadata::TextMap<const Field*> _byName;
    std::deque<Field> _fields;  // which never moves one
    unsigned int _stride = 0;
    unsigned int _values = 0;
};

}  // namespace lumivard::platform::data::Schema
