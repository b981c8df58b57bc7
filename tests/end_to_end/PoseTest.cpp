#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "tests/end_to_end/Documents.h"
#include "tests/support/TemporaryFolder.h"

// Structs on the example of a robot's arm: poses in a row, and a hand that is a struct of poses.

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using metadata::IStructLayout;
using test_support::read;
using test_support::written;

const std::string kMotionSchemas = LVP_SOURCE_DIR "/examples/data/motion-schemas.xml";
const std::string kMotion = LVP_SOURCE_DIR "/examples/data/motion.xml";

class Poses : public testing::Test {
protected:
    Poses() {
        // The schema of the hand names that of the pose, which stands above it in the same document.
        const auto above = metadata::ISchemaLocator::make(library.get());
        read(library.get(), bytesOf(kMotionSchemas), above.get());
        read(store.get(), bytesOf(kMotion), locator.get());
    }

    IStructLayout& layout(const wchar_t* uri) { return *locator->resolve(uri)->layout(); }

    /// The bytes of a value of the arm.
    std::vector<char> bytes(const wchar_t* name) {
        const auto property = structure::IContainerFrontEnd::find(store.get(), L"arm")->property(name);
        auto* value = metadata::IPrimitive::to(property.get());
        std::vector<char> all(value->bytes());
        EXPECT_TRUE(value->get(all.data(), 0, value->dimension()));
        return all;
    }

    /// One number of a field, taken from a block.
    template <class Number>
    static Number number(const char* block, const IStructLayout::tField& field, unsigned int index = 0) {
        Number value;
        std::memcpy(&value, block + field.offset + index * sizeof(value), sizeof(value));
        return value;
    }

    std::unique_ptr<IDataStore> library = stores::memory();
    SharedPtr<metadata::ISchemaLocator> locator = metadata::ISchemaLocator::make(library.get());
    std::unique_ptr<IDataStore> store = stores::memory();
};

void expectField(IStructLayout& layout, const wchar_t* name, metadata::tValue type, unsigned int dim,
                 unsigned int offset, unsigned int size) {
    SCOPED_TRACE(WideString(name).string());
    const auto* field = layout.get(WideString(name));
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->type, type);
    EXPECT_EQ(field->dim, dim);
    EXPECT_EQ(field->offset, offset);
    EXPECT_EQ(field->size, size);
}

TEST_F(Poses, AreLaidOutWithoutGaps) {
    IStructLayout& pose = layout(L"Pose");
    EXPECT_EQ(pose.fields(), 3u);
    EXPECT_EQ(pose.values(), 8u);
    EXPECT_EQ(pose.stride(), 48u);
    expectField(pose, L"position", metadata::kDouble, 3, 0, 24);
    expectField(pose, L"rotation", metadata::kScalar, 4, 24, 16);
    expectField(pose, L"time", metadata::kInt64, 1, 40, 8);
}

TEST_F(Poses, StandInAHandAsItsFields) {
    IStructLayout& gripper = layout(L"Gripper");
    EXPECT_EQ(gripper.fields(), 10u);
    EXPECT_EQ(gripper.stride(), 3 * 48u + 1);
    expectField(gripper, L"palm.time", metadata::kInt64, 1, 40, 8);
    expectField(gripper, L"finger[0].position", metadata::kDouble, 3, 48, 24);
    expectField(gripper, L"finger[1].rotation", metadata::kScalar, 4, 96 + 24, 16);
    expectField(gripper, L"closed", metadata::kBool, 1, 144, 1);
}

TEST_F(Poses, AreReadBackFieldByField) {
    IStructLayout& pose = layout(L"Pose");
    const std::vector<char> path = bytes(L"path");
    ASSERT_EQ(path.size(), 3u * pose.stride());
    const char* second = path.data() + pose.stride();
    EXPECT_EQ(number<double>(second, *pose.get(L"position"), 0), 0.25);
    EXPECT_EQ(number<double>(second, *pose.get(L"position"), 2), 0.5);
    EXPECT_EQ(number<float>(second, *pose.get(L"rotation"), 3), 0.7071068f);
    EXPECT_EQ(number<std::int64_t>(second, *pose.get(L"time")), 400);
    EXPECT_EQ(number<std::int64_t>(second + pose.stride(), *pose.get(L"time")), 1000);
}

TEST_F(Poses, OfAHandAreReadBackByTheirFullNames) {
    IStructLayout& gripper = layout(L"Gripper");
    const std::vector<char> hand = bytes(L"hand");
    ASSERT_EQ(hand.size(), gripper.stride());
    EXPECT_EQ(number<double>(hand.data(), *gripper.get(L"finger[0].position"), 0), 0.24);
    EXPECT_EQ(number<double>(hand.data(), *gripper.get(L"finger[1].position"), 0), 0.26);
    EXPECT_EQ(number<std::int8_t>(hand.data(), *gripper.get(L"closed")), 1);
}

TEST_F(Poses, AreWrittenAgainTheSame) {
    const std::string first = written(store.get(), locator.get());
    EXPECT_NE(
        first.find("<struct name=\"path\" type=\"Pose\">0 0 0.5 0 0 0 1 0 0.25 0 0.5 0 0 0.7071068 0.7071068 400 "),
        std::string::npos)
        << first;
    const auto again = stores::memory();
    read(again.get(), first, locator.get());
    EXPECT_EQ(written(again.get(), locator.get()), first);
}

}  // namespace
