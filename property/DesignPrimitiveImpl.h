#pragma once

#include "design/Primitive.h"
#include "lumivard/platform/data/metadata/IPrimitive.h"
#include "property/PropertyImpl.h"

namespace lumivard::platform::data {

/// The public face of a primitive.
class DesignPrimitiveImpl final : public PropertyImpl, public metadata::IPrimitive {
public:
    explicit DesignPrimitiveImpl(std::unique_ptr<Design::Primitive> primitive) : PropertyImpl(std::move(primitive)) {}

    /// Opens a primitive's record and gives it its face. For callers that hold the guard.
    static SharedPtr<metadata::IPrimitive> open(IDataStore* store, unsigned int offset);

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

private:
    Design::Primitive* primitive() const { return static_cast<Design::Primitive*>(item()); }
};

}  // namespace lumivard::platform::data
