#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "lumivard/platform/core/io/MemoryReader.h"
#include "lumivard/platform/core/io/MemoryWriter.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/core/xml/XMLParser.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"

namespace {

using namespace lumivard::platform::core;

/// An element with its own text in one piece: enough to see what is lost on the way.
struct Tree {
    std::wstring name;
    std::vector<std::wstring> values;
    std::wstring text;
    std::vector<Tree> children;

    bool operator==(const Tree&) const = default;
};

void write(xml::XMLSerializer& serializer, const Tree& tree) {
    serializer.startElement(tree.name.c_str(), nullptr);
    for (unsigned long i = 0; i < tree.values.size(); ++i)
        serializer.addAttribute((L"a" + std::to_wstring(i)).c_str(), tree.values[i].c_str(), nullptr);
    serializer.addCharacterData(tree.text.c_str());
    for (const Tree& child : tree.children) write(serializer, child);
    serializer.endElement(false);
}

std::string written(const Tree& tree) {
    LVPUUID id;
    io::MemoryWriter writer;
    xml::XMLSerializer serializer(id);
    serializer.attach(&writer);
    serializer.emitXMLHeader();
    write(serializer, tree);
    serializer.detach();
    return writer.bytes();
}

/// Builds the tree of a document under one root.
class TreeBuilder final : public xml::XMLCallback {
public:
    void notifyStartElement(const char* name, const char** attributes) override {
        Tree& tree = _open.back()->children.emplace_back();
        tree.name = string::StringAlgorithm::UTF8Decode(name);
        for (; *attributes; attributes += 2) tree.values.push_back(string::StringAlgorithm::UTF8Decode(attributes[1]));
        _open.push_back(&tree);
        _texts.emplace_back();
    }
    void notifyEndElement(const char*) override {
        _open.back()->text = string::StringAlgorithm::UTF8Decode(_texts.back().c_str());
        _open.pop_back();
        _texts.pop_back();
    }
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char* data, int length) override {
        _texts.back().append(data, static_cast<unsigned long>(length));
    }

    Tree root;

private:
    std::vector<Tree*> _open{&root};
    std::vector<std::string> _texts;
};

Tree read(const std::string& document) {
    io::MemoryReader reader(document);
    reader.open();
    TreeBuilder builder;
    xml::XMLParser(&builder, nullptr).parseDocument(&reader);
    return builder.root.children.at(0);
}

/// A text in which what matters to XML is as frequent as all other characters together.
rc::Gen<std::wstring> anyText() {
    const auto special = rc::gen::elementOf(std::wstring(L"<>&\"'\t\n\r ]-?/=;#!\x7F\x85\x2028\xFEFF"));
    const auto other =
        rc::gen::map(rc::gen::inRange(1, 0x110100), [](int number) { return static_cast<wchar_t>(number); });
    return rc::gen::container<std::wstring>(rc::gen::oneOf(special, other));
}

/// The text with what XML cannot carry replaced, as the serializer promises.
std::wstring carried(std::wstring text) {
    for (wchar_t& character : text) {
        const auto number = static_cast<char32_t>(character);
        const bool control = number < 0x20 && number != '\t' && number != '\n' && number != '\r';
        const bool surrogate = number >= 0xD800 && number <= 0xDFFF;
        if (control || surrogate || number == 0xFFFE || number == 0xFFFF || number > 0x10FFFF) character = 0xFFFD;
    }
    return text;
}

RC_GTEST_PROP(XMLRoundTrip, KeepsTextsAndAttributes, ()) {
    const auto texts = *rc::gen::container<std::vector<std::wstring>>(anyText());
    const auto values = *rc::gen::container<std::vector<std::wstring>>(anyText());
    Tree tree{L"tree", {}, L"", {}};
    Tree expected = tree;
    for (unsigned long i = 0; i < texts.size(); ++i) {
        Tree child{L"child" + std::to_wstring(i), {}, texts[i], {}};
        Tree kept{child.name, {}, carried(texts[i]), {}};
        if (i == 0) {
            for (const auto& value : values) {
                child.values.push_back(value);
                kept.values.push_back(carried(value));
            }
        }
        tree.children.push_back(std::move(child));
        expected.children.push_back(std::move(kept));
    }
    RC_ASSERT(read(written(tree)) == expected);
}

RC_GTEST_PROP(XMLRoundTrip, IsStableFromTheFirstReadingOn, ()) {
    const Tree tree{L"tree", {*anyText()}, *anyText(), {}};
    const std::string document = written(read(written(tree)));
    RC_ASSERT(written(read(document)) == document);
}

TEST(XMLRoundTrip, KeepsTextLongerThanABlockWithReferencesAcrossItsEnds) {
    std::wstring text;
    for (int i = 0; i < 100000; ++i) text += L"<\r\xE9&\x1F600";
    const Tree tree{L"tree", {text}, text, {}};
    EXPECT_TRUE(read(written(tree)) == tree);
}

}  // namespace
