/// Counts how often the memory at an address is given back.
#pragma once

namespace conformance {

/// Begins to count for this address, from 0.
void countFrees(const void* address);

/// How often it has been given back by operator delete since.
int frees();

} // namespace conformance
