// What programs that were built with an earlier release of the series rely upon beside names: the places of virtual
// functions in the interfaces that they implement, and the sizes of what they make themselves. Numbers are those of the
// first release, and no row changes within the series (docs/versioning.md).
#include <gtest/gtest.h>

#include <cstring>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/data/easy.h"
#include "lumivard/platform/stores.h"

namespace {

using namespace lumivard::platform;
using core::memory::IPointerCounter;
using core::memory::IPointerDisposer;
using core::storage::datastore::IDataStore;
using core::storage::datastore::IRecordAccess;
using core::xml::XMLCallback;
using data::format::xml::IXMLFrontEnd;
using data::structure::IVisitor;

/// The place of a virtual function in its class's table, as compilers of this platform write it in a pointer to the
/// function: one more than its distance in bytes from the table's beginning.
template <class Function>
std::ptrdiff_t place(Function function) {
    std::ptrdiff_t representation;
    std::memcpy(&representation, &function, sizeof(representation));
    return (representation - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

/// A function of several of one name, by its type.
template <class Type, class Class>
constexpr auto of(Type Class::*function) {
    return function;
}

TEST(Places, OfADestructorAreTheFirstTwo) {
    struct tProbe {
        virtual ~tProbe() = default;
        virtual void first() {}
        virtual void second() {}
    };
    EXPECT_EQ(place(&tProbe::first), 2);
    EXPECT_EQ(place(&tProbe::second), 3);
}

TEST(Places, InAStoreStay) {
    EXPECT_EQ(place(&IDataStore::lock), 2);
    EXPECT_EQ(place(&IDataStore::flush), 3);
    EXPECT_EQ(place(of<void(unsigned int)>(&IDataStore::version)), 4);
    EXPECT_EQ(place(of<unsigned int() const>(&IDataStore::version)), 5);
    EXPECT_EQ(place(&IDataStore::extent), 6);
    EXPECT_EQ(place(&IDataStore::create), 7);
    EXPECT_EQ(place(&IDataStore::append), 8);
    EXPECT_EQ(place(&IDataStore::update), 9);
    EXPECT_EQ(place(&IDataStore::size), 10);
    EXPECT_EQ(place(&IDataStore::read), 11);
    EXPECT_EQ(place(&IDataStore::erase), 12);
    EXPECT_EQ(place(&IDataStore::access), 13);
}

TEST(Places, InTheAccessToAStoreStay) {
    EXPECT_EQ(place(&IRecordAccess::view), 2);
    EXPECT_EQ(place(&IRecordAccess::write), 3);
    EXPECT_EQ(place(&IRecordAccess::enter), 4);
    EXPECT_EQ(place(&IRecordAccess::leave), 5);
    EXPECT_EQ(place(&IRecordAccess::changes), 6);
    EXPECT_EQ(place(&IRecordAccess::attachment), 7);
    EXPECT_EQ(place(&IRecordAccess::expect), 8);
}

TEST(Places, InVisitorsStay) {
    EXPECT_EQ(place(&IVisitor::root), 2);
    EXPECT_EQ(place(&IVisitor::primitive), 3);
    EXPECT_EQ(place(&IVisitor::table), 4);
    EXPECT_EQ(place(&IVisitor::container), 5);
    EXPECT_EQ(place(&IVisitor::text), 6);
    EXPECT_EQ(place(&IVisitor::unitDefault), 7);
    EXPECT_EQ(place(&IVisitor::leave), 8);
}

TEST(Places, InReadersAndWritersStay) {
    EXPECT_EQ(place(&core::io::IDataReader::open), 2);
    EXPECT_EQ(place(&core::io::IDataReader::close), 3);
    EXPECT_EQ(place(&core::io::IDataReader::read), 4);
    EXPECT_EQ(place(&core::io::IDataWriter::open), 2);
    EXPECT_EQ(place(&core::io::IDataWriter::close), 3);
    EXPECT_EQ(place(&core::io::IDataWriter::write), 4);
}

TEST(Places, InWhatIsToldOfDocumentsStay) {
    EXPECT_EQ(place(&XMLCallback::notifyStartElement), 2);
    EXPECT_EQ(place(&XMLCallback::notifyEndElement), 3);
    EXPECT_EQ(place(&XMLCallback::notifyStartNamespace), 4);
    EXPECT_EQ(place(&XMLCallback::notifyEndNamespace), 5);
    EXPECT_EQ(place(&XMLCallback::notifyCharacterData), 6);
    EXPECT_EQ(place(&IXMLFrontEnd::IErrorReporter::report), 2);
    EXPECT_EQ(place(&IXMLFrontEnd::IErrorReporter::located), 3);
    EXPECT_EQ(place(&IXMLFrontEnd::IErrorReporter::malformed), 4);
}

TEST(Places, InCountersStay) {
    EXPECT_EQ(place(&IPointerCounter::addRef), 0);
    EXPECT_EQ(place(&IPointerCounter::release), 1);
    EXPECT_EQ(place(&IPointerCounter::count), 2);
    EXPECT_EQ(place(&IPointerCounter::addUse), 3);
    EXPECT_EQ(place(&IPointerCounter::releaseUse), 4);
    EXPECT_EQ(place(&IPointerCounter::countUse), 5);
    EXPECT_EQ(place(&IPointerCounter::_doDestroy), 8) << "behind the destructor's two";
    EXPECT_EQ(place(&IPointerCounter::_doDispose), 9);
    EXPECT_EQ(place(&IPointerDisposer::dispose), 2);
}

TEST(Sizes, OfWhatClientsMakeStay) {
    EXPECT_EQ(sizeof(core::string::WideString), 112u);
    EXPECT_EQ(sizeof(core::memory::SharedPtr<int>), 16u);
    EXPECT_EQ(sizeof(core::memory::DefaultPointerCounterImp), 32u);
    EXPECT_EQ(sizeof(core::thread::Mutex), 40u);
    EXPECT_EQ(sizeof(core::io::FileReader), 56u);
    EXPECT_EQ(sizeof(core::io::FileWriter), 144u);
    EXPECT_EQ(sizeof(core::io::MemoryReader), 48u);
    EXPECT_EQ(sizeof(core::io::MemoryWriter), 40u);
    EXPECT_EQ(sizeof(core::xml::XMLParser), 16u);
    EXPECT_EQ(sizeof(core::xml::XMLSerializer), 80u);
    EXPECT_EQ(sizeof(IRecordAccess::tView), 16u);
    EXPECT_EQ(sizeof(data::metadata::IStructLayout::tField), 24u);
    EXPECT_EQ(sizeof(data::check::Options), 64u);
    EXPECT_EQ(sizeof(data::check::Finding), 112u);
    EXPECT_EQ(sizeof(data::check::Rule), 32u);
    EXPECT_EQ(sizeof(data::check::Report), 280u);
    EXPECT_EQ(sizeof(data::check::Step), 80u);
    EXPECT_EQ(sizeof(data::check::Repair), 584u);
    EXPECT_EQ(sizeof(stores::FileOptions), 40u);
    EXPECT_EQ(sizeof(data::easy::Place), 16u);
    EXPECT_EQ(sizeof(data::easy::Scope), 8u);
    EXPECT_EQ(sizeof(data::easy::tAs), 8u);
    EXPECT_EQ(sizeof(data::easy::tAt), 24u);
    EXPECT_EQ(sizeof(data::easy::Range<data::structure::IContainerFilter>), 16u);
    EXPECT_EQ(sizeof(data::easy::Range<data::structure::IContainerFilter>::Iterator), 24u);
    EXPECT_EQ(sizeof(stores::FileFault), 72u);
    EXPECT_EQ(sizeof(stores::FileReport), 80u);
}

}  // namespace
