#pragma once

/// Tracing, of which there is none.
namespace lumivard::platform::core::tracer {

/// Where a service of the platform would trace what it does. Nothing of this platform traces: callers pass null.
class ISink {
public:
    virtual ~ISink() = default;
};

}  // namespace lumivard::platform::core::tracer
