#pragma once

// The stores that come with the platform, all of namespace lumivard::platform::stores.
#include "lumivard/platform/stores/StoreError.h"
#include "lumivard/platform/stores/Stores.h"
#include "lumivard/platform/stores/tMode.h"
