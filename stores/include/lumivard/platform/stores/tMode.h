#pragma once

namespace lumivard::platform::stores {

/// For what a store is opened.
enum class tMode {
    /// To look at what is there. Any number of processes may read a store at once, also beside the one that writes it.
    kRead,
    /// To read and to change it; what is not there is created. One process at a time.
    kWrite
};

}  // namespace lumivard::platform::stores
