#pragma once

#include "tools/cli/CommandLine.h"

// The verbs of the tool. Each declares itself: its help, its options, and what it does.
namespace lvp::tool {

// What lies in a store
void declareTree(CommandLine& line);
void declareView(CommandLine& line);
void declareList(CommandLine& line);
void declareGet(CommandLine& line);
void declareSet(CommandLine& line);
void declareMake(CommandLine& line);
void declareRemove(CommandLine& line);
void declareMove(CommandLine& line);
void declareCopy(CommandLine& line);

// Documents
void declareImport(CommandLine& line);
void declareExport(CommandLine& line);

// Schemas and units
void declareValidate(CommandLine& line);
void declareSchema(CommandLine& line);
void declareUnit(CommandLine& line);

// Stores and documents beside each other
void declareDiff(CommandLine& line);

// Stores as a whole
void declareCheck(CommandLine& line);
void declareStat(CommandLine& line);
void declareCompact(CommandLine& line);
void declareDump(CommandLine& line);

// Stores in databases, where the library for them was built
void declareStore(CommandLine& line);

// The man page and the completions of shells, for the build
void declareGenerate(CommandLine& line);

}  // namespace lvp::tool
