#include "stores/lmdb/NetworkFileSystem.h"

#include <cstdint>

namespace lumivard::platform::stores {
namespace {

struct Known {
    std::uint32_t type;
    const char* name;
};

// Most of these numbers stand in no header that could be relied upon.
constexpr Known kNetworkFileSystems[] = {
    {0x00006969, "NFS"},
    {0x0000517B, "SMB"},
    {0xFE534D42, "SMB2"},
    {0xFF534D42, "CIFS"},
    {0x00C36400, "Ceph"},
    {0x5346414F, "AFS"},
    {0x6B414653, "AFS"},
    {0x73757245, "Coda"},
    {0x0000564C, "NCP"},
    {0x01021997, "9P"},
    {0x01161970, "GFS2"},
    {0x7461636F, "OCFS2"},
    {0x0BD00BD0, "Lustre"},
    {0x47504653, "GPFS"},
    {0x20030528, "OrangeFS"},
    {0x19830326, "BeeGFS"},
    {0xAAD7AAEA, "PanFS"},
    {0xBEEFDEAD, "StorNext"},
    {0x786F4256, "a folder of the host's"},
    {0xBACBACBC, "a folder of the host's"},
};

}  // namespace

const char* networkFileSystem(long type) {
    for (const Known& known : kNetworkFileSystems) {
        if (known.type == static_cast<std::uint32_t>(type)) return known.name;
    }
    return nullptr;
}

}  // namespace lumivard::platform::stores
