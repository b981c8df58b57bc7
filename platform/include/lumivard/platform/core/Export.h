#pragma once

/// Marks what a shared library of the platform shows to its clients; everything else is hidden.
#define LVP_EXPORT __attribute__((visibility("default")))
