#pragma once

namespace lumivard::platform::core {

/// The identity that a serializer is built on. The writer of this platform has no use for it: it stands in the
/// interface only.
class LVPUUID {
public:
    LVPUUID() = default;
};

}  // namespace lumivard::platform::core
