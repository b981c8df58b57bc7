// Documents: one with faults is read, each fault is told with its place, and what was read is written again. In memory
// alone; core::io has the same for files.
#include <lumivard/platform/core.h>
#include <lumivard/platform/data.h>
#include <lumivard/platform/data/easy.h>
#include <lumivard/platform/stores.h>

#include <iostream>

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using format::xml::IXMLFrontEnd;

namespace {

const char* const kDocument = R"(<root version="1" name="sample">
  <group name="carport">
    <double name="height" units="Meter">2.8</double>
    <double units="Meter">3.1</double>
    <colour name="post">red</colour>
    <double name="height">3.2</double>
    <double name="width" units="Meter">5.5</double>
  </group>
  <group name="lost">
</root>)";

// [reporter]
/// Prints what is wrong with a document, and counts.
class Reporter final : public IXMLFrontEnd::IErrorReporter {
public:
    void located(unsigned long line, unsigned long column) override {  // comes right before `report`
        std::cout << "line " << line << ", column " << column << ": ";
    }
    void report(const core::string::WideString& message) override {  // costs one element, and the reading goes on
        std::cout << message.string() << '\n';
        ++faults;
    }
    void malformed(const core::string::WideString& message) override {  // ends the reading; what was read stays
        std::cout << "broke off: " << message.string() << '\n';
        ++breaks;
    }

    int faults = 0;
    int breaks = 0;
};
// [reporter]

}  // namespace

int main() {
    // [read]
    const auto store = stores::memory();
    core::io::MemoryReader reader(kDocument);
    Reporter reporter;
    IXMLFrontEnd::parse(store.get(), &reader, nullptr, nullptr, &reporter);
    // [read]
    const auto height = easy::get<double>(store.get(), L"carport.height");
    const auto width = easy::get<double>(store.get(), L"carport.width");
    std::cout << reporter.faults << " faults, " << reporter.breaks << " break; height " << height.value_or(0)
              << ", width " << width.value_or(0) << '\n';

    // [export]
    core::io::MemoryWriter writer;
    IXMLFrontEnd::serialize(store.get(), &writer, nullptr, 0);  // 0: the whole store
    std::cout << writer.bytes() << '\n';
    // [export]
    return reporter.faults == 2 && reporter.breaks == 1 && height == 3.2 && width == 5.5 ? 0 : 1;
}
