#pragma once

#include <vector>

#include "lumivard/platform/core/memory/PooledHeap.h"
#include "lumivard/platform/data/metadata/ISchema.h"

namespace lumivard::platform::data::Metadata {
class Set;
}

namespace lumivard::platform::data::Schema {

class Layout;

/// One or more layouts under one handle; they belong to their locator. The only class behind `ISchema`: what takes one
/// from a client looks for this class, and takes nothing else.
class SchemaImpl final : public metadata::ISchema, public core::memory::PooledObject {
public:
    /// The schema behind a client's pointer; null for null and for an object that is not ours.
    static SchemaImpl* of(metadata::ISchema* schema) { return dynamic_cast<SchemaImpl*>(schema); }

    /// Whether a client hands in something that is no schema of ours; null is nothing.
    static bool isForeign(metadata::ISchema* schema) { return schema && !of(schema); }

    WideString path() const override;
    metadata::IStructLayout* layout() override;

    /// In the order in which their URIs were named. A client's schema has at least one.
    const std::vector<Layout*>& layouts() const { return _layouts; }
    void add(Layout* layout);

    /// Whether a list of URIs, joined by ";", has the name of every layout.
    bool prevalidate(const wchar_t* uris) const;

    /// Whether a set has all that the layouts' tables have, as `Comparator` compares. Never true where all of these are
    /// empty.
    bool validate(const Metadata::Set& set) const;

    /// Whether a set of which `base` is known, which may be null, conforms: because its base says so, or else by its
    /// items, which `quick` leaves out.
    bool validates(const Metadata::Set& set, const wchar_t* base, bool quick) const;

private:
    std::vector<Layout*> _layouts;
    bool _empty = true;
};

}  // namespace lumivard::platform::data::Schema
