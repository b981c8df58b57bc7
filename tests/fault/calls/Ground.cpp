#include "tests/fault/calls/Ground.h"

#include "tests/support/OddStore.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support::fault {

namespace fs = std::filesystem;
using data::metadata::ISchemaLocator;

namespace {

template <class Element, std::size_t kCount>
void setAll(IPrimitive& primitive, const Element (&values)[kCount]) {
    primitive.set(values, 0, kCount);
}

void addNumber(ITable& table, const wchar_t* name, int value) {
    table.create(name, metadata::kInt32, units::kNoUnit)->set(&value, 0, 1);
}

void addNumber(IContainer& container, const wchar_t* name, int value) {
    container.create(name, metadata::kInt32)->set(&value, 0, 1);
}

void fillSchemas(IDataStore* store) {
    const auto schemas = IContainerFrontEnd::toplevel(store, L"schemas");
    const auto pose = schemas->create(L"Pose", kNoSchema);
    const double x[] = {0.5};
    setAll(*pose->create(L"x", metadata::kDouble, units::kMeter), x);
    setAll(*pose->create(L"y", metadata::kDouble, units::kNoUnit), x);
    const auto door = schemas->create(L"Door", kNoSchema);
    addNumber(*door, L"height", 2);
    addNumber(*door->create(L"frame", kNoSchema), L"width", 1);
}

void fillTable(ITable& table) {
    table.container()->describe(L"en", L"Table");
    table.defaults(units::kMeter, metadata::kDouble);
    table.defaults(units::kSecond, metadata::kScalar);
    addNumber(table, L"a", 1);
    addNumber(table, L"b", 2);
    const auto nested = table.create(L"sub", kNoSchema);
    addNumber(*nested, L"c", 3);
    addNumber(table, L"d", 4);
}

void fillGroup(IContainer& group, ISchema* pose) {
    group.describe(L"en", L"Group");
    group.describe(L"de", L"Gruppe");
    addNumber(*group.create(IContainer::kNode, L"first", kNoSchema), L"deep", 7);
    const auto second = group.create(IContainer::kGroup, L"second", kNoSchema);
    addNumber(*second, L"leaf", 8);
    second->create(L"leaves", kNoSchema)->create(L"one", metadata::kString, units::kNoUnit);
    group.create(IContainer::kGroup, L"third", kNoSchema);
    const double numbers[] = {1.5, 2.5, 3.5};
    const auto number = group.create(L"number", metadata::kDouble);
    setAll(*number, numbers);
    number->container()->describe(L"en", L"Number");
    number->container()->describe(L"de", L"Zahl");
    setAll(*group.create(L"text", metadata::kString), L"one\0two");
    const auto struct_ = group.create(L"pose", metadata::kStruct);
    struct_->schema(kPose);
    struct_->set(numbers, 0, 16);
    group.create(L"away", metadata::kURI)->uri(L"file:away");
    fillTable(*group.create(L"table", kNoSchema));
    group.create(L"made", pose);
    addNumber(group, L"behind", 9);
}

void fillMain(IDataStore* store, ISchema* pose) {
    const auto top = IContainerFrontEnd::toplevel(store, L"top");
    top->describe(L"en", L"Top");
    fillGroup(*top->create(IContainer::kGroup, L"group", kNoSchema), pose);
    const auto link = top->create(IContainer::kLink, L"link", kNoSchema);
    ILink::to(link.get())->target(L"top.group");
    top->create(IContainer::kNode, L"node", pose)->describe(L"en", L"Node");
    const auto goal = IContainerFrontEnd::toplevel(store, L"goal");
    goal->create(IContainer::kGroup, L"inner", kNoSchema);
    addNumber(*IContainerFrontEnd::toplevel(store, L"last"), L"untouched", 10);
}

void fillOther(IDataStore* store) {
    addNumber(*IContainerFrontEnd::toplevel(store, L"there"), L"own", 11);
    addNumber(*IContainerFrontEnd::toplevel(store, L"top")->create(IContainer::kGroup, L"group", kNoSchema), L"own",
              12);
}

}  // namespace

Ground::Ground(tKind kind) : _kind(kind) {
    std::array<std::unique_ptr<IDataStore>, kPlaces> stores;
    for (auto& store : stores) store = blank();
    fillSchemas(stores[kSchemas].get());
    {
        const auto locator = ISchemaLocator::make(stores[kSchemas].get());
        fillMain(stores[kMain].get(), locator->resolve(kPose).get());
    }
    fillOther(stores[kOther].get());
    for (unsigned int place = 0; place < kPlaces; ++place) {
        for (const unsigned int offset : offsets(*stores[place])) {
            _records[place].push_back(stored::bytes(stores[place].get(), offset));
        }
        _versions[place] = stores[place]->version();
    }
    if (kind == tKind::kFile) writeFiles();
}

std::unique_ptr<IDataStore> Ground::make(tPlace place, bool failing) const {
    if (_kind == tKind::kFile && failing) {
        fs::copy_file(model(place), file(place), fs::copy_options::overwrite_existing);
        return stores::file(file(place), stores::tMode::kWrite);
    }
    auto store = blank();
    for (const std::string& record : _records[place]) {
        store->create(record.data(), static_cast<unsigned int>(record.size()));
    }
    store->version(_versions[place]);
    return store;
}

std::unique_ptr<IDataStore> Ground::reopen(tPlace place) const {
    return stores::file(file(place), stores::tMode::kRead);
}

std::unique_ptr<IDataStore> Ground::copy(IDataStore& store) const {
    auto made = blank();
    stored::copy(&store, offsets(store), made.get());
    return made;
}

std::vector<unsigned int> Ground::offsets(IDataStore& store) const {
    std::vector<unsigned int> offsets;
    const auto end = store.extent();
    const unsigned int growth = _kind == tKind::kOdd ? 16 : 0;
    unsigned int step = _kind == tKind::kOdd ? 16 : 1;
    for (unsigned long long offset = 0; offset < end; offset += step, step += growth) {
        // Offsets of this store lie apart, and the distance grows; see OddStore.
        offsets.push_back(static_cast<unsigned int>(offset));
    }
    return offsets;
}

std::unique_ptr<IDataStore> Ground::blank() const {
    if (_kind == tKind::kOdd) return std::make_unique<OddStore>();
    return stores::memory();
}

void Ground::writeFiles() {
    for (unsigned int place = 0; place < kPlaces; ++place) {
        const auto store = stores::file(model(tPlace(place)), stores::tMode::kWrite);
        for (const std::string& record : _records[place]) {
            store->create(record.data(), static_cast<unsigned int>(record.size()));
        }
        store->version(_versions[place]);
        store->flush();
    }
}

}  // namespace lumivard::platform::test_support::fault
