#pragma once

#include "lumivard/platform/data/easy.h"
#include "tests/support/ClientFixture.h"

namespace lumivard::platform::test_support {

namespace easy = data::easy;

/// A client who works with `easy`, on each kind of store: with an object over "top" that is open all the time.
class EasyTest : public ClientTest {
protected:
    IContainer& model() { return *_model; }

    /// The primitive at a path from "top" as another client sees it; null where there is none.
    SharedPtr<IProperty> there(const wchar_t* path) { return property(path); }

    /// All that is stored under a path from "top"; nothing for none.
    template <class Element>
    std::vector<Element> stored(const wchar_t* path) {
        const auto found = there(path);
        return found ? values<Element>(asPrimitive(found)) : std::vector<Element>();
    }

    metadata::tValue kindAt(const wchar_t* path) { return asPrimitive(there(path)).valuetype(); }

    /// Makes a primitive directly in "top" with the values given.
    template <class Element>
    void put(const wchar_t* name, metadata::tValue kind, const std::vector<Element>& elements) {
        const auto made = top()->create(name, kind);
        if (!elements.empty()) made->set(elements.data(), 0, static_cast<unsigned int>(elements.size()));
    }

private:
    SharedPtr<IContainer> _model = top();
};

}  // namespace lumivard::platform::test_support
