#include "tests/fuzz/RecordsClient.h"

#include <memory>

#include "lumivard/platform/data/check/Dump.h"

namespace lumivard::platform::fuzz {

namespace metadata = data::metadata;

namespace {

constexpr std::size_t kMostObjects = 16;

/// What a cursor gives, forwards; then it goes some steps back.
template <class Filter, class Object>
void take(Filter& filter, std::vector<SharedPtr<Object>>& objects) {
    for (bool more = true; more && objects.size() < kMostObjects; more = filter.next()) {
        if (auto object = filter.current()) objects.push_back(std::move(object));
    }
    filter.prev();
    filter.current();
    filter.prev();
}

template <class Item>
void lookAtTexts(Item& item) {
    const unsigned int count = item.locales();
    for (unsigned int i = 0; i <= count && i < kMostObjects; ++i) item.localize(item.locale(i));
}

template <class Item>
void changeTexts(Item& item) {
    item.describe(L"xx", L"text");
    item.describe(item.locale(0), WideString());
    item.describe(item.locale(1), L"other");
}

/// Takes a value apart into texts, whatever it is.
void lookAtStrings(const std::vector<char>& values) {
    const std::vector<wchar_t> packed(values.begin(), values.end());
    const std::unique_ptr<IStringArray> strings(
        IStringArray::to(packed.data(), static_cast<unsigned int>(packed.size())));
    for (unsigned int i = 0; i <= strings->strings() && i < kMostObjects; ++i) strings->get(i);
}

/// Reads all that it is shown.
class Taking final : public IVisitor {
public:
    void primitive(const tPrimitive& item) override {
        std::vector<char> values(std::size_t{item.dimension} * item.stride);
        item.get(values.data(), 0, item.dimension);
        item.get(values.data(), item.dimension, 1);
        read(item.name, item.schema);
        read(item.valuelocale, item.uri);
    }
    bool table(const tTable& item) override { return read(item.name, item.base); }
    bool container(const tContainer& item) override { return read(item.name, item.base) && read(item.target, {}); }

private:
    bool read(std::wstring_view first, std::wstring_view second) {
        _copy.assign(first).append(second);
        return true;
    }

