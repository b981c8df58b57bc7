#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <type_traits>

#include "lumivard/platform/data.h"

namespace {

namespace asset = lumivard::platform::data::type::asset::v1;
namespace xref = lumivard::platform::data::type::xref::v1;
namespace gfx = lumivard::platform::data::type::gfx::v1;

static_assert(std::numeric_limits<unsigned int>::digits == 32);

/// The number of a type, which is an unsigned 32-bit constant with a place of its own: clients may take its address.
template <class Type>
const unsigned int* place() {
    static_assert(std::is_same_v<decltype(Type::_kID), const unsigned int>);
    return &Type::_kID;
}

const unsigned int* const kPlaces[] = {
    place<asset::IAsset>(),       place<asset::IResource>(),    place<xref::IXRef>(),
    place<xref::IXRefTarget>(),   place<xref::IXRefProduct>(),  place<xref::IXRefTargetResolution>(),
    place<gfx::IMesh>(),          place<gfx::IVertexSet>(),     place<gfx::IScene>(),
    place<gfx::IRenderingSet>(),  place<gfx::IRenderingNode>(), place<gfx::IRenderingMesh>(),
    place<gfx::ISubMesh>(),       place<gfx::ILight>(),         place<gfx::ICamera>(),
    place<gfx::IMaterial>(),      place<gfx::IAspect>(),        place<gfx::ITexture>(),
    place<gfx::ITextureSource>(), place<gfx::IEnvironment>(),   place<gfx::IProceduralGeometry>(),
    place<gfx::ISceneEffect>(),   place<gfx::IBounds>(),        place<gfx::IChoice>(),
    place<gfx::IChoiceList>(),
};

TEST(TypeIdentifiers, RunFromOneToTwentyFiveInThisOrder) {
    unsigned int expected = 0;
    for (const unsigned int* place : kPlaces) EXPECT_EQ(++expected, *place);
    EXPECT_EQ(25u, expected);
}

TEST(TypeIdentifiers, HaveAPlaceOfTheirOwnEach) {
    EXPECT_EQ(25u, std::set<const unsigned int*>(std::begin(kPlaces), std::end(kPlaces)).size());
}

TEST(TypeIdentifiers, AreKnownByTheirNames) {
    EXPECT_EQ(1u, asset::IAsset::_kID);
    EXPECT_EQ(6u, xref::IXRefTargetResolution::_kID);
    EXPECT_EQ(16u, gfx::IMaterial::_kID);
    EXPECT_EQ(25u, gfx::IChoiceList::_kID);
}

}  // namespace
