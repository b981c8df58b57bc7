#pragma once

#include "lumivard/platform/core/Export.h"

/// Numbers by which clients agree on kinds of data. Each kind has a name in a versioned namespace, and its number is
/// the
/// `_kID` below that name. The numbers run from 1 to 25 and never change; the library itself uses none of them.
namespace lumivard::platform::data::type {}

/// Kinds of assets.
namespace lumivard::platform::data::type::asset::v1 {

/// Number 1.
struct LVP_EXPORT IAsset {
    static const unsigned int _kID;  ///< 1
};
/// Number 2.
struct LVP_EXPORT IResource {
    static const unsigned int _kID;  ///< 2
};

}  // namespace lumivard::platform::data::type::asset::v1

/// Kinds of references to what lies elsewhere.
namespace lumivard::platform::data::type::xref::v1 {

/// Number 3.
struct LVP_EXPORT IXRef {
    static const unsigned int _kID;  ///< 3
};
/// Number 4.
struct LVP_EXPORT IXRefTarget {
    static const unsigned int _kID;  ///< 4
};
/// Number 5.
struct LVP_EXPORT IXRefProduct {
    static const unsigned int _kID;  ///< 5
};
/// Number 6.
struct LVP_EXPORT IXRefTargetResolution {
    static const unsigned int _kID;  ///< 6
};

}  // namespace lumivard::platform::data::type::xref::v1

/// Kinds of things that are drawn, and of what they are drawn by.
namespace lumivard::platform::data::type::gfx::v1 {

/// Number 7.
struct LVP_EXPORT IMesh {
    static const unsigned int _kID;  ///< 7
};
/// Number 8.
struct LVP_EXPORT IVertexSet {
    static const unsigned int _kID;  ///< 8
};
/// Number 9.
struct LVP_EXPORT IScene {
    static const unsigned int _kID;  ///< 9
};
/// Number 10.
struct LVP_EXPORT IRenderingSet {
    static const unsigned int _kID;  ///< 10
};
/// Number 11.
struct LVP_EXPORT IRenderingNode {
    static const unsigned int _kID;  ///< 11
};
/// Number 12.
struct LVP_EXPORT IRenderingMesh {
    static const unsigned int _kID;  ///< 12
};
/// Number 13.
struct LVP_EXPORT ISubMesh {
    static const unsigned int _kID;  ///< 13
};
/// Number 14.
struct LVP_EXPORT ILight {
    static const unsigned int _kID;  ///< 14
};
/// Number 15.
struct LVP_EXPORT ICamera {
    static const unsigned int _kID;  ///< 15
};
/// Number 16.
struct LVP_EXPORT IMaterial {
    static const unsigned int _kID;  ///< 16
};
/// Number 17.
struct LVP_EXPORT IAspect {
    static const unsigned int _kID;  ///< 17
};
/// Number 18.
struct LVP_EXPORT ITexture {
    static const unsigned int _kID;  ///< 18
};
/// Number 19.
struct LVP_EXPORT ITextureSource {
    static const unsigned int _kID;  ///< 19
};
/// Number 20.
struct LVP_EXPORT IEnvironment {
    static const unsigned int _kID;  ///< 20
};
/// Number 21.
struct LVP_EXPORT IProceduralGeometry {
    static const unsigned int _kID;  ///< 21
};
/// Number 22.
struct LVP_EXPORT ISceneEffect {
    static const unsigned int _kID;  ///< 22
};
/// Number 23.
struct LVP_EXPORT IBounds {
    static const unsigned int _kID;  ///< 23
};
/// Number 24.
struct LVP_EXPORT IChoice {
    static const unsigned int _kID;  ///< 24
};
/// Number 25.
struct LVP_EXPORT IChoiceList {
    static const unsigned int _kID;  ///< 25
};

}  // namespace lumivard::platform::data::type::gfx::v1
