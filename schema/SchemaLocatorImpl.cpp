#include "schema/SchemaLocatorImpl.h"

#include <cstdint>
#include <cstring>
#include <cwchar>
#include <functional>
#include <string_view>

#include "lumivard/platform/core/memory/SharedPtr.h"
#include "schema/LayoutBuilder.h"
#include "schema/SchemaImpl.h"
#include "schema/Split.h"

namespace lumivard::platform::data {

namespace Schema {

SchemaLocatorImpl::~SchemaLocatorImpl() = default;

SharedPtr<metadata::ISchema> SchemaLocatorImpl::resolve(WideString uri) {
    if (!uri.value()) return {};
    std::vector<std::wstring> names;
    tokenize(uri.value(), names);
    auto schema = std::make_unique<SchemaImpl>();
    TableSearch search(stores());
    for (const std::wstring& name : names) {
        Layout* layout = known(name.c_str());
        if (!layout) layout = LayoutBuilder(*this, search).build(name);
        if (layout) schema->add(layout);
    }
    if (schema->layouts().empty()) return {};
    return core::memory::share<metadata::ISchema>(std::move(schema));
}

void SchemaLocatorImpl::push(IDataStore* store) {
    if (store) _stores.insert({store, true});
}

bool SchemaLocatorImpl::pop(IDataStore* store) {
    if (!store || _stores.count(store) == 0) return false;
    // The map must not change while it is walked, and nothing may change where memory runs out.
    std::vector<const wchar_t*> names;
    for (const auto& [name, layout] : _layouts) {
        if (layout->store() == store) names.push_back(name);
    }
    _stores.erase(store);
    for (const wchar_t* name : names) {
        decltype(_layouts)::accessor entry;
        if (!_layouts.find(entry, name)) continue;
        const std::unique_ptr<Layout> layout = std::move(entry->second);  // which has the text of the key
        _layouts.erase(entry);
    }
    return true;
}

void SchemaLocatorImpl::reset() {
    _stores.clear();
}

void SchemaLocatorImpl::tokenize(const wchar_t* text, std::vector<std::wstring>& out) {
    split(text, L';', out);
}

Layout* SchemaLocatorImpl::known(const wchar_t* name) const {
    decltype(_layouts)::const_accessor entry;
    return _layouts.find(entry, name) ? entry->second.get() : nullptr;
}

Layout* SchemaLocatorImpl::keep(std::unique_ptr<Layout> layout) {
    Layout* kept = layout.get();
    {
        decltype(_layouts)::accessor entry;
        try {
            if (!_layouts.insert(entry, kept->name())) return entry->second.get();
        } catch (...) {
            // The map grows when it has taken the entry in, whose key must not outlive the layout.
            if (!entry.empty()) _layouts.erase(entry);
            throw;
        }
        entry->second = std::move(layout);
    }
    try {
        kept->hold();
    } catch (...) {
        const std::lock_guard lock(_failedMutex);
        decltype(_layouts)::accessor entry;
        if (_layouts.find(entry, kept->name())) {
            _failed.push_back(std::move(entry->second));
            _layouts.erase(entry);
        }
        throw;
    }
    return kept;
}

std::vector<IDataStore*> SchemaLocatorImpl::stores() const {
    std::vector<IDataStore*> stores;
    for (const auto& [store, present] : _stores) stores.push_back(store);
    return stores;
}

std::size_t SchemaLocatorImpl::_tVoidKernel::hash(const void* store) const {
    // MurmurHash2 (Austin Appleby) with a 64-bit state over two 32-bit words.
    constexpr std::uint32_t kMix = 0x5bd1e995;
    std::uint32_t words[2];
    std::memcpy(words, store, sizeof(words));
    std::uint64_t hash = sizeof(words);
    for (std::uint32_t word : words) {
        word *= kMix;
        word ^= word >> 24;
        word *= kMix;
        hash = (hash * kMix) ^ word;
    }
    hash ^= hash >> 13;
    hash *= kMix;
    hash ^= hash >> 15;
    return hash;
}

std::size_t SchemaLocatorImpl::tNameKernel::hash(const wchar_t* name) const {
    return std::hash<std::wstring_view>{}(name);
}

bool SchemaLocatorImpl::tNameKernel::equal(const wchar_t* a, const wchar_t* b) const {
    return std::wcscmp(a, b) == 0;
}

}  // namespace Schema

SharedPtr<metadata::ISchemaLocator> metadata::ISchemaLocator::make(IDataStore* store) {
    auto locator = std::make_unique<Schema::SchemaLocatorImpl>();
    if (store) locator->push(store);
    return core::memory::share<metadata::ISchemaLocator>(std::move(locator));
}

}  // namespace lumivard::platform::data
