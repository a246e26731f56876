// The runtime object is compiled as one unit, so that its parts are inlined into each other and the
// entry points stay the only symbols that others see.

#include "codegen/runtime/addressRange.cpp"
#include "codegen/runtime/blockTable.cpp"
#include "codegen/runtime/bytes.cpp"
#include "codegen/runtime/doubleText.cpp"
#include "codegen/runtime/interface.cpp"
#include "codegen/runtime/output.cpp"
#include "codegen/runtime/report.cpp"
#include "codegen/runtime/startAndExit.cpp"
#include "codegen/runtime/stringHeap.cpp"
#include "codegen/runtime/traps.cpp"
