// How the layer's parts tell what went wrong beneath a call; machine::TakeFault hands it to whoever asks.
#pragma once

#include <string>

namespace machine {

// Keeps one line (UTF-8, no line feed) unless the very same stands there already.
void RecordFault(const std::string &line);

} // namespace machine
