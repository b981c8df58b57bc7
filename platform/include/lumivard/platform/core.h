#pragma once

/// The core services of the platform.
namespace lumivard::platform::core {}

#include "lumivard/platform/core/LVPUUID.h"
#include "lumivard/platform/core/hash/Compare.h"
#include "lumivard/platform/core/hash/Kernels.h"
#include "lumivard/platform/core/io/FileReader.h"
#include "lumivard/platform/core/io/FileWriter.h"
#include "lumivard/platform/core/io/IDataReader.h"
#include "lumivard/platform/core/io/IDataWriter.h"
#include "lumivard/platform/core/io/MemoryReader.h"
#include "lumivard/platform/core/io/MemoryWriter.h"
#include "lumivard/platform/core/memory/PooledHeap.h"
#include "lumivard/platform/core/memory/SharedPtr.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/core/string/WideString.h"
#include "lumivard/platform/core/thread/Mutex.h"
#include "lumivard/platform/core/tracer/ISink.h"
#include "lumivard/platform/core/xml/XMLCallback.h"
#include "lumivard/platform/core/xml/XMLParser.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"
