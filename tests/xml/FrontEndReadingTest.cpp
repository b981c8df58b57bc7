#include <gmock/gmock.h>

#include <stdexcept>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::IDataReader;
using lumivard::platform::core::io::MemoryReader;
using lumivard::platform::data::structure::IContainerFrontEnd;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::ForwardingStore;
using lumivard::platform::store_contract::LoggingStore;
using testing::ElementsAre;
using testing::StartsWith;
using tCall = LoggingStore::tCall;

/// A reader that notes what is done with it, and fails where it is told to.
class NotingReader final : public IDataReader {
public:
    explicit NotingReader(std::string bytes) : _reader(std::move(bytes)) {}

    bool open() override {
        calls.push_back("open");
        if (openThrows) throw std::runtime_error("cannot open");
        return opens && _reader.open();
    }
    void close() override {
        calls.push_back("close");
        if (closeThrows) throw std::runtime_error("cannot close");
    }
    unsigned long read(void* buffer, unsigned long size) override {
        const unsigned long count = _reader.read(buffer, size);
        if (count == 0 && endThrows) throw std::runtime_error("cannot read");
        return count;
    }

    bool opens = true;
    bool openThrows = false;
    bool endThrows = false;
    bool closeThrows = false;
    std::vector<std::string> calls;

private:
    MemoryReader _reader;
};

/// A whole document, and one that breaks off with items open in it.
const char* const kWhole = "<root name='r'><group name='g'><name>n</name></group></root>";
const char* const kBroken =
    "<root name='r'>\n<group name='g'><name>n</name><int32 name='a'>1</int32><table name='t'></group>";
const char* const kBrokenWhere = "line 2, column 74: mismatched tag";
const char* const kBrokenTree =
    "<root version=\"0\" name=\"r\"><group name=\"g\"><name locale=\"en-us\">n</name><int32 name=\"a\">1</int32>"
    "<table name=\"t\"/></group></root>";

/// Reading into a store: what becomes of the reader, the store and what is thrown.
class ReadingIntoAStore : public XmlTest {
protected:
    ReadingIntoAStore() : log(*store()) {}

    void parse(IDataReader* reader) { IXMLFrontEnd::parse(&log, reader, nullptr, nullptr, &reporter); }

    /// That the store was flushed once, and that this was the last call.
    void expectFlushedAtTheEnd() {
        EXPECT_EQ(log.count(tCall::kFlush), 1u);
        EXPECT_EQ(log.log().back().call, tCall::kFlush);
    }

    LoggingStore log;
    Reporter reporter;
};
LVP_ON_EACH_STORE(ReadingIntoAStore);

TEST_P(ReadingIntoAStore, OpensAndClosesTheReaderAndFlushesAtTheEnd) {
    NotingReader reader(kWhole);
    parse(&reader);
    EXPECT_EQ(reader.calls, (std::vector<std::string>{"open", "close"}));
    expectFlushedAtTheEnd();
    EXPECT_EQ(log.count(tCall::kLock), 0u);
}

TEST_P(ReadingIntoAStore, FlushesAReaderThatDoesNotOpenToo) {
    NotingReader reader(kWhole);
    reader.opens = false;
    parse(&reader);
    EXPECT_EQ(reader.calls, std::vector<std::string>{"open"});
    EXPECT_EQ(store()->extent(), 0u);
    EXPECT_EQ(reporter.broken, kNone);
    expectFlushedAtTheEnd();
}

TEST_P(ReadingIntoAStore, FlushesWithoutAReader) {
    parse(nullptr);
    expectFlushedAtTheEnd();
}

TEST_P(ReadingIntoAStore, TellsWhereADocumentBreaksOffAndKeepsWhatWasRead) {
    NotingReader reader(kBroken);
    parse(&reader);
    EXPECT_EQ(reporter.broken, tMessages{kBrokenWhere});
    EXPECT_EQ(reporter.messages(), kNone);
    EXPECT_EQ(reader.calls, (std::vector<std::string>{"open", "close"}));
    expectFlushedAtTheEnd();
    EXPECT_EQ(written(), kBrokenTree);
}

