#pragma once

#include <vector>

#include "native/objectFile.hpp"

namespace krel::Native {

/// Links objects to an executable that needs no other file: the bytes of its file. It is
/// position-independent, and its symbols are those of the objects, so that tools show functions.
/// It begins at `_start`, which an object has to define. Throws NotKnown for a symbol that is not
/// defined, or twice, and for whatever else stands in its way.
///
///     address = place in the file                          what may be done with it
///     0        headers | .rela.dyn | .rodata               read
///     page     .text                                       read, execute
///     page     .init_array | .fini_array | .data.rel.ro    read, and write until it has started
///     page     .data | .bss                                read, write
///              .symtab | .strtab | .shstrtab | headers of the sections     not loaded
Bytes link(const std::vector<ObjectFile>& objects);

}  // namespace krel::Native
