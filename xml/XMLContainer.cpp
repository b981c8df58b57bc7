#include "xml/XMLContainer.h"

#include <iterator>

#include "design/Container.h"
#include "design/Primitive.h"
#include "design/Table.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "record/Base.h"
#include "xml/Inheriting.h"
#include "xml/Nesting.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using core::xml::XMLSerializer;
using Metadata::Item;

namespace {

constexpr const char* kpNames[] = {"node", "group", "link"};
constexpr const wchar_t* kpWideNames[] = {L"node", L"group", L"link"};

}  // namespace

const char* XMLContainer::name() const {
    return _type < std::size(kpNames) ? kpNames[_type] : nullptr;
}

const wchar_t* XMLContainer::wname() const {
    return _type < std::size(kpWideNames) ? kpWideNames[_type] : nullptr;
}

unsigned int XMLContainer::type() const {
    return Record::kContainer;
}

std::unique_ptr<Item> XMLContainer::open(const char* const* attributes) {
    const char* name = find("name", attributes);
    if (!name) return refuse(kMissingName);
    auto container = std::make_unique<Structural::Container>(_store, _type, StringAlgorithm::UTF8Decode(name).c_str());
    if (isOptional(attributes)) container->on(Record::kOptional);
    inheritClass(*container, attributes, _locator);
    const char* target = find("to", attributes);
    if (target && _type == tType::kLink) container->info(StringAlgorithm::UTF8Decode(target).c_str());
    return container;
}

std::unique_ptr<Item> XMLContainer::nest(Item& parent, std::unique_ptr<Item> child) {
    auto& set = static_cast<Metadata::Set&>(parent);
    switch (Record::peek(_store, child->offset())) {
        case Record::kPrimitive:
            return addOrMerge<Design::Primitive>(set, std::move(child));
        case Record::kTable:
            return addOrMerge<Design::Table>(set, std::move(child));
        case Record::kContainer:
            return add(set, std::move(child));
        default:
            return nullptr;
    }
}

bool XMLContainer::serialize(Item& item, XMLSerializer& serializer) {
    const auto& container = static_cast<const Structural::Container&>(item);
    const wchar_t* target = container.type() == tType::kLink ? container.info() : nullptr;
    serializer.startElement(name());
    serializer.addAttribute("name", container.tag());
    if (container.base()) serializer.addAttribute("class", container.base());
    if (target) serializer.addAttribute("to", target);
    writeNames(item, serializer);
    return true;
}

}  // namespace lumivard::platform::data
