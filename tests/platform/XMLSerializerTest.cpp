#include "lumivard/platform/core/xml/XMLSerializer.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "lumivard/platform/core/io/MemoryWriter.h"

namespace {

using lumivard::platform::core::LVPUUID;
using lumivard::platform::core::io::IDataWriter;
using lumivard::platform::core::io::MemoryWriter;
using lumivard::platform::core::xml::XMLSerializer;

/// What `write` makes the serializer write.
std::string written(const std::function<void(XMLSerializer&)>& write) {
    LVPUUID id;
    MemoryWriter writer;
    XMLSerializer serializer(id);
    serializer.attach(&writer);
    write(serializer);
    serializer.detach();
    return writer.bytes();
}

std::string text(const wchar_t* text) {
    return written([&](XMLSerializer& xml) {
        xml.startElement(L"x", nullptr);
        xml.addCharacterData(text);
        xml.endElement(false);
    });
}

std::string attribute(const wchar_t* value) {
    return written([&](XMLSerializer& xml) {
        xml.startElement(L"x", nullptr);
        xml.addAttribute(L"a", value, nullptr);
        xml.endElement(false);
    });
}

TEST(XMLSerializer, HeaderIsTheDeclarationOnALineOfItsOwn) {
    EXPECT_EQ(written([](XMLSerializer& xml) { xml.emitXMLHeader(); }), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
}

TEST(XMLSerializer, InventsNoWhiteSpace) {
    const std::string document = written([](XMLSerializer& xml) {
        xml.emitXMLHeader();
        xml.startElement(L"a", nullptr);
        xml.startElement(L"b", nullptr);
        xml.endElement(false);
        xml.startElement(L"c", nullptr);
        xml.addCharacterData(L"t");
        xml.endElement(false);
        xml.endElement(false);
    });
    EXPECT_EQ(document, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a><b/><c>t</c></a>");
}

TEST(XMLSerializer, AnElementWithoutContentIsOneTag) {
    EXPECT_EQ(attribute(L"v"), "<x a=\"v\"/>");
    EXPECT_EQ(text(L""), "<x/>");
    EXPECT_EQ(text(nullptr), "<x/>");
}

TEST(XMLSerializer, PiecesOfTextJoin) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  xml.startElement(L"x", nullptr);
                  xml.addCharacterData(L"a");
                  xml.addCharacterData(L"");
                  xml.addCharacterData(L"b");
                  xml.startElement(L"y", nullptr);
                  xml.endElement(false);
                  xml.addCharacterData(L"c");
                  xml.endElement(false);
              }),
              "<x>ab<y/>c</x>");
}

TEST(XMLSerializer, AttributesKeepTheirOrder) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  xml.startElement(L"x", nullptr);
                  xml.addAttribute(L"b", L"1", nullptr);
                  xml.addAttribute(L"a", L"", nullptr);
                  xml.endElement(false);
              }),
              "<x b=\"1\" a=\"\"/>");
}

TEST(XMLSerializer, ANullValueLeavesTheAttributeOut) {
    EXPECT_EQ(attribute(nullptr), "<x/>");
}

TEST(XMLSerializer, ExtrasAndFlagAreNotUsed) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  xml.startElement(L"x", L"e");
                  xml.addAttribute(L"a", L"v", L"e");
                  xml.endElement(true);
              }),
              "<x a=\"v\"/>");
}

TEST(XMLSerializer, EscapesText) {
    EXPECT_EQ(text(L"<a & \"b\" 'c'>]]>"), "<x>&lt;a &amp; \"b\" 'c'&gt;]]&gt;</x>");
    EXPECT_EQ(text(L"\t\n\r"), "<x>\t\n&#13;</x>");
}

TEST(XMLSerializer, EscapesAttributes) {
    EXPECT_EQ(attribute(L"<a & \"b\" 'c'>"), "<x a=\"&lt;a &amp; &quot;b&quot; 'c'>\"/>");
    EXPECT_EQ(attribute(L"\t\n\r "), "<x a=\"&#9;&#10;&#13; \"/>");
}

TEST(XMLSerializer, WritesUTF8) {
    EXPECT_EQ(
        text(L"\x7F\x85\xE9\x2028\xD7FF\xE000\xFFFD\x10000\x10FFFF"),
        "<x>\x7F\xC2\x85\xC3\xA9\xE2\x80\xA8\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xBF\xBF</x>");
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  xml.startElement(L"\xE9", nullptr);
                  xml.addAttribute(L"\xE8", L"\xEA", nullptr);
                  xml.endElement(false);
              }),
              "<\xC3\xA9 \xC3\xA8=\"\xC3\xAA\"/>");
}

