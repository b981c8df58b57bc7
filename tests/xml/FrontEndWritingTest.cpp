#include <stdexcept>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::IDataWriter;
using lumivard::platform::store_contract::LoggingStore;

/// A writer that notes what is done with it, and fails when it is told to.
class NotingWriter final : public IDataWriter {
public:
    bool open() override {
        calls += "open ";
        return opens;
    }
    void close() override { calls += "close "; }
    void write(const void* data, unsigned long size) override {
        if (calls.find("write") == std::string::npos) calls += "write ";
        if (writeThrows) throw std::runtime_error("cannot write");
        bytes.append(static_cast<const char*>(data), size);
    }

    bool opens = true;
    bool writeThrows = false;
    std::string calls;
    std::string bytes;
};

class FrontEndWriting : public XmlTest {};
LVP_ON_EACH_STORE(FrontEndWriting);

TEST_P(FrontEndWriting, OpensWritesAndCloses) {
    read("<group name='g'/>");
    NotingWriter writer;
    IXMLFrontEnd::serialize(store(), &writer, nullptr, 0);
    EXPECT_EQ(writer.calls, "open write close ");
    EXPECT_EQ(writer.bytes, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<group name=\"g\"/>");
}

TEST_P(FrontEndWriting, DoesNotLookAtWhatTheOpeningSays) {
    read("<group name='g'/>");
    NotingWriter writer;
    writer.opens = false;
    IXMLFrontEnd::serialize(store(), &writer, nullptr, 0);
    EXPECT_EQ(writer.calls, "open write close ");
}

TEST_P(FrontEndWriting, LetsThroughWhatTheWriterThrowsAndDoesNotCloseIt) {
    read("<group name='g'><group name='h'/></group>");
    NotingWriter writer;
    writer.writeThrows = true;
    EXPECT_THROW(IXMLFrontEnd::serialize(store(), &writer, nullptr, 0), std::runtime_error);
    EXPECT_EQ(writer.calls, "open write ");
    EXPECT_EQ(stored::refs(store(), 0), 0u);
    EXPECT_EQ(stored::refs(store(), at(L"h")), 0u);
}

TEST_P(FrontEndWriting, DoesNothingWithoutAWriter) {
    read("<group name='g'/>");
    LoggingStore log(*store());
    IXMLFrontEnd::serialize(&log, nullptr, nullptr, 0);
    EXPECT_TRUE(log.log().empty());
}

TEST_P(FrontEndWriting, ChangesNothingButCounts) {
    read(
        "<root name='r'><group name='g'><name>n</name><int32 name='a'>1</int32></group><table name='t'>"
        "<default unit='Meter' type='double'/></table></root>");
    LoggingStore log(*store());
    writtenFrom(&log);
    for (const auto call :
         {LoggingStore::tCall::kCreate, LoggingStore::tCall::kAppend, LoggingStore::tCall::kErase,
          LoggingStore::tCall::kFlush, LoggingStore::tCall::kSetVersion, LoggingStore::tCall::kLock}) {
        EXPECT_EQ(log.count(call), 0u);
    }
    EXPECT_TRUE(log.updates(true).empty());
}

}  // namespace
