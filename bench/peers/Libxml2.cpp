#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlwriter.h>

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Document.h"
#include "bench/workloads/Program.h"
#include "bench/workloads/TreeWorkloads.h"

// libxml2. Its tree of a document is the model, with one dictionary for all names, without blank texts, and short texts
// within their nodes; its files are documents, written as a whole. Its writer makes a document without a tree.

namespace lvp::bench {

namespace {

const xmlChar* bytes(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

const char* textOf(const xmlChar* text) {
    return text ? reinterpret_cast<const char*>(text) : "";
}

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
    ~Tree() { close(); }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    void create(const std::filesystem::path& file) {
        _file = file;
        _document = xmlNewDoc(bytes("1.0"));
        _document->dict = xmlDictCreate();
        _top = node(kTopElement, kTop.data());
        xmlDocSetRootElement(_document, _top);
    }
    void item(const std::string& name) {
        _item = node(kItemElement, name.c_str());
        xmlAddChild(_top, _item);
    }
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
    void child(const tName& name) { xmlAddChild(_top, node(kTopElement, name.c_str())); }

    void open(const std::filesystem::path& file, tAccess) {
        _file = file;
        load(file);
    }
    void flush() {
        save(_file);
        makeDurable(_file);
    }
    void close() {
        if (_document) xmlFreeDoc(std::exchange(_document, nullptr));
        _items.clear();
    }

    void load(const std::filesystem::path& file) {
        constexpr int kOptions = XML_PARSE_NOBLANKS | XML_PARSE_COMPACT | XML_PARSE_HUGE | XML_PARSE_NONET;
        _document = xmlReadFile(file.c_str(), nullptr, kOptions);
        require(_document, "the document is not read");
        _top = xmlDocGetRootElement(_document);
        if (std::string_view(textOf(_top->name)) == "root") _top = _top->children;
    }

    void save(const std::filesystem::path& file) {
        require(xmlSaveFileEnc(file.c_str(), _document, "UTF-8") >= 0, "the document is not written");
    }

    void readTree(Checksum& sum) {
        for (xmlNodePtr item = _top->children; item; item = item->next) {
            for (xmlNodePtr property = item->children; property; property = property->next) take(property, sum);
        }
    }

    /// It finds a name by comparing those of all children, so a client keeps the items by their names itself.
    void index() {
        for (xmlNodePtr item = _top->children; item; item = item->next) _items.emplace(nameOf(item), item);
    }

    void read(const tPath& path, Checksum& sum) { take(find(_items.at(path.item), path.property), sum); }

    void overwrite(const tPath& path, double value) {
        std::array<char, 40> text;
        *printReal(text.data(), value, tDigits::kAll) = 0;
        xmlNodePtr const property = find(_items.at(path.item), path.property);
        require(property, "a property was not found");
        xmlNodeSetContent(property->children, bytes(text.data()));
    }

    bool find(const tName& name) { return find(_top, name) != nullptr; }

    std::size_t walk() {
        std::size_t length = 0;
        for (xmlNodePtr child = _top->children; child; child = child->next) {
            length += std::string_view(nameOf(child)).size();
        }
        return length;
    }

protected:
    /// An attribute's value, read in place: xmlGetProp would copy it.
    static const char* attribute(xmlNodePtr node, const char* name) {
        for (xmlAttrPtr attribute = node->properties; attribute; attribute = attribute->next) {
            if (std::string_view(textOf(attribute->name)) != name) continue;
            return attribute->children ? textOf(attribute->children->content) : "";
        }
        return "";
    }

    static const char* nameOf(xmlNodePtr node) { return attribute(node, kNameAttribute); }

    static xmlNodePtr find(xmlNodePtr parent, std::string_view name) {
        for (xmlNodePtr child = parent->children; child; child = child->next) {
            if (name == nameOf(child)) return child;
        }
        return nullptr;
    }

    static void take(xmlNodePtr property, Checksum& sum) {
        require(property && readElement(textOf(property->name), nameOf(property), attribute(property, kUnitAttribute),
                                        property->children ? textOf(property->children->content) : "", sum),
                "an element is no property");
    }

    xmlNodePtr top() const { return _top; }

private:
    xmlNodePtr node(const char* element, const char* name) {
        xmlNodePtr const node = xmlNewDocNode(_document, nullptr, bytes(element), nullptr);
        xmlNewProp(node, bytes(kNameAttribute), bytes(name));
        return node;
    }

    void addProperty() {
        xmlNodePtr const property = node(_element.kind(), _element.name());
        if (*_element.unit()) xmlNewProp(property, bytes(kUnitAttribute), bytes(_element.unit()));
        xmlAddChild(property, xmlNewDocText(_document, bytes(_element.value())));
        xmlAddChild(_item, property);
    }

    std::filesystem::path _file;
    xmlDocPtr _document = nullptr;
    xmlNodePtr _top = nullptr;
    xmlNodePtr _item = nullptr;
    Element _element;
    std::unordered_map<std::string, xmlNodePtr> _items;
};

/// Without an index of the client's: all items before the one that is looked for are compared.
class SearchedTree : public Tree {
public:
    void index() {}
    void read(const tPath& path, Checksum& sum) { take(find(find(top(), path.item), path.property), sum); }
};

void verifyDocument(const std::filesystem::path& document, unsigned int properties) {
    Tree tree;
    tree.load(document);
    Checksum sum;
    tree.readTree(sum);
    verify(sum, checksumOfDocument(properties));
}

/// W6: writes a tree that is there already, in the form of our documents.
void writeDocument(const Case& run) {
    const auto document = run.scratch("xml");
    Tree tree(tDigits::kSeven);
    build(tree, document, run.count);
    const Measure measure = measured([&] { tree.save(document); });
    run.report("W6", run.count, measure, bytesOf(document));
    verifyDocument(document, run.count);
    std::filesystem::remove(document);
}

/// Writes each property as it is given, by the text writer. A sink (see `give`).
class Writer {
public:
    explicit Writer(const std::filesystem::path& file) : _writer(xmlNewTextWriterFilename(file.c_str(), 0)) {
        require(_writer && xmlTextWriterStartDocument(_writer, nullptr, "UTF-8", nullptr) >= 0,
                "the document is not written");
    }
    ~Writer() { xmlFreeTextWriter(_writer); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void begin(const char* element, const char* name) {
        xmlTextWriterStartElement(_writer, bytes(element));
        xmlTextWriterWriteAttribute(_writer, bytes(kNameAttribute), bytes(name));
    }
    void end() { require(xmlTextWriterEndElement(_writer) >= 0, "the document is not written"); }
    void finish() { require(xmlTextWriterEndDocument(_writer) >= 0, "the document is not written"); }

    void real(std::string_view name, std::string_view unit, double value) {
        _element.real(name, unit, value);
        add();
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        _element.vector(name, unit, value);
        add();
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        _element.text(name, unit, value);
        add();
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        _element.integers(name, unit, value);
        add();
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        _element.flag(name, unit, value);
        add();
    }

private:
    void add() {
        begin(_element.kind(), _element.name());
        if (*_element.unit()) xmlTextWriterWriteAttribute(_writer, bytes(kUnitAttribute), bytes(_element.unit()));
        xmlTextWriterWriteString(_writer, bytes(_element.value()));
        end();
    }

    xmlTextWriterPtr _writer;
    Element _element{tDigits::kSeven};
};

/// W6 without a tree: the values go straight into the writer.
void writeDirectly(const Case& run) {
    const auto document = run.scratch("xml");
    const Measure measure = measured([&] {
        Writer writer(document);
        writer.begin(kTopElement, kTop.data());
        for (unsigned int item = 0; item < run.count / kPropertiesOfItem; ++item) {
            writer.begin(kItemElement, itemName(item).c_str());
            giveItem(item, writer);
            writer.end();
        }
        writer.end();
        writer.finish();
    });
    run.report("W6", run.count, measure, bytesOf(document));
    verifyDocument(document, run.count);
    std::filesystem::remove(document);
}

/// W7: reads the document; for "libxml2_values" all values are made numbers, too.
void readDocument(const Case& run) {
    Tree tree;
    Checksum sum;
    const bool values = run.subject == "libxml2_values";
    const Measure measure = measured([&] {
        tree.load(run.document());
        if (values) tree.readTree(sum);
    });
    run.report("W7", run.count, measure, bytesOf(run.document()));
    if (!values) tree.readTree(sum);
    verify(sum, checksumOfDocument(run.count));
}

constexpr Row kRows[] = {
    {"libxml2", "W1", buildTree<Tree>},
    {"libxml2", "W2", readTree<Tree>},
    {"libxml2", "W3", lookUp<Tree>},
    {"libxml2", "W4", editTree<Tree>},
    {"libxml2", "W4d", editTree<Tree>},
    {"libxml2", "W5", wideSet<Tree>},
    {"libxml2", "W6", writeDocument},
    {"libxml2", "W7", readDocument},
    {"libxml2_search", "W3", lookUp<SearchedTree>},
    {"libxml2_values", "W7", readDocument},
    {"libxml2_writer", "W6", writeDirectly},
};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
