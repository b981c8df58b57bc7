#include <exception>

#include "container/ContainerImpl.h"
#include "lumivard/platform/core/LVPUUID.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "xml/XMLParsingLogic.h"
#include "xml/XMLRenderingLogic.h"

namespace lumivard::platform::data::format::xml {

using core::io::IDataReader;
using core::io::IDataWriter;
using core::string::StringAlgorithm;

namespace {

/// Runs `action` and gives what it threw; null when it threw nothing.
template <class Action>
std::exception_ptr attempt(Action action) {
    try {
        action();
        return nullptr;
    } catch (...) {
        return std::current_exception();
    }
}

std::wstring describe(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const std::exception& exception) {
        return StringAlgorithm::UTF8Decode(exception.what());
    } catch (...) {
        return L"an exception of an unknown kind";
    }
}

/// What was thrown in words; none where the memory does not suffice for them.
WideString messageOf(const std::exception_ptr& thrown) noexcept {
    try {
        return describe(thrown).c_str();
    } catch (...) {
        return {};
    }
}

/// Reads the document of an opened reader and closes that in any case. What was thrown is told to the reporter, when
/// all items are closed, and passes on.
void read(IDataStore* store, Structural::Container* target, IDataReader& reader, metadata::ISchemaLocator* locator,
          IXMLFrontEnd::IErrorReporter* reporter) {
    std::exception_ptr thrown = attempt([&] { XMLParsingLogic(store, target, locator, reporter).parse(reader); });
    const std::exception_ptr thrownByClose = attempt([&] { reader.close(); });
    if (!thrown) thrown = thrownByClose;
    if (!thrown) return;
    if (reporter) reporter->malformed(messageOf(thrown));
    std::rethrow_exception(thrown);
}

}  // namespace

void IXMLFrontEnd::parse(IDataStore* store, IDataReader* reader, metadata::ISchemaLocator* locator,
                         metadata::IURIResolver*, IErrorReporter* reporter) {
    // What is thrown was told to the reporter and goes no further.
    if (reader && reader->open()) attempt([&] { read(store, nullptr, *reader, locator, reporter); });
    store->flush();
}

void IXMLFrontEnd::parse(structure::IContainer* container, IDataReader* reader, metadata::ISchemaLocator* locator,
                         metadata::IURIResolver*, IErrorReporter* reporter) {
    auto* ours = dynamic_cast<ContainerImpl*>(container);
    if (ours && reader && reader->open()) read(ours->store(), ours->item(), *reader, locator, reporter);
}

void IXMLFrontEnd::serialize(IDataStore* store, IDataWriter* writer, metadata::ISchemaLocator* locator,
                             unsigned int offset) {
    if (!writer) return;
    core::LVPUUID id;
    core::xml::XMLSerializer serializer(id);
    writer->open();
    serializer.attach(writer);
    XMLRenderingLogic(store, serializer, locator, offset);
    serializer.detach();
    writer->close();
}

}  // namespace lumivard::platform::data::format::xml
