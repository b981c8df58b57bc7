#pragma once

#include <deque>
#include <string>
#include <vector>

#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "metadata/TextMap.h"
#include "schema/TableSearch.h"

namespace lumivard::platform::data::Schema {

/// A schema as one flat list of fields, each behind the one before, without padding. It is told its fields by
/// `LayoutBuilder`, reads its table's items when it is asked for them, and can hold the table against `destroy`.
///
/// Threads: one while it is built, any number afterwards.
class Layout final : public metadata::IStructLayout {
public:
    /// A layout without fields, over a table.
    Layout(std::wstring name, tTable table);
    ~Layout() override;
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

    unsigned int fields() const override { return static_cast<unsigned int>(_fields.size()); }
    unsigned int stride() const override { return _stride; }
    unsigned int values() const override { return _values; }
    const tField* get(WideString name) override;
    const tField* get(unsigned int index) override { return index < _fields.size() ? &_fields[index] : nullptr; }

    /// Adds a field behind the others; the first of several of one name is the one that is found by it. False, with
    /// nothing added, when a sum would not fit in 32 bits any more.
    bool add(std::wstring name, metadata::tValue type, unsigned int dim, unsigned int size);

    /// The URI under which the schema was found. The text stays where it is as long as the layout lives.
    const wchar_t* name() const { return _name.c_str(); }

    /// The schema's table.
    IDataStore* store() const { return _table.store; }
    unsigned int offset() const { return _table.offset; }

    /// The number of items that the table had when the layout was made; and as many from the start of its list now.
    unsigned int items() const { return _items; }
    std::vector<unsigned int> entries() const;

    /// Counts one object over the table's record as long as the layout lives. To be called once, by one thread.
    void hold();

private:
    struct Field : tField {
        std::wstring text;
    };

    std::wstring _name;
    tTable _table;
    unsigned int _items;
    bool _held = false;
    Metadata::TextMap<const Field*> _byName;
    std::deque<Field> _fields;  // which never moves one
    unsigned int _stride = 0;
    unsigned int _values = 0;
};

}  // namespace lumivard::platform::data::Schema
