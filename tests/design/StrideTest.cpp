// The sizes of the units of values.
#include "design/Stride.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "design/Primitive.h"

namespace {

namespace data = lumivard::platform::data;
namespace metadata = data::metadata;
using data::Design::Primitive;

constexpr metadata::tValue kind(unsigned int number) {
    return static_cast<metadata::tValue>(number);
}

TEST(Stride, OfEachKindIsThis) {
    struct tRow {
        unsigned int number;
        metadata::tValue kind;
        unsigned int stride;
    };
    constexpr tRow kRows[] = {
        {1, metadata::kBinary, 1},  {2, metadata::kUUID, 4},    {3, metadata::kString, 4},  {4, metadata::kTime, 4},
        {5, metadata::kURI, 4},     {6, metadata::kVersion, 4}, {7, metadata::kBool, 1},    {8, metadata::kInt8, 1},
        {9, metadata::kUInt8, 1},   {10, metadata::kInt16, 2},  {11, metadata::kUInt16, 2}, {12, metadata::kInt32, 4},
        {13, metadata::kUInt32, 4}, {14, metadata::kInt64, 8},  {15, metadata::kUInt64, 8}, {16, metadata::kScalar, 4},
        {17, metadata::kDouble, 8}, {18, metadata::kVec2, 8},   {19, metadata::kVec3, 8},   {20, metadata::kVec4, 8},
        {21, metadata::kMtx2x2, 8}, {22, metadata::kMtx3x3, 8}, {23, metadata::kMtx4x4, 8}, {24, metadata::kStruct, 1},
    };
    for (const tRow& row : kRows) {
        EXPECT_EQ(row.kind, row.number);
        EXPECT_EQ(Primitive::stride(row.kind), row.stride) << row.number;
        EXPECT_EQ(data::Design::kpIntegralSizes[row.number], row.stride) << row.number;
    }
}

TEST(Stride, Is0ForWhatIsNoKind) {
    for (const unsigned int number : {0u, 25u, 26u, 255u, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Primitive::stride(kind(number)), 0u) << number;
    }
    EXPECT_EQ(data::Design::kpIntegralSizes[0], 0u);
    EXPECT_EQ(data::Design::kpIntegralSizes[25], 0u);
}

}  // namespace
