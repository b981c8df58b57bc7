#include "tests/fault/calls/Operation.h"

namespace lumivard::platform::test_support::fault {

namespace {

using core::io::MemoryReader;
using core::io::MemoryWriter;
using data::format::xml::IXMLFrontEnd;

/// One of each kind of element, for a container that is there and for a store without any record.
constexpr const char* kContent =
    "<name locale='en'>Arm</name>"
    "<node name='n' class='schemas.Pose'><name locale='de'>Knoten</name><double name='x' "
    "units='Meter'>3</double></node>"
    "<table name='t' class='schemas.Door'><default unit='Meter' type='double'/><int32 name='height'>4</int32></table>"
    "<string name='s'><val>one</val><val>two</val></string><int16 name='i' dim='3'>1 2</int16>"
    "<vector3 name='v'>1 2 3</vector3><binary name='b'>SGVsbG8=</binary><uri name='u' uri='file:x'/>"
    "<struct name='p' type='schemas.Pose'>1 2 3 4</struct><link name='l' to='top.group'/><unknown/>";
constexpr const wchar_t* kNames[] = {L"n", L"t", L"s", L"i", L"v", L"b", L"u", L"p", L"l"};
constexpr const wchar_t* kRead =
    L"main:goal.inner;main:goal.inner.n;main:goal.inner.t";  // all that is read stands in it

/// Keeps what it is told, or at least that it was told, where there is no memory for more.
class Reporter final : public IXMLFrontEnd::IErrorReporter {
public:
    void report(const WideString& message) override { _told += test_support::text(message) + L';'; }
    void malformed(const WideString& message) override {
        _brokeOff = true;
        try {
            _why = message;
        } catch (const std::bad_alloc&) {
        }
    }
    std::wstring told() const { return _brokeOff ? L"broke off: " + test_support::text(_why) : _told; }

private:
    std::wstring _told;
    WideString _why;
    bool _brokeOff = false;
};

std::wstring parseIntoAContainer(World& w) {
    MemoryReader reader(std::string("<group name='any'>") + kContent + "</group>");
    Reporter reporter;
    IXMLFrontEnd::parse(w.inner.get(), &reader, w.locator.get(), nullptr, &reporter);
    return reporter.told();
}

/// What was read by half has to go before it can be read again.
std::wstring parseAnew(World& w) {
    for (const wchar_t* name : kNames) w.inner->destroy(name);
    return parseIntoAContainer(w);
}

std::wstring parseIntoAStore(World& w) {
    MemoryReader reader(std::string("<root name='r' version='7'><group name='robot'>") + kContent + "</group></root>");
    Reporter reporter;
    IXMLFrontEnd::parse(w.stores[kEmpty], &reader, w.locator.get(), nullptr, &reporter);
    return reporter.told();
}

std::wstring serialize(World& w) {
    MemoryWriter writer;
    IXMLFrontEnd::serialize(w.main(), &writer, w.locator.get(), 0);
    return {writer.bytes().begin(), writer.bytes().end()};
}

}  // namespace

std::vector<tOperation> documentOperations() {
    return {
        {"IXMLFrontEnd::parse(structure::IContainer* container, core::io::IDataReader* reader, "
         "metadata::ISchemaLocator* locator, metadata::IURIResolver* resolver, IErrorReporter* reporter)",
         "ParseIntoAContainer", kRead, &parseIntoAContainer, nullptr, &parseAnew},
        {"IXMLFrontEnd::parse(IDataStore* store, core::io::IDataReader* reader, metadata::ISchemaLocator* locator, "
         "metadata::IURIResolver* resolver, IErrorReporter* reporter)",
         "ParseIntoAStore", L"empty:", &parseIntoAStore, nullptr, nullptr, tOperation::kTold},
        {"IXMLFrontEnd::serialize(IDataStore* store, core::io::IDataWriter* writer, metadata::ISchemaLocator* locator, "
         "unsigned int offset)",
         "Serialize", nullptr, &serialize},
    };
}

}  // namespace lumivard::platform::test_support::fault
