#include "tools/schemas/Schemas.h"

#include <algorithm>

#include "lumivard/platform/stores.h"
#include "tools/base/ExitStatus.h"
#include "tools/base/Files.h"
#include "tools/base/Nearest.h"
#include "tools/documents/DocumentReader.h"
#include "tools/documents/Faults.h"
#include "tools/items/Items.h"

namespace lvp::tool {

using lumivard::platform::data::format::xml::IXMLFrontEnd;

namespace {

constexpr std::size_t kMostNames = 10'000;  // in which those that are near are looked for
constexpr std::size_t kLongestName = 1'000;
constexpr std::size_t kShown = 5;

/// Gathers the paths of the tables in a store that may be schemas: at its top, and in its containers.
class SchemaNames : public IVisitor {
public:
    explicit SchemaNames(std::vector<std::string>& names) : _names(names) {}

    bool table(const tTable& item) override {
        const std::string path = _path + utf8(item.name);
        if (_names.size() < kMostNames && path.size() <= kLongestName) _names.push_back(path);
        return false;
    }
    bool container(const tContainer& item) override {
        if (_names.size() == kMostNames || _path.size() > kLongestName) return false;
        _lengths.push_back(_path.size());
        _path += utf8(item.name) + ".";
        return true;
    }
    void leave() override {
        _path.resize(_lengths.back());
        _lengths.pop_back();
    }

private:
    std::vector<std::string>& _names;
    std::string _path;
    std::vector<std::size_t> _lengths;  ///< of the path at each container that is entered
};

}  // namespace

Schemas::Schemas(const std::vector<std::string>& sources) : _sources(sources) {
    for (const std::string& source : sources) {
        if (isDocument(source)) {
            readDocument(source);
        } else {
            search(storeToRead(source));
        }
    }
}

Schemas::IDataStore& Schemas::storeToRead(const std::string& store) {
    for (const tStore& open : _stores) {
        if (!open.name.empty() && isSameStore(open.name, store)) return *open.store;
    }
    _stores.push_back({store, openToRead(store)});
    requireSetUp(*_stores.back().store, store);
    return *_stores.back().store;
}

void Schemas::readDocument(const std::string& document) {
    requireReadable(document);
    _stores.push_back({"", HeldStore(lumivard::platform::stores::memory())});
    IDataStore* store = &*_stores.back().store;
    // A locator of its own: what one finds in a document that is half read, it keeps.
    const auto above = ISchemaLocator::make(nullptr);
    for (const tStore& open : _stores) above->push(&*open.store);
    DocumentReader reader(document);
    Faults faults([&](const Faults::tFault& fault) { printFault(document, fault); });
    IXMLFrontEnd::parse(store, &reader, above.get(), nullptr, &faults);
    if (faults.brokeOff()) throw Failure(kCannotOpen, "the schemas in " + document + " cannot be used");
    if (faults.count() != 0) _faulty = true;
    search(*store);
}

void Schemas::search(IDataStore& store) {
    _locator->push(&store);
    _searched.push_back(&store);
}

std::vector<tNamedSchema> Schemas::resolve(const std::string& uris) const {
    std::vector<tNamedSchema> found;
    for (std::size_t begin = 0; begin <= uris.size();) {
        const std::size_t end = std::min(uris.find(';', begin), uris.size());
        tNamedSchema named{uris.substr(begin, end - begin), {}};
        begin = end + 1;
        named.schema = _locator->resolve(wide(named.uri));
        if (!named.schema) refuse(named.uri);
        found.push_back(std::move(named));
    }
    return found;
}

void Schemas::refuse(const std::string& uri) const {
    std::vector<std::string> names;
    SchemaNames all(names);
    for (IDataStore* const store : _searched) visit(*store, "", all);
    const std::vector<std::string> near = nearest(uri, names, kShown);
    if (names.size() > kShown) names.resize(kShown);
    std::string sentence = "no schema \"" + uri + "\" in " + listed(_sources);
    if (names.empty()) {
        sentence += ": a schema is a table, and there is none";
    } else {
        sentence += near.empty() ? "; there are such as " + listed(names) : "; near to it: " + listed(near);
    }
    throw Failure(kCannotOpen, sentence);
}

}  // namespace lvp::tool
