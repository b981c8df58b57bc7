#include <rapidcheck.h>

#include <algorithm>
#include <map>
#include <optional>

#include "tests/support/ClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// An item of a tree in plain memory, which the tree in a store is compared with.
struct Model {
    enum tKind { kContainer, kTable, kPrimitive };

    std::wstring name;
    tKind kind = kContainer;
    IContainer::tType type = IContainer::kGroup;
    std::vector<int> numbers;
    std::map<std::wstring, std::wstring> texts;
    std::vector<Model> children;

    Model* child(const std::wstring& wanted) {
        const auto found =
            std::find_if(children.begin(), children.end(), [&](const Model& each) { return each.name == wanted; });
        return found == children.end() ? nullptr : &*found;
    }
};

// A tree as text: a line for each item, with all that a client can see of it.

void putTexts(std::wstring& out, const std::map<std::wstring, std::wstring>& texts) {
    for (const auto& [locale, text] : texts) out += L" " + locale + L"=" + text;
}

void putNumbers(std::wstring& out, const std::vector<int>& numbers) {
    for (const int number : numbers) out += L" " + std::to_wstring(number);
}

void put(std::wstring& out, const Model& item, const std::wstring& above) {
    const std::wstring path = above + item.name;
    out += path + L" " + std::to_wstring(item.kind) + L"/" + std::to_wstring(item.type);
    putNumbers(out, item.numbers);
    putTexts(out, item.texts);
    out += L"\n";
    // A container shows its properties before its containers, each in the order of their adding.
    for (const Model& child : item.children) {
        if (child.kind != Model::kContainer) put(out, child, path + L".");
    }
    for (const Model& child : item.children) {
        if (child.kind == Model::kContainer) put(out, child, path + L".");
    }
}

template <class Item>
std::map<std::wstring, std::wstring> textsOf(Item& item) {
    std::map<std::wstring, std::wstring> texts;
    for (unsigned int index = 0; index < item.locales(); ++index) {
        texts[text(item.locale(index))] = text(item.localize(item.locale(index)));
    }
    return texts;
}

void put(std::wstring& out, const SharedPtr<IProperty>& property) {
    out += text(property->path()) + (property->type() == 0 ? L" 2/1" : L" 1/1");
    if (property->type() == 0) putNumbers(out, values<int>(asPrimitive(property)));
    putTexts(out, textsOf(*property));
    out += L"\n";
    if (property->type() != 1) return;
    for (unsigned int index = 0; index < asTable(property).items(); ++index) put(out, asTable(property).at(index));
}

void put(std::wstring& out, IContainer& container) {
    out += text(container.path()) + L" 0/" + std::to_wstring(container.type());
    putTexts(out, textsOf(container));
    out += L"\n";
    const auto properties = container.properties();
    do {
        if (const auto property = properties->current()) put(out, property);
    } while (properties->next());
    const auto containers = container.containers();
    do {
        if (const auto child = containers->current()) put(out, *child);
    } while (containers->next());
}

/// Does the same to both trees, through objects that are opened for each step.
class Driver {
public:
    explicit Driver(IDataStore* store) : _store(store) {
        _model.name = L"top";
        IContainerFrontEnd::toplevel(store, L"top");
    }

    void step() {
        const int operation = *rc::gen::inRange(0, 6);
        const std::wstring name = *anyName();
        if (operation <= 2) return create(name, static_cast<Model::tKind>(operation));
        if (operation == 3) return destroy(name);
        if (operation == 4) return rename(name, *anyName());
        change(name);
    }

    void compare() const {
        std::wstring expected;
        put(expected, _model, L"");
        std::wstring found;
        put(found, *IContainerFrontEnd::find(_store, L"top"));
        RC_ASSERT(expected == found);
    }

private:
    /// A container or a table of both trees.
    struct tPlace {
        Model* model;
        SharedPtr<IContainer> container;
        SharedPtr<IProperty> property;
    };

    static rc::Gen<std::wstring> anyName() {
        return rc::gen::element<std::wstring>(L"a", L"b", L"c", L"d", L"a name that is longer");
    }

