#pragma once

namespace krel {

/// Occupies the descriptors of the standard streams that were closed when the process began.
/// Otherwise a file that the process opens would get one of them, and messages would end up in that
/// file. Reading and writing them still fails, and child processes find them closed. To be called
/// before anything is opened.
void occupyClosedStandardStreams();

}  // namespace krel
