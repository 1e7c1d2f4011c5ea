/// Watches calls that cross a library's border, with their arguments and results, and lets the called functions run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace conformance {

/// A value as it crossed the border. The last one holds a pointer and the numbers that it points at.
struct Pointed {
  std::uintptr_t address = 0;
  std::vector<double> numbers;
};
using Value = std::variant<std::monostate, bool, double, std::string, Pointed>;

/// A call from the watched code.
struct RecordedCall {
  /// Lines if the compiler found that several watched functions are the same.
  std::string operation;
  std::vector<Value> arguments;
  Value result;
  bool returned = false;
};

/// How a value travels: a letter, and for pointers optionally what stands there.
///   b bool, i int, u unsigned int, l 64 bits, f float, d double, s std::string by address, c const char*, p address,
///   D F I U B L the number behind an address; pd<n>, pf<n> address of n doubles, floats; m<n> n doubles in memory
///   passed on the stack; w<n> n unsigned int in one register; x<n> n doubles of one value in registers of their own;
///   rd<n>, rf<n> (results only) n doubles or floats side by side in registers; h (results only) an address inside of
///   a handle that the caller provided memory for; n nothing.
using Kinds = std::vector<std::string>;

/// A function to watch.
struct Watched {
  std::string operation;
  std::vector<std::uintptr_t> addresses;
  Kinds arguments;
  std::string result;
  /// The caller passes the address of the result's memory first.
  bool resultInMemory = false;
  /// The function does not run; the caller gets 0, or this many bytes that are 0 in the result's memory.
  bool held = false;
  std::size_t heldBytes = 0;
};

/// Breakpoints at the entries of functions and at the places that they return to: the one way that sees ordinary and
/// virtual calls alike and leaves the libraries as they are built. x86-64 with the System V calling convention.
///
/// Only calls whose return address lies in the watched code are recorded, so that what the toolkit calls itself stays
/// out. Arguments are read at entry, for they may be gone when the call is over. One recorder at a time; the calls
/// come from one thread.
class Recorder {
public:
  /// @param code first and last address of the code whose calls count
  explicit Recorder(std::pair<std::uintptr_t, std::uintptr_t> code);
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  void watch(const Watched& watched);

  /// The calls since the first watch; watches no longer.
  std::vector<RecordedCall> take();
};

} // namespace conformance
