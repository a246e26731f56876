#pragma once

#include <initializer_list>

/// Makes system calls of these numbers fail with `error` in this process and its children, for
/// good. False where the kernel does not let a process do so.
bool makeCallsFail(std::initializer_list<unsigned> numbers, unsigned error);