TEST(XMLSerializer, ReplacesWhatXMLCannotCarry) {
    for (const unsigned character : {0x1u, 0x8u, 0xBu, 0xCu, 0xEu, 0x1Fu, 0xD800u, 0xDFFFu, 0xFFFEu, 0xFFFFu, 0x110000u,
                                     0x80000000u, 0xFFFFFFFFu}) {
        const wchar_t odd[] = {static_cast<wchar_t>(character), 0};
        EXPECT_EQ(text(odd), "<x>\xEF\xBF\xBD</x>") << character;
        EXPECT_EQ(attribute(odd), "<x a=\"\xEF\xBF\xBD\"/>") << character;
    }
}

/// Notes the size of each block and the whole.
class BlockWriter final : public IDataWriter {
public:
    bool open() override { return true; }
    void close() override {}
    void write(const void* data, unsigned long size) override {
        sizes.push_back(size);
        bytes.append(static_cast<const char*>(data), size);
    }

    std::vector<unsigned long> sizes;
    std::string bytes;
};

TEST(XMLSerializer, HandsLongOutputOnInBlocks) {
    LVPUUID id;
    BlockWriter writer;
    XMLSerializer serializer(id);
    serializer.attach(&writer);
    serializer.startElement(L"x", nullptr);
    EXPECT_TRUE(writer.sizes.empty());
    serializer.addAttribute(L"a", std::wstring(200000, L'v').c_str(), nullptr);
    serializer.addCharacterData(std::wstring(200000, L't').c_str());
    serializer.endElement(false);
    serializer.detach();
    EXPECT_EQ(writer.bytes, "<x a=\"" + std::string(200000, 'v') + "\">" + std::string(200000, 't') + "</x>");
    ASSERT_GT(writer.sizes.size(), 4u);
    for (const unsigned long size : writer.sizes) EXPECT_LT(size, 66000u);
}

TEST(XMLSerializer, DetachHandsOverWhatIsLeftOnce) {
    LVPUUID id;
    BlockWriter writer;
    XMLSerializer serializer(id);
    serializer.attach(&writer);
    serializer.startElement(L"x", nullptr);
    serializer.detach();
    serializer.detach();
    EXPECT_EQ(writer.bytes, "<x>");
    EXPECT_EQ(writer.sizes.size(), 1u);
}

TEST(XMLSerializer, AttachBeginsANewDocument) {
    LVPUUID id;
    MemoryWriter one;
    MemoryWriter other;
    XMLSerializer serializer(id);
    serializer.attach(&one);
    serializer.startElement(L"x", nullptr);
    serializer.attach(&other);
    EXPECT_THROW(serializer.endElement(false), std::logic_error);
    serializer.startElement(L"y", nullptr);
    serializer.endElement(false);
    serializer.detach();
    EXPECT_EQ(one.bytes(), "");
    EXPECT_EQ(other.bytes(), "<y/>");
}

TEST(XMLSerializer, RefusesToEndWhatIsNotOpen) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  EXPECT_THROW(xml.endElement(false), std::logic_error);
                  xml.startElement(L"x", nullptr);
                  xml.endElement(false);
                  EXPECT_THROW(xml.endElement(false), std::logic_error);
              }),
              "<x/>");
}

TEST(XMLSerializer, RefusesAnAttributeAfterContent) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  EXPECT_THROW(xml.addAttribute(L"a", L"v", nullptr), std::logic_error);
                  xml.startElement(L"x", nullptr);
                  xml.addCharacterData(L"t");
                  EXPECT_THROW(xml.addAttribute(L"a", L"v", nullptr), std::logic_error);
                  xml.startElement(L"y", nullptr);
                  xml.endElement(false);
                  EXPECT_THROW(xml.addAttribute(L"a", nullptr, nullptr), std::logic_error);
                  xml.endElement(false);
              }),
              "<x>t<y/></x>");
}

TEST(XMLSerializer, AnEmptyTextIsNoContentAndLetsAttributesFollow) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  xml.startElement(L"x", nullptr);
                  xml.addCharacterData(L"");
                  xml.addAttribute(L"a", L"v", nullptr);
                  xml.endElement(false);
              }),
              "<x a=\"v\"/>");
}

TEST(XMLSerializer, RefusesTextAndHeaderOutOfPlace) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  EXPECT_THROW(xml.addCharacterData(L"t"), std::logic_error);
                  xml.startElement(L"x", nullptr);
                  EXPECT_THROW(xml.emitXMLHeader(), std::logic_error);
                  xml.endElement(false);
                  EXPECT_THROW(xml.addCharacterData(L"t"), std::logic_error);
              }),
              "<x/>");
}

TEST(XMLSerializer, RefusesToWriteWithoutAWriter) {
    LVPUUID id;
    XMLSerializer serializer(id);
    EXPECT_THROW(serializer.emitXMLHeader(), std::logic_error);
    EXPECT_THROW(serializer.startElement(L"x", nullptr), std::logic_error);
    EXPECT_THROW(serializer.addAttribute(L"a", L"v", nullptr), std::logic_error);
    EXPECT_THROW(serializer.addCharacterData(L"t"), std::logic_error);
    EXPECT_THROW(serializer.endElement(false), std::logic_error);
    EXPECT_NO_THROW(serializer.detach());
}

