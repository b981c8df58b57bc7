#pragma once

#include "lumivard/platform/data/metadata/IPropertyFilter.h"
#include "property/DesignTableImpl.h"

namespace lumivard::platform::data {

/// A cursor over the properties of a table. It stands over the table's record with an object of its own, whose list it
/// reads anew at each step; how many items it looks at is settled when it is made.
class DesignTableImpl::DesignFilter : public metadata::IPropertyFilter {
public:
    /// Stands on the first property, if there is one.
    explicit DesignFilter(DesignTableImpl* table);
    ~DesignFilter() override;

    bool next() override;
    bool prev() override;
    SharedPtr<metadata::IProperty> current() override;

private:
    /// The position of the first property from `index` on, behind the last item when there is none, or of the last one
    /// up to `index`, `BADOFF` when there is none.
    unsigned int forward(unsigned int index) const;
    unsigned int backward(unsigned int index) const;
    bool isProperty(unsigned int index) const;

    std::unique_ptr<Design::Table> _table;
    unsigned int _index = 0;
    unsigned int _count = 0;
};

}  // namespace lumivard::platform::data
