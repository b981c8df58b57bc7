#include "tests/fault/calls/Operation.h"

// Destructors let nothing out. Those of containers and properties save texts.

namespace lumivard::platform::test_support::fault {

namespace {

/// Drops one of a world's objects.
template <auto kObject>
std::wstring drop(World& w) {
    (w.*kObject).reset();
    return {};
}

template <auto kObject>
void describe(World& w) {
    (w.*kObject)->describe(L"fr", L"Texte");
    (w.*kObject)->describe(L"en", L"Other text");
}

/// An object that saves texts at its end.
template <auto kObject>
tOperation saving(const char* member, const char* name, const wchar_t* path) {
    return {member, name, path, &drop<kObject>, &describe<kObject>, nullptr, tOperation::kSilent};
}

/// One that only stops being counted, or does not even that.
template <auto kObject>
tOperation plain(const char* member, const char* name) {
    return {member, name, L"", &drop<kObject>, nullptr, nullptr, tOperation::kSilent};
}

void dropSchema(World& w) {
    w.schema.reset();
}

}  // namespace

std::vector<tOperation> endOfLifeOperations() {
    std::vector<tOperation> all = {
        saving<&World::first>("IContainer::~IContainer()", "EndOfAContainer", L"main:top.group.first"),
        saving<&World::group>("IGroup::~IGroup()", "EndOfAGroup", L"main:top.group="),
        saving<&World::node>("INode::~INode()", "EndOfANode", L"main:top.node="),
        saving<&World::link>("ILink::~ILink()", "EndOfALink", L"main:top.link"),
        saving<&World::number>("IPrimitive::~IPrimitive()", "EndOfAPrimitive", L"main:top.group.number"),
        saving<&World::table>("ITable::~ITable()", "EndOfATable", L"main:top.group.table="),
        saving<&World::made>("IProperty::~IProperty()", "EndOfAProperty", L"main:top.group.made="),
        plain<&World::containers>("IContainerFilter::~IContainerFilter()", "EndOfAContainerFilter"),
        plain<&World::items>("IPropertyFilter::~IPropertyFilter()", "EndOfAPropertyFilter"),
        plain<&World::schema>("ISchema::~ISchema()", "EndOfASchema"),
        plain<&World::locator>("ISchemaLocator::~ISchemaLocator()", "EndOfALocator"),
        plain<&World::locator>("IStructLayout::~IStructLayout()", "EndOfALayout"),
        plain<&World::strings>("IStringArray::~IStringArray()", "EndOfAStringArray"),
    };
    for (tOperation& each : all) {
        if (each.run == &drop<&World::locator>) each.prepare = &dropSchema;
    }
    return all;
}

}  // namespace lumivard::platform::test_support::fault
