#pragma once

#include <memory>

#include "lumivard/platform/core/memory/PooledHeap.h"
#include "lumivard/platform/data/metadata/IProperty.h"
#include "metadata/Item.h"

namespace lumivard::platform::data {

/// The public face of one item that is a property. It owns the item and takes the store's guard around each call; what
/// the calls mean is the item's affair.
class PropertyImpl : public metadata::IProperty, public core::memory::PooledObject {
public:
    /// Takes over the item, which is not null.
    explicit PropertyImpl(std::unique_ptr<Metadata::Item> item) : _item(std::move(item)) {}
    ~PropertyImpl() override;

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

    Metadata::Item* item() const { return _item.get(); }

private:
    std::unique_ptr<Metadata::Item> _item;
};

}  // namespace lumivard::platform::data
