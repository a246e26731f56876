#pragma once

#include <string>

/// The text of a double as the language defines it, by way of the standard library's shortest
/// digits: slow, but without any of the runtime's own ways.
std::string referenceDoubleText(double value);
