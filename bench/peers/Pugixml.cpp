#include <array>
#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Document.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/TreeWorkloads.h"

// pugixml, whose tree of a document is the model: reals become text when they are set (std::to_chars) and reals when
// they are read (std::from_chars). Its files are documents, written as a whole.

namespace lvp::bench {

namespace {

class Tree {
public:
    static constexpr const char* kEnding = "xml";
    static constexpr bool kLasts = true;
    using tPath = Path;
    using tName = std::string;

    static tPath pathOf(Place place) { return bench::pathOf(place); }
    static tName nameOf(unsigned int number) { return itemName(number); }
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) { return {file}; }

    explicit Tree(tDigits digits = tDigits::kAll) : _element(digits) {}

    void create(const std::filesystem::path& file) {
        _file = file;
        _top = add(_document, kTopElement, kTop.data());
    }
    void item(const std::string& name) { _item = add(_top, kItemElement, name.c_str()); }
    void endItem() {}
    void real(std::string_view name, std::string_view unit, double value) {
        _element.real(name, unit, value);
        addProperty();
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        _element.vector(name, unit, value);
        addProperty();
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        _element.text(name, unit, value);
        addProperty();
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        _element.integers(name, unit, value);
        addProperty();
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        _element.flag(name, unit, value);
        addProperty();
    }
    void child(const tName& name) { add(_top, kTopElement, name.c_str()); }

    void open(const std::filesystem::path& file, tAccess) {
        _file = file;
        load(file);
    }
    void flush() {
        save(_file);
        makeDurable(_file);
    }
    void close() { _document.reset(); }

    void load(const std::filesystem::path& file) {
        const auto result = _document.load_file(file.c_str(), pugi::parse_default, pugi::encoding_utf8);
        require(static_cast<bool>(result), "the document is not read");
        _top = _document.document_element();
        if (std::string_view(_top.name()) == "root") _top = _top.first_child();
    }

    void save(const std::filesystem::path& file) {
        require(_document.save_file(file.c_str(), "", pugi::format_raw, pugi::encoding_utf8),
                "the document is not written");
    }

    void readTree(Checksum& sum) {
        for (const pugi::xml_node item : _top.children()) {
            for (const pugi::xml_node property : item.children()) take(property, sum);
        }
    }

    /// It finds a name by comparing those of all children, so a client keeps the items by their names itself.
    void index() {
        for (const pugi::xml_node item : _top.children()) _items.emplace(nameOf(item), item);
    }

    void read(const tPath& path, Checksum& sum) { take(find(_items.at(path.item), path.property), sum); }

    void overwrite(const tPath& path, double value) {
        std::array<char, 40> text;
        *printReal(text.data(), value, tDigits::kAll) = 0;
        find(_items.at(path.item), path.property).first_child().set_value(text.data());
    }

    bool find(const tName& name) { return static_cast<bool>(find(_top, name)); }

    std::size_t walk() {
        std::size_t length = 0;
        for (const pugi::xml_node child : _top.children()) length += std::string_view(nameOf(child)).size();
        return length;
    }

protected:
    static const char* nameOf(pugi::xml_node node) { return node.attribute(kNameAttribute).value(); }

    static pugi::xml_node find(pugi::xml_node parent, std::string_view name) {
        for (const pugi::xml_node child : parent.children()) {
            if (name == nameOf(child)) return child;
        }
        return {};
    }

    static void take(pugi::xml_node property, Checksum& sum) {
        require(readElement(property.name(), nameOf(property), property.attribute(kUnitAttribute).value(),
                            property.child_value(), sum),
                "an element is no property");
    }

    pugi::xml_node top() const { return _top; }

private:
    static pugi::xml_node add(pugi::xml_node parent, const char* element, const char* name) {
        pugi::xml_node node = parent.append_child(element);
        node.append_attribute(kNameAttribute).set_value(name);
        return node;
    }

    void addProperty() {
        pugi::xml_node node = add(_item, _element.kind(), _element.name());
        if (*_element.unit()) node.append_attribute(kUnitAttribute).set_value(_element.unit());
        node.append_child(pugi::node_pcdata).set_value(_element.value());
    }

    std::filesystem::path _file;
    pugi::xml_document _document;
    pugi::xml_node _top;
    pugi::xml_node _item;
    Element _element;
    std::unordered_map<std::string, pugi::xml_node> _items;
};

/// Without an index of the client's: all items before the one that is looked for are compared.
class SearchedTree : public Tree {
public:
    void index() {}
    void read(const tPath& path, Checksum& sum) { take(find(find(top(), path.item), path.property), sum); }
};

/// W6: writes a tree that is there already, in the form of our documents.
void writeDocument(const Case& run) {
    const auto document = run.scratch("xml");
    Tree tree(tDigits::kSeven);
    build(tree, document, run.count);
    const Measure measure = measured([&] { tree.save(document); });
    run.report("W6", run.count, measure, bytesOf(document));
    Tree again;
    again.load(document);
    Checksum sum;
    again.readTree(sum);
    verify(sum, checksumOfDocument(run.count));
    std::filesystem::remove(document);
}

/// W7: reads the document; for "pugixml_values" all values are made numbers, too.
void readDocument(const Case& run) {
    Tree tree;
    Checksum sum;
    const bool values = run.subject == "pugixml_values";
    const Measure measure = measured([&] {
        tree.load(run.document());
        if (values) tree.readTree(sum);
    });
    run.report("W7", run.count, measure, bytesOf(run.document()));
    if (!values) tree.readTree(sum);
    verify(sum, checksumOfDocument(run.count));
}

constexpr Row kRows[] = {
    {"pugixml", "W1", buildTree<Tree>}, {"pugixml", "W2", readTree<Tree>},
    {"pugixml", "W3", lookUp<Tree>},    {"pugixml_search", "W3", lookUp<SearchedTree>},
    {"pugixml", "W4", editTree<Tree>},  {"pugixml", "W4d", editTree<Tree>},
    {"pugixml", "W5", wideSet<Tree>},   {"pugixml", "W6", writeDocument},
    {"pugixml", "W7", readDocument},    {"pugixml_values", "W7", readDocument},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
