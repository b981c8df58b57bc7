#pragma once

namespace lumivard::platform::stores {

/// The name of the network file system that `statfs` reports as `type`, or null for any other. File systems in user
/// space (FUSE) count as local: what stands behind one cannot be told.
const char* networkFileSystem(long type);

}  // namespace lumivard::platform::stores