    /// Somewhere in the tree, the top included.
    tPlace anyPlace() {
        Model* place = &_model;
        std::wstring path = L"top";
        std::wstring within;
        SharedPtr<IContainer> container = IContainerFrontEnd::find(_store, L"top");
        for (int depth = *rc::gen::inRange(0, 5); depth > 0; --depth) {
            Model* next = place->child(*anyName());
            if (!next || next->kind == Model::kPrimitive) break;
            place = next;
            if (next->kind == Model::kContainer) {
                path += L"." + next->name;
            } else {
                within += (within.empty() ? L"" : L".") + next->name;
            }
        }
        container = IContainerFrontEnd::find(_store, path.c_str());
        RC_ASSERT(bool(container));
        SharedPtr<IProperty> property;
        if (!within.empty()) {
            property = container->property(within.c_str());
            RC_ASSERT(bool(property));
        }
        return {place, container, property};
    }

    void create(const std::wstring& name, Model::tKind kind) {
        const tPlace place = anyPlace();
        const bool expected = !place.model->child(name) && (kind != Model::kContainer || !place.property);
        Model made;
        made.name = name;
        made.kind = kind;
        bool done = false;
        if (kind == Model::kContainer) {
            if (place.property) return;
            made.type = *rc::gen::element(IContainer::kNode, IContainer::kGroup, IContainer::kLink);
            done = bool(place.container->create(made.type, name.c_str(), kNoSchema));
        } else if (place.property) {
            ITable& table = asTable(place.property);
            done = kind == Model::kTable ? bool(table.create(name.c_str(), kNoSchema))
                                         : bool(table.create(name.c_str(), metadata::kInt32, units::kNoUnit));
        } else {
            done = kind == Model::kTable ? bool(place.container->create(name.c_str(), kNoSchema))
                                         : bool(place.container->create(name.c_str(), metadata::kInt32));
        }
        RC_ASSERT(done == expected);
        if (done) place.model->children.push_back(made);
    }

    void destroy(const std::wstring& name) {
        const tPlace place = anyPlace();
        const bool expected = place.model->child(name) != nullptr;
        const bool done =
            place.property ? asTable(place.property).destroy(name.c_str()) : place.container->destroy(name.c_str());
        RC_ASSERT(done == expected);
        std::erase_if(place.model->children, [&](const Model& each) { return each.name == name; });
    }

    void rename(const std::wstring& from, const std::wstring& to) {
        const tPlace place = anyPlace();
        Model* child = place.model->child(from);
        if (!child) return;
        const bool expected = !place.model->child(to);
        const bool done = child->kind == Model::kContainer
                              ? place.container->container(from.c_str())->rename(to.c_str())
                              : propertyIn(place, from)->rename(to.c_str());
        RC_ASSERT(done == expected);
        if (done) child->name = to;
    }

    /// Sets a primitive's values, or a text of anything else.
    void change(const std::wstring& name) {
        const tPlace place = anyPlace();
        Model* child = place.model->child(name);
        if (!child) return;
        const std::wstring locale = *rc::gen::element<std::wstring>(L"en", L"de");
        const std::wstring words = *anyName();
        if (child->kind == Model::kContainer) {
            place.container->container(name.c_str())->describe(locale.c_str(), words.c_str());
        } else if (child->kind == Model::kTable) {
            propertyIn(place, name)->describe(locale.c_str(), words.c_str());
        } else {
            return set(*child, propertyIn(place, name));
        }
        child->texts[locale] = words;
    }

    static void set(Model& model, const SharedPtr<IProperty>& property) {
        const auto numbers = *rc::gen::nonEmpty<std::vector<int>>();
        // At the start of an empty array only: from further on its source would be read further on too.
        const auto start = model.numbers.empty() ? std::size_t{0} : *rc::gen::inRange<std::size_t>(0, 8);
        const bool done = asPrimitive(property).set(numbers.data(), static_cast<unsigned int>(start),
                                                    static_cast<unsigned int>(numbers.size()));
        RC_ASSERT(done);
        model.numbers.resize(std::max(model.numbers.size(), start + numbers.size()));
        std::copy(numbers.begin(), numbers.end(), model.numbers.begin() + static_cast<std::ptrdiff_t>(start));
    }

    static SharedPtr<IProperty> propertyIn(const tPlace& place, const std::wstring& name) {
        return place.property ? asTable(place.property).lookup(name.c_str()) : place.container->property(name.c_str());
    }

    IDataStore* _store;
    Model _model;
};

class TreeModel : public ClientTest {};
LVP_ON_EACH_STORE(TreeModel);

TEST_P(TreeModel, AgreesWithATreeInPlainMemory) {
    EXPECT_TRUE(rc::check([] {
        const auto own = GetParam().make();
        Driver driver(own.get());
        for (int steps = *rc::gen::inRange(0, 60); steps > 0; --steps) driver.step();
        driver.compare();
    }));
}

}  // namespace
