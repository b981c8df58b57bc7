#pragma once

#include "lumivard/platform/data/metadata/IProperty.h"
#include "metadata/Item.h"

namespace lumivard::platform::data {

/// The public face of one item that is a property. It takes the store's guard around each call; what the calls mean is
/// the item's affair. The item itself lies in the class of its kind.
class PropertyImpl : public metadata::IProperty {
public:
    WideString tag() const override;
    WideString path() const override;
    IDataStore* store() const override;
    unsigned int type() const override;
    bool rename(WideString name) override;
    SharedPtr<metadata::ITable> parent() override;
    unsigned int locales() override;
    WideString locale(unsigned int index) override;
    void describe(WideString locale, WideString description) override;
    WideString localize(WideString locale) override;
    unsigned char flags() const override;
    void on(unsigned char bits) override;
    void off(unsigned char bits) override;

    virtual Metadata::Item* item() const = 0;
};

}  // namespace lumivard::platform::data