TEST_P(ReadingIntoAStore, LeavesNothingOpenInADocumentThatBreaksOff) {
    NotingReader reader(kBroken);
    parse(&reader);
    for (const wchar_t* path : {L"g", L"g.a", L"g.t"}) EXPECT_EQ(stored::refs(store(), at(path)), 0u);
    EXPECT_EQ(stored::refs(store(), 0), 0u);
}

TEST_P(ReadingIntoAStore, TellsOfAnEmptyDocument) {
    for (const char* document : {"", " ", "<!-- -->"}) {
        MemoryReader reader(document);
        parse(&reader);
    }
    EXPECT_EQ(reporter.broken.size(), 3u);
    EXPECT_EQ(store()->extent(), 0u);
}

TEST_P(ReadingIntoAStore, DropsWhatAReaderThrowsAndTellsIt) {
    NotingReader reader(kWhole);
    reader.endThrows = true;
    parse(&reader);
    EXPECT_EQ(reporter.broken, tMessages{"cannot read"});
    EXPECT_EQ(reader.calls, (std::vector<std::string>{"open", "close"}));
    expectFlushedAtTheEnd();
}

TEST_P(ReadingIntoAStore, DropsWhatIsThrownAtTheClosing) {
    NotingReader reader(kWhole);
    reader.closeThrows = true;
    parse(&reader);
    EXPECT_EQ(reporter.broken, tMessages{"cannot close"});
    expectFlushedAtTheEnd();
}

TEST_P(ReadingIntoAStore, TellsTheFirstOfTwoFaults) {
    NotingReader reader(kBroken);
    reader.closeThrows = true;
    parse(&reader);
    EXPECT_EQ(reporter.broken, tMessages{kBrokenWhere});
}

TEST_P(ReadingIntoAStore, LetsThroughWhatIsThrownAtTheOpening) {
    NotingReader reader(kWhole);
    reader.openThrows = true;
    EXPECT_THROW(parse(&reader), std::runtime_error);
}

TEST_P(ReadingIntoAStore, DropsFaultsWithoutAReporterToo) {
    NotingReader reader(kBroken);
    reader.closeThrows = true;
    IXMLFrontEnd::parse(&log, &reader, nullptr, nullptr, nullptr);
    expectFlushedAtTheEnd();
    EXPECT_EQ(written(), kBrokenTree);
}

TEST_P(ReadingIntoAStore, DropsWhatTheStoreThrowsAndTellsIt) {
    FailingStore failing(*store());
    for (int changes = 0; changes < 12; ++changes) {
        failing.failAfter(changes);
        MemoryReader reader(kWhole);
        reporter.broken.clear();
        IXMLFrontEnd::parse(&failing, &reader, nullptr, nullptr, &reporter);
        if (changes < 6) {
            EXPECT_THAT(reporter.broken, ElementsAre(StartsWith("the store was told to fail"))) << changes;
        }
    }
    EXPECT_EQ(reporter.broken, kNone);
}

TEST_P(ReadingIntoAStore, LetsThroughWhatTheFlushThrows) {
    class Unflushable : public ForwardingStore {
    public:
        using ForwardingStore::ForwardingStore;
        void flush() override { throw std::runtime_error("cannot flush"); }
    } unflushable(*store());
    MemoryReader reader(kWhole);
    EXPECT_THROW(IXMLFrontEnd::parse(&unflushable, &reader, nullptr, nullptr, &reporter), std::runtime_error);
    EXPECT_EQ(reporter.broken, kNone);
}

/// A reporter that throws what is no `std::exception`.
class ThrowingReporter final : public IXMLFrontEnd::IErrorReporter {
public:
    void report(const WideString&) override { throw 5; }
    void malformed(const WideString& message) override {
        broken.push_back(message.string());
        if (throwsAgain) throw 6;
    }
    bool throwsAgain = false;
    tMessages broken;
};

