#include "tests/fault/calls/Operation.h"

namespace lumivard::platform::test_support::fault {

namespace {

using data::metadata::IStructLayout;

IStructLayout& layout(World& w) {
    return *w.schema->layout();
}

std::wstring nameOf(const IStructLayout::tField* field) {
    return field ? field->name : L"none";
}

/// The schema goes with its locator.
void dropTheSchema(World& w) {
    w.schema.reset();
}

}  // namespace

std::vector<tOperation> schemaOperations() {
    return {
        {"ISchema::path() const", "SchemaPath", nullptr, [](World& w) { return text(w.schema->path()); }},
        {"ISchema::layout()", "SchemaLayout", nullptr, [](World& w) { return said(w.schema->layout() != nullptr); }},
        {"IStructLayout::fields() const", "LayoutFields", nullptr, [](World& w) { return said(layout(w).fields()); }},
        {"IStructLayout::stride() const", "LayoutStride", nullptr, [](World& w) { return said(layout(w).stride()); }},
        {"IStructLayout::values() const", "LayoutValues", nullptr, [](World& w) { return said(layout(w).values()); }},
        {"IStructLayout::get(WideString name)", "LayoutGet", nullptr,
         [](World& w) { return nameOf(layout(w).get(L"y")); }},
        {"IStructLayout::get(unsigned int index)", "LayoutGetAt", nullptr,
         [](World& w) { return nameOf(layout(w).get(1u)); }},

        {"ISchemaLocator::resolve(WideString uri)", "Resolve", nullptr,
         [](World& w) { return said(w.fresh->resolve(L"schemas.Pose;schemas.Door")); }},
        {"ISchemaLocator::resolve(WideString uri)", "ResolveAgain", nullptr,
         [](World& w) { return said(w.locator->resolve(kPose)); }},
        {"ISchemaLocator::push(IDataStore* store)", "Push", nullptr,
         [](World& w) {
             w.fresh->push(w.main());
             return std::wstring();
         }},
        {"ISchemaLocator::pop(IDataStore* store)", "Pop", L"",
         [](World& w) { return said(w.locator->pop(w.stores[kSchemas])); }, &dropTheSchema},
        {"ISchemaLocator::reset()", "ResetOfALocator", L"",
         [](World& w) {
             w.locator->reset();
             return std::wstring();
         }},
        {"ISchemaLocator::make(IDataStore* store)", "Make", nullptr,
         [](World& w) { return said(ISchemaLocator::make(w.main())); }},
    };
}

}  // namespace lumivard::platform::test_support::fault
