#include "tests/fault/calls/Operation.h"

// Finding and reading: containers, their cursors, their roles, and the way into a store.

namespace lumivard::platform::test_support::fault {

namespace {

using data::structure::IVisitor;

/// The names of all that it is shown, and how many values there are.
class Names : public IVisitor {
public:
    void primitive(const tPrimitive& item) override {
        all.append(item.name).append(1, L' ').append(std::to_wstring(item.dimension)).append(1, L' ');
    }
    bool table(const tTable& item) override { return begin(item.name); }
    bool container(const tContainer& item) override { return begin(item.name); }
    void leave() override { all += L") "; }

    std::wstring all;

private:
    bool begin(std::wstring_view name) {
        all.append(name).append(L" (");
        return true;
    }
};

}  // namespace

std::vector<tOperation> containerOperations() {
    return {
        {"IContainer::tag() const", "Tag", nullptr, [](World& w) { return text(w.group->tag()); }},
        {"IContainer::path() const", "Path", nullptr, [](World& w) { return text(w.first->path()); }},
        {"IContainer::store() const", "Store", nullptr, [](World& w) { return said(w.group->store() == w.main()); }},
        {"IContainer::parent()", "Parent", nullptr, [](World& w) { return text(w.first->parent()->tag()); }},
        {"IContainer::base() const", "Base", nullptr, [](World& w) { return text(w.node->base()); }},
        {"IContainer::empty() const", "Empty", nullptr, [](World& w) { return said(w.group->empty()); }},
        {"IContainer::type() const", "Type", nullptr, [](World& w) { return said(unsigned{w.link->type()}); }},
        {"IContainer::has(WideString name)", "Has", nullptr,
         [](World& w) { return said(w.top->has(L"group.table.sub.c")); }},
        {"IContainer::container(WideString name)", "Container", nullptr,
         [](World& w) { return said(w.top->container(L"group.second")); }},
        {"IContainer::container(WideString name)", "ContainerItself", nullptr,
         [](World& w) { return said(w.group->container(kNoName)); }},
        {"IContainer::property(WideString name)", "Property", nullptr,
         [](World& w) { return said(w.top->property(L"group.table.sub")); }},
        {"IContainer::properties()", "Properties", nullptr, [](World& w) { return said(w.group->properties()); }},
        {"IContainer::containers()", "Containers", nullptr, [](World& w) { return said(w.group->containers()); }},
        {"IContainer::validates(metadata::ISchema* schema, bool quick)", "Validates", nullptr,
         [](World& w) { return said(w.group->validates(w.schema.get(), false)); }},
        {"IContainer::validates(WideString name, metadata::ISchema* schema, bool quick)", "ValidatesAtAPath", nullptr,
         [](World& w) { return said(w.top->validates(L"group.table", w.schema.get(), false)); }},
        {"IContainer::validates(WideString name, metadata::ISchema* schema, bool quick)", "ValidatesAContainer",
         nullptr, [](World& w) { return said(w.top->validates(L"group", w.schema.get(), false)); }},
        {"IContainer::locales()", "Locales", nullptr, [](World& w) { return said(w.group->locales()); }},
        {"IContainer::locale(unsigned int index)", "Locale", nullptr,
         [](World& w) { return text(w.group->locale(1)); }},
        {"IContainer::localize(WideString locale)", "Localize", nullptr,
         [](World& w) { return text(w.group->localize(L"de")); }},

        {"IContainerFilter::next()", "ContainersNext", nullptr, [](World& w) { return said(w.containers->next()); }},
        {"IContainerFilter::prev()", "ContainersPrev", nullptr, [](World& w) { return said(w.containers->prev()); },
         [](World& w) { toTheEnd(*w.containers); }},
        {"IContainerFilter::current()", "ContainersCurrent", nullptr,
         [](World& w) { return text(w.containers->current()->tag()); }},

        {"IVisitor::visit(IDataStore* store, std::wstring_view path, IVisitor& visitor)", "VisitsAStore", nullptr,
         [](World& w) {
             Names names;
             return said(IVisitor::visit(w.main(), {}, names)) + names.all;
         }},
        {"IVisitor::visit(IDataStore* store, std::wstring_view path, IVisitor& visitor)", "VisitsWhatLiesAtAPath",
         nullptr,
         [](World& w) {
             Names names;
             return said(IVisitor::visit(w.main(), L"top.group.table", names)) + names.all;
         }},
        {"IVisitor::visit(IContainer* container, std::wstring_view path, IVisitor& visitor)", "VisitsAContainer",
         nullptr,
         [](World& w) {
             Names names;
             return said(IVisitor::visit(w.group.get(), {}, names)) + names.all;
         }},

        {"IContainerFrontEnd::version()", "FrontEndVersion", nullptr,
         [](World&) { return said(static_cast<unsigned int>(IContainerFrontEnd::version())); }},
        {"IContainerFrontEnd::toplevel(IDataStore* store, WideString name)", "Toplevel", nullptr,
         [](World& w) { return said(IContainerFrontEnd::toplevel(w.main(), L"goal")); }},
        {"IContainerFrontEnd::toplevel(IDataStore* store, WideString name)", "ToplevelWithoutAName", nullptr,
         [](World& w) { return said(IContainerFrontEnd::toplevel(w.main(), kNoName)); }},
        {"IContainerFrontEnd::toplevel(IDataStore* store, WideString name)", "ToplevelMakesAGroup", L"main:robot",
         [](World& w) { return said(IContainerFrontEnd::toplevel(w.main(), L"robot")); }},
        {"IContainerFrontEnd::toplevel(IDataStore* store, WideString name)", "ToplevelSetsAStoreUp", L"empty:",
         [](World& w) { return said(IContainerFrontEnd::toplevel(w.stores[kEmpty], kNoName)); }, nullptr,
         // A set-up that failed behind its root has set the store up, and leaves its version 0.
         [](World& w) {
             w.stores[kEmpty]->version(static_cast<unsigned int>(IContainerFrontEnd::version()));
             return said(IContainerFrontEnd::toplevel(w.stores[kEmpty], kNoName));
         }},
        {"IContainerFrontEnd::find(IDataStore* store, WideString name)", "Find", nullptr,
         [](World& w) { return said(IContainerFrontEnd::find(w.main(), L"top.group.second")); }},

        {"IGroup::container() const", "GroupContainer", nullptr,
         [](World& w) { return said(IGroup::to(w.group.get())->container() == w.group.get()); }},
        {"IGroup::to(IContainer* container)", "GroupTo", nullptr,
         [](World& w) { return said(IGroup::to(w.group.get()) != nullptr); }},
        {"INode::container() const", "NodeContainer", nullptr,
         [](World& w) { return said(INode::to(w.node.get())->container() == w.node.get()); }},
        {"INode::to(IContainer* container)", "NodeTo", nullptr,
         [](World& w) { return said(INode::to(w.node.get()) != nullptr); }},
        {"ILink::container() const", "LinkContainer", nullptr,
         [](World& w) { return said(ILink::to(w.link.get())->container() == w.link.get()); }},
        {"ILink::to(IContainer* container)", "LinkTo", nullptr,
         [](World& w) { return said(ILink::to(w.link.get()) != nullptr); }},
        {"ILink::follow(IDataStore* store)", "Follow", nullptr,
         [](World& w) { return said(ILink::to(w.link.get())->follow(nullptr)); }},
        {"ILink::follow(IDataStore* store)", "FollowIntoAnotherStore", nullptr,
         [](World& w) { return said(ILink::to(w.link.get())->follow(w.stores[kOther])); }},
        {"ILink::target()", "Target", nullptr, [](World& w) { return text(ILink::to(w.link.get())->target()); }},
    };
}

}  // namespace lumivard::platform::test_support::fault
