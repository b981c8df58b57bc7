#pragma once

#include <set>
#include <string>

#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "tools/items/Items.h"

namespace lvp::tool {

/// Hands each question to another locator, and notes the schemas that it does not find.
class NotedLocator : public lumivard::platform::data::metadata::ISchemaLocator {
public:
    using ISchema = lumivard::platform::data::metadata::ISchema;

    explicit NotedLocator(ISchemaLocator& under) : _under(under) {}

    SharedPtr<ISchema> resolve(WideString uris) override {
        const std::string all = uris.string();
        if (_asked.insert(all).second) note(all);
        return _under.resolve(uris);
    }
    void push(IDataStore* store) override { _under.push(store); }
    bool pop(IDataStore* store) override { return _under.pop(store); }
    void reset() override { _under.reset(); }

    /// The URIs of schemas that were asked for and that there are not.
    const std::set<std::string>& missing() const { return _missing; }

private:
    /// Of several, joined by ";", some may be found.
    void note(const std::string& uris) {
        for (std::size_t begin = 0; begin < uris.size();) {
            const std::size_t end = std::min(uris.find(';', begin), uris.size());
            const std::string uri = uris.substr(begin, end - begin);
            if (!uri.empty() && !_under.resolve(wide(uri))) _missing.insert(uri);
            begin = end + 1;
        }
    }

    ISchemaLocator& _under;
    std::set<std::string> _asked;
    std::set<std::string> _missing;
};

}  // namespace lvp::tool
