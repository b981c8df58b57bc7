#pragma once

#include "lumivard/platform/core/Export.h"

// Numbers by which clients agree on kinds of data. Each kind has a name in a versioned namespace, and its number is the
// `_kID` below that name. The numbers run from 1 to 25 and never change; the library itself uses none of them.
namespace lumivard::platform::data::type::asset::v1 {

struct LVP_EXPORT IAsset {
    static const unsigned int _kID;
};
struct LVP_EXPORT IResource {
    static const unsigned int _kID;
};

}  // namespace lumivard::platform::data::type::asset::v1

namespace lumivard::platform::data::type::xref::v1 {

struct LVP_EXPORT IXRef {
    static const unsigned int _kID;
};
struct LVP_EXPORT IXRefTarget {
    static const unsigned int _kID;
};
struct LVP_EXPORT IXRefProduct {
    static const unsigned int _kID;
};
struct LVP_EXPORT IXRefTargetResolution {
    static const unsigned int _kID;
};

}  // namespace lumivard::platform::data::type::xref::v1

namespace lumivard::platform::data::type::gfx::v1 {

struct LVP_EXPORT IMesh {
    static const unsigned int _kID;
};
struct LVP_EXPORT IVertexSet {
    static const unsigned int _kID;
};
struct LVP_EXPORT IScene {
    static const unsigned int _kID;
};
struct LVP_EXPORT IRenderingSet {
    static const unsigned int _kID;
};
struct LVP_EXPORT IRenderingNode {
    static const unsigned int _kID;
};
struct LVP_EXPORT IRenderingMesh {
    static const unsigned int _kID;
};
struct LVP_EXPORT ISubMesh {
    static const unsigned int _kID;
};
struct LVP_EXPORT ILight {
    static const unsigned int _kID;
};
struct LVP_EXPORT ICamera {
    static const unsigned int _kID;
};
struct LVP_EXPORT IMaterial {
    static const unsigned int _kID;
};
struct LVP_EXPORT IAspect {
    static const unsigned int _kID;
};
struct LVP_EXPORT ITexture {
    static const unsigned int _kID;
};
struct LVP_EXPORT ITextureSource {
    static const unsigned int _kID;
};
struct LVP_EXPORT IEnvironment {
    static const unsigned int _kID;
};
struct LVP_EXPORT IProceduralGeometry {
    static const unsigned int _kID;
};
struct LVP_EXPORT ISceneEffect {
    static const unsigned int _kID;
};
struct LVP_EXPORT IBounds {
    static const unsigned int _kID;
};
struct LVP_EXPORT IChoice {
    static const unsigned int _kID;
};
struct LVP_EXPORT IChoiceList {
    static const unsigned int _kID;
};

}  // namespace lumivard::platform::data::type::gfx::v1
