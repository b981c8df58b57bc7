#include "tests/fault/calls/Demo.h"

#include <new>
#include <stdexcept>
#include <vector>

#include "lumivard/platform/data/check/Check.h"
#include "tests/fault/calls/Picture.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support::fault {

using core::io::MemoryReader;
using core::io::MemoryWriter;
using data::format::xml::IXMLFrontEnd;

/// Keeps that it was told that the reading broke off.
class Demo::Reporter final : public IXMLFrontEnd::IErrorReporter {
public:
    void report(const WideString&) override {}
    void malformed(const WideString&) override { brokeOff = true; }

    bool brokeOff = false;
};

void Demo::run(const std::filesystem::path& file) {
    _schemas = stores::memory();
    _store = file.empty() ? stores::memory() : stores::file(file, stores::tMode::kWrite);
    const auto locator = ISchemaLocator::make(_schemas.get());
    read(*_schemas, _schemaText, locator.get());
    read(*_store, _materialText, locator.get());
    walk();
    change(*locator);
    MemoryWriter writer;
    IXMLFrontEnd::serialize(_store.get(), &writer, locator.get(), 0);
    _flushing = true;
    _store->flush();
    _flushing = false;
}

void Demo::read(IDataStore& store, const std::string& text, ISchemaLocator* locator) {
    MemoryReader reader(text);
    Reporter reporter;
    _flushing = true;
    IXMLFrontEnd::parse(&store, &reader, locator, nullptr, &reporter);
    _flushing = false;
    if (reporter.brokeOff) throw std::bad_alloc();
}

/// Over the first group: the names of its materials and their properties.
void Demo::walk() {
    const auto group = IContainerFrontEnd::toplevel(_store.get(), kNoName);
    const auto materials = group->containers();
    do {
        const auto material = materials->current();
        if (!material) continue;
        names(*material->properties());
        material->localize(L"en-us");
        material->path();
    } while (materials->next());
}

void Demo::change(ISchemaLocator& locator) {
    const auto schema = locator.resolve(L"Mechanical;Thermal");
    const auto own = IContainerFrontEnd::toplevel(_store.get(), L"Own");
    const auto group = IContainerFrontEnd::toplevel(_store.get(), kNoName);
    const auto steel = own->create(IContainer::kNode, L"Steel", schema.get());
    steel->describe(L"de-de", L"Stahl");
    const double density[] = {7850};
    asPrimitive(steel->property(L"Density")).set(density, 0, 1);
    steel->validates(schema.get(), false);
    group->validates(schema.get(), false);
    own->copy(group);
    own->clone(steel->property(L"Density"));
    own->clone(_schemas.get(), L"schemas.Steel");
    const auto first = own->containers()->current();
    first->rename(L"Renamed");
    own->destroy(L"Steel");
}

std::string Demo::document() const {
    return _store ? documentOf(_store.get()) : std::string();
}

std::string Demo::documentIn(const std::filesystem::path& file) {
    const auto store = stores::file(file, stores::tMode::kRead);
    return documentOf(store.get());
}

std::string Demo::damage() const {
    if (!_store || _store->extent() == 0) return {};
    const auto report = data::check::examine(*_store);
    for (const auto& finding : report.findings) {
        if (finding.severity >= data::check::tSeverity::kDamage) return finding.code + (": " + finding.found);
    }
    return {};
}

void Demo::enlistNothing() {
    constexpr unsigned int kRoot = 0;
    constexpr unsigned int kNothing = stored::BADOFF - 1;
    if (_store && _store->extent() != 0) stored::enlist(_store.get(), kRoot, kNothing);
}

}  // namespace lumivard::platform::test_support::fault