class FailingWriter final : public IDataWriter {
public:
    bool open() override { return true; }
    void close() override {}
    void write(const void*, unsigned long) override { throw std::runtime_error("full"); }
};

TEST(XMLSerializer, LetsExceptionsOfTheWriterPass) {
    LVPUUID id;
    FailingWriter writer;
    XMLSerializer serializer(id);
    serializer.attach(&writer);
    serializer.startElement(L"x", nullptr);
    EXPECT_THROW(serializer.addCharacterData(std::wstring(100000, L't').c_str()), std::runtime_error);
    EXPECT_THROW(serializer.detach(), std::runtime_error);
    EXPECT_NO_THROW(serializer.detach());
}

TEST(XMLSerializer, WritesElementsAMillionDeep) {
    constexpr int kDepth = 1000000;
    const std::string document = written([](XMLSerializer& xml) {
        for (int i = 0; i < kDepth; ++i) xml.startElement(L"x", nullptr);
        for (int i = 0; i < kDepth; ++i) xml.endElement(false);
    });
    EXPECT_EQ(document.size(), (kDepth - 1) * 7ul + 4);
    EXPECT_EQ(document.substr((kDepth - 1) * 3ul, 8), "<x/></x>");
}

TEST(XMLSerializer, WritesViewsLikeTextsThatEndInAZero) {
    const std::wstring odd = L"a<b>&\"c'\t\n\r\x1\xe4\x20ac\x1f600\xd800\xffff]]>";
    const std::string wide = written([&](XMLSerializer& xml) {
        xml.startElement(L"x", nullptr);
        xml.addAttribute(L"a", odd.c_str(), nullptr);
        xml.addCharacterData(odd.c_str());
        xml.startElement(L"y", nullptr);
        xml.endElement(false);
        xml.endElement(false);
    });
    const std::string views = written([&](XMLSerializer& xml) {
        xml.startElement(std::string_view("xyz").substr(0, 1));
        xml.addAttribute("a", odd);
        xml.addCharacterData(std::wstring_view(odd + L"zzz").substr(0, odd.size()));
        xml.startElement("y");
        xml.endElement(false);
        xml.endElement(false);
    });
    EXPECT_EQ(views, wide);
}

TEST(XMLSerializer, WritesNarrowTextAsItIs) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  xml.startElement("x");
                  xml.addAttribute("a", std::string_view("1.5 \xc3\xa4"));
                  xml.addAttribute("b", std::string_view());
                  xml.addCharacterData(std::string_view("2"));
                  xml.addCharacterData(std::string_view(" 3"));
                  xml.endElement(false);
              }),
              "<x a=\"1.5 \xc3\xa4\" b=\"\">2 3</x>");
}

TEST(XMLSerializer, TakesAnEmptyViewForNoContent) {
    EXPECT_EQ(written([](XMLSerializer& xml) {
                  xml.startElement("x");
                  xml.addCharacterData(std::string_view());
                  xml.addCharacterData(std::wstring_view());
                  xml.endElement(false);
              }),
              "<x/>");
}

TEST(XMLSerializer, RefusesViewsOutOfPlace) {
    LVPUUID id;
    XMLSerializer serializer(id);
    EXPECT_THROW(serializer.startElement("x"), std::logic_error);
    EXPECT_THROW(serializer.addAttribute("a", std::string_view("v")), std::logic_error);
    EXPECT_THROW(serializer.addAttribute("a", std::wstring_view(L"v")), std::logic_error);
    EXPECT_THROW(serializer.addCharacterData(std::string_view("t")), std::logic_error);
    EXPECT_THROW(serializer.addCharacterData(std::wstring_view(L"t")), std::logic_error);
}

/// Texts that end at, before and behind the end of a block, where each character takes its most room.
TEST(XMLSerializer, LosesNothingAtTheEndsOfBlocks) {
    for (const std::size_t before : {65'000u, 65'525u, 65'530u, 65'531u, 65'532u, 65'533u, 65'534u, 65'535u, 65'536u}) {
        const std::string plain(before, 'p');
        const std::wstring quotes(2'000, L'"');
        std::string escaped;
        for (std::size_t i = 0; i < quotes.size(); ++i) escaped += "&quot;";
        EXPECT_EQ(written([&](XMLSerializer& xml) {
                      xml.startElement("x");
                      xml.addCharacterData(std::string_view(plain));
                      xml.startElement("y");
                      xml.addAttribute("a", quotes);
                      xml.addCharacterData(std::string_view(plain + plain + plain));
                      xml.endElement(false);
                      xml.endElement(false);
                  }),
                  "<x>" + plain + "<y a=\"" + escaped + "\">" + plain + plain + plain + "</y></x>");
    }
}

}  // namespace
