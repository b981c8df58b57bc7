#include <expat.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <exception>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Document.h"
#include "bench/workloads/Program.h"

// expat, which is a parser and holds nothing: W7 with callbacks that do nothing ("expat"), and with such as scan the
// values (std::from_chars) and keep none of them ("expat_values").

namespace lvp::bench {

namespace {

/// Follows a document and adds its properties to a sum.
class Values {
public:
    void start(const char* element, const char** attributes) {
        _text.clear();
        _unit.clear();
        for (; *attributes; attributes += 2) {
            if (std::strcmp(attributes[0], kNameAttribute) == 0) _name = attributes[1];
            if (std::strcmp(attributes[0], kUnitAttribute) == 0) _unit = attributes[1];
        }
        _leaf = element;
    }
    void text(const char* characters, int length) { _text.append(characters, static_cast<std::size_t>(length)); }
    void end(const char* element) {
        // The end of an element that others stood in comes after theirs.
        if (_leaf == element) readElement(element, _name, _unit, _text, _sum);
        _leaf.clear();
    }
    const Checksum& sum() const { return _sum; }

private:
    std::string _leaf;
    std::string _name;
    std::string _unit;
    std::string _text;
    Checksum _sum;
};

void XMLCALL startNothing(void*, const char*, const char**) {}
void XMLCALL endNothing(void*, const char*) {}
void XMLCALL textNothing(void*, const char*, int) {}

void XMLCALL startValue(void* values, const char* element, const char** attributes) {
    static_cast<Values*>(values)->start(element, attributes);
}
void XMLCALL endValue(void* values, const char* element) {
    static_cast<Values*>(values)->end(element);
}
void XMLCALL textValue(void* values, const char* characters, int length) {
    static_cast<Values*>(values)->text(characters, length);
}

using tParser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

void parse(XML_Parser parser, const std::filesystem::path& document) {
    constexpr int kChunk = 1 << 16;
    const int file = ::open(document.c_str(), O_RDONLY | O_CLOEXEC);
    require(file >= 0, "the document is not opened");
    ssize_t count = 0;
    do {
        count = ::read(file, XML_GetBuffer(parser, kChunk), kChunk);
        if (count < 0 || XML_ParseBuffer(parser, static_cast<int>(count), count == 0) != XML_STATUS_OK) {
            ::close(file);
            throw std::runtime_error("the document is not read");
        }
    } while (count > 0);
    ::close(file);
}

void readDocument(const Case& run) {
    const bool wanted = run.subject == "expat_values";
    Values values;
    const Measure measure = measured([&] {
        const tParser parser(XML_ParserCreate(nullptr), XML_ParserFree);
        XML_SetUserData(parser.get(), &values);
        XML_SetElementHandler(parser.get(), wanted ? startValue : startNothing, wanted ? endValue : endNothing);
        XML_SetCharacterDataHandler(parser.get(), wanted ? textValue : textNothing);
        parse(parser.get(), run.document());
    });
    run.report("W7", run.count, measure, bytesOf(run.document()));
    if (wanted) verify(values.sum(), checksumOfDocument(run.count));
}

constexpr Row kRows[] = {{"expat", "W7", readDocument}, {"expat_values", "W7", readDocument}};

}  // namespace

}  // namespace lvp::bench

int main(int argc, char** argv) {
    return lvp::bench::runProgram(argc, argv, lvp::bench::kRows);
}
