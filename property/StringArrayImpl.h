#pragma once

#include <vector>

#include "lumivard/platform/data/metadata/IStringArray.h"

namespace lumivard::platform::data {

/// A list of texts.
class StringArrayImpl final : public metadata::IStringArray {
public:
    /// Takes a packed list apart: `length` characters, of which those behind the last zero are dropped.
    StringArrayImpl(const wchar_t* packed, unsigned int length);

    unsigned int strings() const override { return static_cast<unsigned int>(_strings.size()); }
    WideString get(unsigned int index) const override;
    void add(WideString text) override;
    bool write(metadata::IPrimitive* primitive) override;

private:
    std::vector<WideString> _strings;
};

}  // namespace lumivard::platform::data
