#pragma once

#include <optional>

#include "design/Primitive.h"
#include "lumivard/platform/data/metadata/IPrimitive.h"
#include "property/PropertyImpl.h"

namespace lumivard::platform::data {

/// The public face of a primitive.
class DesignPrimitiveImpl : public PropertyImpl, public metadata::IPrimitive {
public:
    /// Opens a primitive's record, or makes one: takes what `Design::Primitive` is made of. For callers that hold the
    /// guard.
    template <class... Arguments>
    explicit DesignPrimitiveImpl(IDataStore* store, Arguments... arguments)
        : _primitive(std::in_place, store, arguments...) {}
    ~DesignPrimitiveImpl() override;

    /// Makes a primitive, a child of a set in which its name is free, and gives it its face. A unit of 0 is none.
    static SharedPtr<metadata::IPrimitive> make(Metadata::Set& owner, const wchar_t* name, metadata::tValue type,
                                                units::tUnit units);

    metadata::IProperty* container() const override;
    unsigned int dimension() override;
    unsigned int stride() const override;
    unsigned int bytes() override;
    metadata::tValue valuetype() override;
    units::tUnit units() override;
    WideString schema() const override;
    WideString uri() const override;
    bool schema(WideString uri) override;
    bool uri(WideString uri) override;
    bool reset(unsigned int count) override;
    bool set(const void* data, unsigned int start, unsigned int count) override;
    bool get(void* data, unsigned int start, unsigned int count) override;
    WideString valuelocale() override;
    void valuelocale(WideString locale) override;

    Design::Primitive* item() const override { return &*_primitive; }

private:
    mutable std::optional<Design::Primitive> _primitive;  ///< until the end of this object
};

}  // namespace lumivard::platform::data
