#include "tests/threads/ThreadWork.h"

#include <barrier>
#include <map>
#include <memory>
#include <random>
#include <thread>
#include <vector>

namespace lumivard::platform::model {

using namespace data;
using metadata::IPrimitive;
using metadata::IProperty;
using metadata::ITable;
using structure::IContainer;
using structure::IContainerFrontEnd;
using structure::ILink;

namespace {

using tGuard = std::unique_ptr<IDataStore::ILock>;

std::wstring ownName(unsigned int number) {
    return L"own" + std::to_wstring(number);
}

std::wstring wide(const WideString& text) {
    return static_cast<const wchar_t*>(text);
}

std::string written(IDataStore& store) {
    core::io::MemoryWriter writer;
    format::xml::IXMLFrontEnd::serialize(&store, &writer, nullptr, 0);
    return writer.bytes();
}

}  // namespace

void onThreads(const std::function<void(unsigned int)>& work) {
    std::barrier start(kThreads);
    std::vector<std::thread> threads;
    for (unsigned int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&start, &work, number] {
            start.arrive_and_wait();
            work(number);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

/// One thread's share.
class ThreadWork::Worker {
public:
    Worker(ThreadWork& all, unsigned int number)
        : _all(all), _number(number), _own(ownName(number)), _random(all._seed + number) {
        _kept = IContainerFrontEnd::find(&_all._store, _own.c_str());
    }

    void step() {
        switch (below(14)) {
            case 0:
                return makeContainer();
            case 1:
                return makeTable();
            case 2:
            case 3:
                return setValues();
            case 4:
                return rename();
            case 5:
                return destroy();
            case 6:
                return walk();
            case 7:
                return copy();
            case 8:
                return describe();
            case 9:
                return follow();
            case 10:
                return writeTexts();
            case 11:
                return inherit();
            case 12:
                return validate();
            default:
                return addToShared();
        }
    }

private:
    unsigned int below(unsigned int count) { return static_cast<unsigned int>(_random() % count); }
    WideString anyName() { return (L"n" + std::to_wstring(below(12))).c_str(); }

    /// The own container: the object that was opened at the beginning, or one that is opened now.
    SharedPtr<IContainer> own() {
        if (below(2) == 0) return _kept;
        return _kept = IContainerFrontEnd::find(&_all._store, _own.c_str());
    }

    void makeContainer() {
        const auto made = own()->create(static_cast<IContainer::tType>(below(3)), anyName(), nullptr);
        if (made) made->create(L"v", metadata::kDouble);
    }

    void makeTable() {
        const auto made = own()->create(anyName(), static_cast<metadata::ISchema*>(nullptr));
        if (!made) return;
        made->defaults(units::kMeter, metadata::kDouble);
        made->create(L"length", units::group(units::kMeter));
        made->create(L"inner", nullptr)->create(L"count", metadata::kInt32, units::kNoUnit);
    }

    void setValues() {
        auto primitive = own()->create(anyName(), metadata::kInt32);
        if (!primitive) return;
        const std::vector<int> values(1 + below(30), static_cast<int>(below(1000)));
        primitive->set(values.data(), 0, static_cast<unsigned int>(values.size()));
        std::vector<int> found(values.size());
        if (!primitive->get(found.data(), 0, primitive->dimension()) || found != values) primitive->reset(77);
        primitive->container()->on(1);
    }

    void rename() {
        const WideString from = anyName();
        const WideString to = anyName();
        const tGuard guard(_all._store.lock());
        const auto fresh = _kept->container(WideString());
        if (const auto container = fresh->container(from)) container->rename(to);
        if (const auto property = fresh->property(from)) property->rename(to);
        _kept = _kept->container(WideString());
    }

    void destroy() {
        const WideString name = anyName();
        own()->destroy(name);
    }

    void walk() {
        const auto containers = own()->containers();
        do {
            if (const auto child = containers->current()) _seen += child->path().length() + child->locales();
        } while (containers->next());
        const auto shared = IContainerFrontEnd::find(&_all._store, L"shared");
        const tGuard guard(_all._store.lock());  // what is looked at here could not be destroyed elsewhere
        const auto properties = shared->properties();
        do {
            if (const auto property = properties->current()) _seen += property->tag().length();
        } while (properties->next());
    }

    void copy() {
        const auto target = own()->create(IContainer::kGroup, anyName(), nullptr);
        if (!target) return;
        target->copy(IContainerFrontEnd::find(&_all._store, L"library"));
        target->clone(IContainerFrontEnd::find(&_all._store, L"library")->property(L"table"));
        target->clone(L"library.node", L"again", true);
        if (below(4) != 0) _kept->destroy(target->tag());  // in use here, and so refused
    }

    void describe() {
        const WideString name = anyName();
        const wchar_t* locale = below(2) ? L"en-us" : L"de-de";
        if (const auto container = own()->container(name)) container->describe(locale, L"text");
        if (const auto property = own()->property(name)) property->describe(locale, anyName());
        const auto library = IContainerFrontEnd::find(&_all._store, L"library.node");
        _seen += library->localize(L"de").length();
    }

    void follow() {
        const auto made = own()->create(IContainer::kLink, anyName(), nullptr);
        if (!made) return;
        ILink::to(made.get())->target(L"library.node");
        if (const auto target = ILink::to(made.get())->follow(nullptr)) made->describe(L"en", target->tag());
    }

    void writeTexts() {
        const auto made = own()->create(anyName(), metadata::kString);
        if (!made) return;
        const std::unique_ptr<metadata::IStringArray> texts(metadata::IStringArray::to(nullptr, 0));
        for (unsigned int count = 1 + below(4); count != 0; --count) texts->add(anyName());
        texts->write(made.get());
        std::wstring packed(made->dimension(), L'x');
        made->get(packed.data(), 0, made->dimension());
        const std::unique_ptr<metadata::IStringArray> read(
            metadata::IStringArray::to(packed.data(), static_cast<unsigned int>(packed.size())));
        if (read->strings() != texts->strings()) made->reset(99);
    }

    SharedPtr<metadata::ISchema> schema() {
        const std::wstring uri = L"schema" + std::to_wstring(below(6));
        const tGuard guard(_all._schemas.lock());
        return _all._locator->resolve(uri.c_str());
    }

    // The container's store comes before that of the schema; for a table its client takes both guards.
    void inherit() {
        const auto found = schema();
        const WideString name = anyName();
        const auto owner = own();
        if (below(2) == 0) {
            if (const auto made = owner->create(IContainer::kNode, name, found.get())) set(made->property(L"value"));
            return;
        }
        const tGuard guard(_all._store.lock());
        const tGuard schemaGuard(_all._schemas.lock());
        if (const auto made = owner->create(name, found.get())) set(made->lookup(L"value"));
    }

    void set(const SharedPtr<IProperty>& property) {
        const double value = below(100);
        IPrimitive::to(property.get())->set(&value, 0, 1);
    }

    void validate() {
        const auto found = schema();
        const WideString name = anyName();
        const auto owner = own();
        const tGuard guard(_all._store.lock());
        const tGuard schemaGuard(_all._schemas.lock());
        if (owner->validates(name, found.get(), false)) _seen += found->path().length();
    }

    // Several calls that are one step, under the guard. The front end is not asked meanwhile.
    void addToShared() {
        const auto shared = IContainerFrontEnd::find(&_all._store, L"shared");
        const std::wstring name = std::to_wstring(_number) + L"_" + std::to_wstring(below(50));
        const tGuard guard(_all._store.lock());
        const auto fresh = shared->container(WideString());
        if (fresh->has(name.c_str())) {
            fresh->destroy(name.c_str());
        } else {
            fresh->create(name.c_str(), metadata::kInt8);
        }
        if (below(20) == 0) _all._store.flush();
    }

    ThreadWork& _all;
    unsigned int _number;
    std::wstring _own;
    std::mt19937_64 _random;
    SharedPtr<IContainer> _kept;
    std::uint64_t _seen = 0;
};

ThreadWork::ThreadWork(IDataStore& store, IDataStore& schemas, std::uint64_t seed)
    : _store(store), _schemas(schemas), _locator(metadata::ISchemaLocator::make(&schemas)), _seed(seed) {
    std::string document = "<root version='1' name='schemas'>";
    for (int number = 0; number < 6; ++number) {
        document += "<table name='schema" + std::to_string(number) +
                    "'><double name='value'>0</double><table name='more'><string name='" + std::to_string(number) +
                    "'/></table></table>";
    }
    core::io::MemoryReader reader(document + "</root>");
    format::xml::IXMLFrontEnd::parse(&_schemas, &reader, nullptr, nullptr, nullptr);

    for (unsigned int number = 0; number < kThreads; ++number) {
        IContainerFrontEnd::toplevel(&_store, ownName(number).c_str());
    }
    IContainerFrontEnd::toplevel(&_store, L"shared");
    const auto library = IContainerFrontEnd::toplevel(&_store, L"library");
    library->create(L"table", static_cast<metadata::ISchema*>(nullptr))->create(L"x", metadata::kInt8, units::kMeter);
    library->create(IContainer::kNode, L"node", nullptr)->describe(L"de", L"Knoten");
}

void ThreadWork::run(unsigned int number, unsigned int steps) {
    Worker worker(*this, number);
    for (unsigned int step = 0; step < steps; ++step) worker.step();
}

std::string ThreadWork::result() {
    std::map<std::wstring, std::string> names;
    const auto shared = IContainerFrontEnd::find(&_store, L"shared");
    const auto properties = shared->properties();
    do {
        if (const auto property = properties->current()) names[wide(property->tag())] = property->tag().string();
    } while (properties->next());
    std::string result;
    for (const auto& [name, utf8] : names) {
        result += utf8 + " ";
        shared->destroy(name.c_str());
    }
    return result + written(_store);
}

}  // namespace lumivard::platform::model