    std::wstring _copy;
};

void lookAtLayout(ISchema& schema) {
    schema.path();
    auto* layout = schema.layout();
    if (!layout) return;
    for (unsigned int i = 0; i <= layout->fields() && i < kMostObjects; ++i) {
        if (const auto* field = layout->get(i)) layout->get(field->name);
    }
}

}  // namespace

void RecordsClient::walk(const std::function<void(IContainer&)>& onContainer,
                         const std::function<void(IProperty&)>& onProperty) {
    for (const wchar_t* path : {L"a", L"b", L"a.b"}) {
        if (auto container = IContainerFrontEnd::find(&_store, path)) _containers.push_back(std::move(container));
    }
    for (std::size_t i = 0; i < _containers.size() && step(); ++i) {
        gather(*_containers[i]->containers(), *_containers[i]->properties());
    }
    for (std::size_t i = 0; i < _properties.size() && step(); ++i) {
        if (ITable* table = ITable::to(_properties[i].get())) take(*table->properties(), _properties);
    }
    for (std::size_t i = 0; i < _containers.size() && step(); ++i) onContainer(*_containers[i]);
    for (std::size_t i = 0; i < _properties.size() && step(); ++i) onProperty(*_properties[i]);
}

void RecordsClient::gather(IContainerFilter& containers, IPropertyFilter& properties) {
    take(containers, _containers);
    take(properties, _properties);
}

void RecordsClient::look() {
    Taking taking;
    for (const wchar_t* path : {L"", L"a", L"a.b"}) IVisitor::visit(&_store, path, taking);
    for (unsigned int offset = 0; offset < _store.extent() && step(); ++offset) data::check::dump(_store, offset);
    walk([this](IContainer& container) { lookAt(container); }, [this](IProperty& property) { lookAt(property); });
}

void RecordsClient::lookAt(IContainer& container) {
    const WideString tag = container.tag();
    const WideString path = container.path();
    container.parent();
    container.base();
    container.empty();
    container.has(path);
    container.has(L"a.b.c");
    container.container(tag);
    container.container(WideString());
    container.property(L"a.b");
    lookAtTexts(container);
    IContainerFrontEnd::find(&_store, path);
    if (IGroup* group = IGroup::to(&container)) group->container()->type();
    if (INode* node = INode::to(&container)) node->container()->type();
    if (ILink* link = ILink::to(&container)) {
        link->target();
        link->follow(nullptr);
        link->follow(&_other);
    }
}

void RecordsClient::lookAt(IProperty& property) {
    property.path();
    property.parent();
    property.flags();
    lookAtTexts(property);
    if (ITable* table = ITable::to(&property)) {
        table->lookup(L"a.b");
        for (unsigned int i = 0; i <= table->items() && i < kMostObjects; ++i) table->at(i);
        for (unsigned int i = 0; i <= table->groups() && i < kMostObjects; ++i) {
            table->valuetype(table->group(i));
            table->units(table->group(i));
        }
        table->base();
    }
    if (IPrimitive* primitive = IPrimitive::to(&property)) {
        std::vector<char> values(primitive->bytes() + sizeof(double));
        primitive->get(values.data(), 0, primitive->dimension());
        primitive->get(values.data(), primitive->dimension() / 2, 1);
        lookAtStrings(values);
        primitive->units();
        primitive->uri();
        primitive->schema();
        primitive->valuelocale();
    }
}

void RecordsClient::resolve() {
    IContainerFrontEnd::toplevel(&_store, WideString());
    std::vector<SharedPtr<ISchema>> schemas;
    const auto add = [&](const WideString& uri) {
        if (auto schema = _locator.resolve(uri)) schemas.push_back(std::move(schema));
    };
    walk([&](IContainer& container) { add(container.base()); }, [&](IProperty& property) { add(property.path()); });
    add(L"a;b;a.b");
    for (const auto& schema : schemas) {
        lookAtLayout(*schema);
        for (const auto& container : _containers) {
            if (!step()) return;
            container->validates(schema.get(), false);
            container->validates(L"a.b", schema.get(), true);
        }
        for (const auto& property : _properties) {
            if (ITable* table = ITable::to(property.get()); table && step()) table->validates(schema.get());
        }
    }
    for (std::size_t i = 0; i < schemas.size() && i < 4; ++i) {
        createFrom(*schemas[i], std::wstring(1, static_cast<wchar_t>(L'A' + i)).c_str());
    }
    schemas.clear();  // before their stores go
    changeStores();
}

void RecordsClient::createFrom(ISchema& schema, const WideString& name) {
    const WideString another = (L"t" + std::wstring(name)).c_str();
    if (!_containers.empty() && isSmall()) _containers.front()->create(IContainer::kGroup, name, &schema);
    if (!_containers.empty() && isSmall()) _containers.back()->create(another, &schema);
    ITable* const table = _properties.empty() ? nullptr : ITable::to(_properties.back().get());
    if (table && isSmall()) table->create(another, &schema);
}

void RecordsClient::changeStores() {
    const auto resolve = [this] {
        for (const wchar_t* uri : {L"a", L"b", L"a.b;b"}) {
            if (const auto schema = _locator.resolve(uri)) lookAtLayout(*schema);
        }
    };
    _locator.push(&_other);
    resolve();
    _locator.pop(&_store);
    resolve();
    _locator.push(&_store);
    _locator.reset();
    resolve();
    _locator.push(&_store);
}

void RecordsClient::copy() {
    const auto elsewhere = IContainerFrontEnd::toplevel(&_other, L"top");
    walk([](IContainer&) {}, [](IProperty&) {});
    for (std::size_t i = 0; i < _containers.size() && step() && isSmall(); ++i) {
        elsewhere->clone(_containers[i]);
        elsewhere->copy(_containers[i]);
        _containers[i]->clone(&_other, L"top.copy");
        _containers[i]->clone(_containers[i]->path(), L"again", true);
        if (isSmall()) _containers[i]->copy(_containers[0]);
    }
    for (std::size_t i = 0; i < _properties.size() && step() && isSmall(); ++i) {
        elsewhere->clone(_properties[i]);
        if (!_containers.empty()) _containers.back()->clone(_properties[i]);
    }
}

bool RecordsClient::isSmall() const {
    constexpr unsigned long long kMostRecords = 400;
    return _store.extent() < kMostRecords && _other.extent() < kMostRecords;
}

void RecordsClient::change() {
    IContainerFrontEnd::toplevel(&_store, L"a");
    walk([this](IContainer& container) { changeContainer(container); },
         [this](IProperty& property) { changeProperty(property); });
}

void RecordsClient::read() {
    core::io::MemoryReader reader(
        "<root name='r' version='2'><group name='a' class='a'><table name='b' class='a.b'/></group></root>");
    data::format::xml::IXMLFrontEnd::parse(&_store, &reader, &_locator, nullptr, nullptr);
    walk([](IContainer&) {}, [](IProperty&) {});
    if (_containers.empty()) return;
    if (isSmall()) readInto(*_containers.front());
    if (isSmall()) readInto(*_containers.back());
}

void RecordsClient::readInto(IContainer& container) {
    core::io::MemoryReader reader(
        "<group name='a' class='a;a.b'><name locale='xx'>n</name><table name='b' class='b'><int8 name='a'>1 2</int8>"
        "</table><string name='a'>x</string><struct name='s' type='a'>1 2 3</struct><node name='b'><link name='l' "
        "to='a.b'/></node></group>");
    data::format::xml::IXMLFrontEnd::parse(&container, &reader, &_locator, nullptr, nullptr);
}

void RecordsClient::changeContainer(IContainer& container) {
    changeTexts(container);
    container.rename(L"b");
    container.rename((std::wstring(container.tag()) + L"x").c_str());
    container.create(IContainer::kLink, L"l", nullptr);
    container.create(L"p", metadata::kString);
    container.create(L"t", nullptr);
    if (ILink* link = ILink::to(&container)) link->target(L"a.b");
    changeBehind(*container.properties());
}

/// Changes values behind the back of another object, which then reads as much as it knows of.
void RecordsClient::changeBehind(IPropertyFilter& properties) {
    do {
        const auto one = properties.current();
        const auto other = properties.current();
        IPrimitive* const changed = IPrimitive::to(one.get());
        IPrimitive* const read = IPrimitive::to(other.get());
        if (!changed || !read) continue;
        std::vector<char> values(read->bytes() + sizeof(double));
        changed->reset(0);
        read->get(values.data(), 0, read->dimension());
    } while (step() && properties.next());
}

void RecordsClient::changeProperty(IProperty& property) {
    changeTexts(property);
    property.rename(L"b");
    property.rename((std::wstring(property.tag()) + L"x").c_str());
    property.on(0x04);
    property.off(0x04);
    if (ITable* table = ITable::to(&property)) changeTable(*table);
    if (IPrimitive* primitive = IPrimitive::to(&property)) changeValue(*primitive);
}

void RecordsClient::changeValue(IPrimitive& primitive) {
    const std::vector<char> values(256, '\1');
    primitive.set(values.data(), 1, 2);
    primitive.set(values.data(), primitive.dimension(), 1);
    primitive.reset(3);
    const std::unique_ptr<IStringArray> strings(IStringArray::to(L"one\0two", 8));
    strings->add(L"three");
    strings->write(&primitive);
    primitive.uri(L"u");
    primitive.uri(WideString());
    primitive.schema(L"a");
    primitive.valuelocale(L"de");
}

void RecordsClient::changeTable(ITable& table) {
    table.defaults(data::units::kMeter, metadata::kDouble);
    table.defaults(data::units::kPascal, metadata::kInt8);
    table.create(L"length", data::units::group(data::units::kMeter));
    table.create(L"p", metadata::kDouble, data::units::kMeter);
    table.create(L"t", nullptr);
}

void RecordsClient::destroy() {
    std::vector<WideString> names{L"a", L"b", L"l"};
    walk([&](IContainer& container) { names.push_back(container.tag()); },
         [&](IProperty& property) { names.push_back(property.tag()); });
    std::vector<SharedPtr<IContainerFilter>> cursors;
    for (const auto& container : _containers) cursors.push_back(container->containers());
    while (!_properties.empty()) {
        const auto property = std::move(_properties.back());  // alone, so that what it holds is not in use
        _properties.pop_back();
        if (ITable* table = ITable::to(property.get())) destroyIn(*table);
    }
    while (_containers.size() > 1) _containers.pop_back();
    if (_containers.empty()) return;
    const auto top = _containers.back()->container(WideString());
    _containers.clear();
    for (const WideString& name : names) {
        if (top && step()) top->destroy(name);
    }
    for (const auto& cursor : cursors) take(*cursor, _containers);
}

void RecordsClient::destroyIn(ITable& table) {
    const auto cursor = table.properties();
    for (unsigned int i = table.items(); i-- != 0 && step();) {
        WideString name;
        if (const auto item = table.at(i)) name = item->tag();
        table.destroy(name);
    }
    std::vector<SharedPtr<IProperty>> left;
    take(*cursor, left);
}

}  // namespace lumivard::platform::fuzz
