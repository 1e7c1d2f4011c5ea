// The program's own operators serve all libraries; breakpoints would not do, for their handler uses memory itself.
#include "Frees.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<const void*> s_address{nullptr};
std::atomic<int> s_frees{0};

void giveBack(void* memory) {
  if (memory != nullptr && memory == s_address.load()) {
    ++s_frees;
  }
  std::free(memory);
}

} // namespace

void conformance::countFrees(const void* address) {
  s_address = address;
  s_frees = 0;
}

int conformance::frees() {
  s_address = nullptr;
  return s_frees;
}

// Exported, or the libraries would keep their own.
#pragma GCC visibility push(default)
void* operator new(std::size_t size) {
  void* memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}
void operator delete(void* memory) noexcept {
  giveBack(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  giveBack(memory);
}
#pragma GCC visibility pop
