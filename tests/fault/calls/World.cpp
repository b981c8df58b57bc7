#include "tests/fault/calls/World.h"

#include "tests/fault/calls/Picture.h"

namespace lumivard::platform::test_support::fault {

World::World(const tStores& all) : stores(all) {
    top = IContainerFrontEnd::find(main(), L"top")->container(kNoName);
    group = top->container(L"group");
    first = group->container(L"first");
    node = top->container(L"node");
    link = top->container(L"link");
    goal = IContainerFrontEnd::find(main(), L"goal")->container(kNoName);
    inner = goal->container(L"inner");
    last = IContainerFrontEnd::find(main(), L"last")->container(kNoName);
    there = IContainerFrontEnd::find(stores[kOther], L"there")->container(kNoName);
    number = group->property(L"number");
    words = group->property(L"text");
    pose = group->property(L"pose");
    away = group->property(L"away");
    table = group->property(L"table");
    made = group->property(L"made");
    containers = group->containers();
    properties = group->properties();
    items = asTable(table).properties();
    locator = ISchemaLocator::make(stores[kSchemas]);
    schema = locator->resolve(kPose);
    fresh = ISchemaLocator::make(stores[kSchemas]);
    strings.reset(IStringArray::to(L"one\0two", 8));
}

std::vector<tNamed> World::answers() {
    std::vector<tNamed> all;
    for (auto* each : {&top, &group, &first, &node, &link, &goal, &inner, &last, &there}) {
        if (!*each) continue;
        const std::wstring known = (*each)->empty() ? L" knows none" : L" knows some";
        all.emplace_back(path((*each)->store(), stores, text((*each)->path())), describe(**each) + known);
    }
    for (auto* each : {&number, &words, &pose, &away, &table, &made}) {
        if (*each) all.emplace_back(path((*each)->store(), stores, text((*each)->path())), describe(**each));
    }
    if (containers) all.emplace_back(L"cursor:containers", current(*containers));
    if (properties) all.emplace_back(L"cursor:properties", current(*properties));
    if (items) all.emplace_back(L"cursor:items", current(*items));
    if (schema) all.emplace_back(L"schemas:schemas.Pose", text(schema->path()) + numeral(schema->layout()->fields()));
    if (locator) all.emplace_back(L"schemas:", locator->resolve(kDoor) ? L"found" : L"not found");
    return all;
}

void World::close() {
    strings.reset();
    schema.reset();
    for (auto* each : {&fresh, &locator}) each->reset();
    for (auto* each : {&items, &properties}) each->reset();
    containers.reset();
    for (auto* each : {&made, &table, &away, &pose, &words, &number}) each->reset();
    for (auto* each : {&there, &last, &inner, &goal, &link, &node, &first, &group, &top}) each->reset();
}

}  // namespace lumivard::platform::test_support::fault