TEST_P(ReadingIntoAStore, EndsWithWhatAReporterThrows) {
    ThrowingReporter throwing;
    for (const bool again : {false, true}) {
        throwing.throwsAgain = again;
        throwing.broken.clear();
        MemoryReader reader("<root name='r'><x/><group name='g'/></root>");
        IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, &throwing);
        EXPECT_EQ(throwing.broken, tMessages{"an exception of an unknown kind"});
    }
    EXPECT_EQ(written(), "<root version=\"0\" name=\"r\"/>");
}

TEST_P(ReadingIntoAStore, MayHappenWhileAnotherDocumentIsRead) {
    class Reading : public IXMLFrontEnd::IErrorReporter {
    public:
        explicit Reading(IDataStore* store) : _store(store) {}
        void report(const WideString& message) override {
            messages.push_back(message.string());
            if (messages.size() == 1) readInto(_store, "<group name='inner'><int32 name='a'>1 2</int32></group>");
        }
        tMessages messages;

    private:
        IDataStore* _store;
    } reading(other());
    MemoryReader reader("<group name='g'><x/><y/><int32 name='b'>3 4</int32></group>");
    IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, &reading);
    EXPECT_EQ(reading.messages, (tMessages{"x : unknown element, skipping", "y : unknown element, skipping"}));
    EXPECT_EQ(written(), "<group name=\"g\"><int32 name=\"b\">3 4</int32></group>");
    EXPECT_EQ(writtenFrom(other()), "<group name=\"inner\"><int32 name=\"a\">1 2</int32></group>");
}

/// Reading into a container: how that differs.
class ReadingIntoAContainer : public XmlTest {
protected:
    ReadingIntoAContainer() : log(*store()), top(IContainerFrontEnd::toplevel(&log, L"top")) { log.clearLog(); }

    void parse(IDataReader* reader) { IXMLFrontEnd::parse(top.get(), reader, nullptr, nullptr, &reporter); }

    LoggingStore log;
    SharedPtr<lumivard::platform::data::structure::IContainer> top;
    Reporter reporter;
};
LVP_ON_EACH_STORE(ReadingIntoAContainer);

TEST_P(ReadingIntoAContainer, DoesNotFlush) {
    NotingReader reader(kWhole);
    parse(&reader);
    EXPECT_EQ(reader.calls, (std::vector<std::string>{"open", "close"}));
    EXPECT_TRUE(top->has(L"g"));
    EXPECT_EQ(log.count(tCall::kFlush), 0u);
}

TEST_P(ReadingIntoAContainer, DoesNothingWithAReaderThatDoesNotOpen) {
    NotingReader reader(kWhole);
    reader.opens = false;
    parse(&reader);
    parse(nullptr);
    EXPECT_TRUE(top->empty());
    EXPECT_EQ(reader.calls, std::vector<std::string>{"open"});
}

TEST_P(ReadingIntoAContainer, LetsThroughThatADocumentBreaksOffWithNothingLeftOpen) {
    NotingReader reader(kBroken);
    try {
        parse(&reader);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), kBrokenWhere);
    }
    EXPECT_EQ(reporter.broken, tMessages{kBrokenWhere});
    EXPECT_EQ(reader.calls, (std::vector<std::string>{"open", "close"}));
    for (const wchar_t* path : {L"top.g", L"top.g.a", L"top.g.t"}) EXPECT_EQ(stored::refs(store(), at(path)), 0u);
    EXPECT_EQ(stored::refs(store(), at(L"top")), 1u);
}

TEST_P(ReadingIntoAContainer, LetsThroughWhatIsThrownAtTheClosing) {
    NotingReader reader(kWhole);
    reader.closeThrows = true;
    EXPECT_THROW(parse(&reader), std::runtime_error);
    EXPECT_EQ(reporter.broken, tMessages{"cannot close"});
}

TEST_P(ReadingIntoAContainer, LetsThroughWhatAReporterThrows) {
    ThrowingReporter throwing;
    MemoryReader reader("<group name='x'><y/></group>");
    EXPECT_THROW(IXMLFrontEnd::parse(top.get(), &reader, nullptr, nullptr, &throwing), int);
}

}  // namespace
