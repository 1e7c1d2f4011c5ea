// The trap handler runs at the border itself, in the calling thread and outside of any allocation, so it may allocate.
#include "Recorder.h"

#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>

namespace {

using conformance::Pointed;
using conformance::RecordedCall;
using conformance::Value;
using conformance::Watched;

constexpr unsigned char kTrap = 0xcc;
constexpr greg_t kStepFlag = 0x100;

struct Pending {
  std::uintptr_t returnAddress;
  std::uintptr_t stack;
  std::size_t call;
  std::string result;
};

struct State {
  std::pair<std::uintptr_t, std::uintptr_t> code;
  std::map<std::uintptr_t, Watched> entries;
  std::map<std::uintptr_t, unsigned char> bytes;
  std::set<std::uintptr_t> writable;
  std::vector<Pending> pending;
  std::vector<RecordedCall> calls;
  std::uintptr_t stepping = 0;
  struct sigaction previous;
};

State* s_state = nullptr;

void poke(std::uintptr_t address, unsigned char byte) {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const std::uintptr_t start = address / page * page;
  if (s_state->writable.insert(start).second) {
    if (mprotect(reinterpret_cast<void*>(start), page, PROT_READ | PROT_WRITE | PROT_EXEC) != 0) {
      std::abort();
    }
  }
  *reinterpret_cast<volatile unsigned char*>(address) = byte;
}

void plant(std::uintptr_t address) {
  const unsigned char byte = *reinterpret_cast<const unsigned char*>(address);
  if (byte != kTrap) {
    s_state->bytes[address] = byte;
    poke(address, kTrap);
  }
}

void remove(std::uintptr_t address) {
  const auto found = s_state->bytes.find(address);
  if (found != s_state->bytes.end()) {
    poke(address, found->second);
    s_state->bytes.erase(found);
  }
}

template <class T>
T read(std::uintptr_t address) {
  T value;
  std::memcpy(&value, reinterpret_cast<const void*>(address), sizeof(value));
  return value;
}

template <class T>
std::vector<double> readMany(std::uintptr_t address, std::size_t count) {
  std::vector<double> numbers;
  for (std::size_t i = 0; address != 0 && i < count; ++i) {
    numbers.push_back(static_cast<double>(read<T>(address + i * sizeof(T))));
  }
  return numbers;
}

/// A value of a kind that travels in an integer register or a word of memory.
Value decodeWord(const std::string& kind, std::uintptr_t word) {
  switch (kind[0]) {
  case 'b':
    return (word & 0xff) != 0;
  case 'i':
    return static_cast<double>(static_cast<std::int32_t>(word));
  case 'u':
    return static_cast<double>(static_cast<std::uint32_t>(word));
  case 'l':
    return static_cast<double>(word);
  case 's':
    return word == 0 ? Value() : Value(*reinterpret_cast<const std::string*>(word));
  case 'c':
    return word == 0 ? Value() : Value(std::string(reinterpret_cast<const char*>(word)));
  case 'D':
    return read<double>(word);
  case 'F':
    return static_cast<double>(read<float>(word));
  case 'I':
    return static_cast<double>(read<std::int32_t>(word));
  case 'U':
    return static_cast<double>(read<std::uint32_t>(word));
  case 'L':
    return static_cast<double>(read<std::uint64_t>(word));
  case 'B':
    return read<bool>(word);
  case 'h':
    return Pointed{word == 0 ? 0 : read<std::uintptr_t>(word), {}};
  case 'w': {
    Pointed packed;
    for (char at = '0'; at < kind[1]; ++at) {
      packed.numbers.push_back(static_cast<double>(static_cast<std::uint32_t>(word)));
      word >>= 32;
    }
    return packed;
  }
  case 'p': {
    Pointed pointed{word, {}};
    if (kind.size() > 2) {
      const std::size_t count = std::strtoul(kind.c_str() + 2, nullptr, 10);
      pointed.numbers = kind[1] == 'd' ? readMany<double>(word, count) : readMany<float>(word, count);
    }
    return pointed;
  }
  default:
    return Value();
  }
}

double lowDouble(const ucontext_t& context, std::size_t index) {
  return read<double>(reinterpret_cast<std::uintptr_t>(&context.uc_mcontext.fpregs->_xmm[index]));
}

/// Numbers that came back side by side, eight bytes a register.
Value packedNumbers(const std::string& kind, const ucontext_t& context) {
  Pointed packed;
  const std::size_t count = std::strtoul(kind.c_str() + 2, nullptr, 10);
  const std::size_t each = kind[1] == 'd' ? 1 : 2;
  for (std::size_t i = 0; i < count; i += each) {
    const auto half = reinterpret_cast<std::uintptr_t>(&context.uc_mcontext.fpregs->_xmm[i / each]);
    const std::size_t here = std::min(each, count - i);
    const std::vector<double> numbers = kind[1] == 'd' ? readMany<double>(half, here) : readMany<float>(half, here);
    packed.numbers.insert(packed.numbers.end(), numbers.begin(), numbers.end());
  }
  return packed;
}

float lowFloat(const ucontext_t& context, std::size_t index) {
  return read<float>(reinterpret_cast<std::uintptr_t>(&context.uc_mcontext.fpregs->_xmm[index]));
}

std::vector<Value> decodeArguments(const Watched& watched, const ucontext_t& context) {
  const greg_t* registers = context.uc_mcontext.gregs;
  const int order[] = {REG_RDI, REG_RSI, REG_RDX, REG_RCX, REG_R8, REG_R9};
  std::size_t integers = watched.resultInMemory ? 1 : 0;
  std::size_t floats = 0;
  std::uintptr_t stack = static_cast<std::uintptr_t>(registers[REG_RSP]) + 8;
  std::vector<Value> values;
  for (const std::string& kind : watched.arguments) {
    if (kind[0] == 'x') {
      // A value whose doubles travel in registers of their own.
      Pointed value{0, {}};
      const std::size_t count = std::strtoul(kind.c_str() + 1, nullptr, 10);
      const bool inRegisters = floats + count <= 8;
      for (std::size_t i = 0; i < count; ++i) {
        value.numbers.push_back(inRegisters ? lowDouble(context, floats++) : read<double>(stack));
        stack += inRegisters ? 0 : sizeof(double);
      }
      values.push_back(value);
    } else if (kind[0] == 'm') {
      const std::size_t count = std::strtoul(kind.c_str() + 1, nullptr, 10);
      values.push_back(Pointed{stack, readMany<double>(stack, count)});
      stack += count * sizeof(double);
    } else if (kind[0] == 'f' || kind[0] == 'd') {
      const bool inRegister = floats < 8;
      const bool isDouble = kind[0] == 'd';
      const double inStack = isDouble ? read<double>(stack) : static_cast<double>(read<float>(stack));
      const double passed =
          isDouble ? lowDouble(context, floats % 8) : static_cast<double>(lowFloat(context, floats % 8));
      values.push_back(inRegister ? passed : inStack);
      stack += inRegister ? 0 : 8;
      floats += inRegister ? 1 : 0;
    } else if (integers < 6) {
      values.push_back(decodeWord(kind, static_cast<std::uintptr_t>(registers[order[integers++]])));
    } else {
      values.push_back(decodeWord(kind, read<std::uintptr_t>(stack)));
      stack += 8;
    }
  }
  return values;
}

void onReturn(ucontext_t& context, std::uintptr_t address) {
  greg_t* registers = context.uc_mcontext.gregs;
  registers[REG_RIP] = static_cast<greg_t>(address);
  while (!s_state->pending.empty()) {
    const Pending pending = s_state->pending.back();
    s_state->pending.pop_back();
    // Calls that an exception ended never came back here.
    if (pending.returnAddress != address || pending.stack != static_cast<std::uintptr_t>(registers[REG_RSP])) {
      continue;
    }
    RecordedCall& call = s_state->calls[pending.call];
    call.returned = true;
    if (pending.result[0] == 'r') {
      call.result = packedNumbers(pending.result, context);
    } else if (pending.result[0] == 'f') {
      call.result = static_cast<double>(lowFloat(context, 0));
    } else if (pending.result[0] == 'd') {
      call.result = lowDouble(context, 0);
    } else {
      call.result = decodeWord(pending.result, static_cast<std::uintptr_t>(registers[REG_RAX]));
    }
    break;
  }
  for (const Pending& pending : s_state->pending) {
    if (pending.returnAddress == address) {
      return;
    }
  }
  remove(address);
}

void onEntry(ucontext_t& context, std::uintptr_t address, const Watched& watched) {
  greg_t* registers = context.uc_mcontext.gregs;
  const auto stack = static_cast<std::uintptr_t>(registers[REG_RSP]);
  const std::uintptr_t back = read<std::uintptr_t>(stack);
  // What a header's function calls in turn comes from the same code, but not from the wrapper.
  const bool counts = back >= s_state->code.first && back <= s_state->code.second && s_state->pending.empty();
  if (counts) {
    RecordedCall call;
    call.operation = watched.operation;
    call.arguments = decodeArguments(watched, context);
    s_state->calls.push_back(call);
    if (watched.held) {
      registers[REG_RIP] = static_cast<greg_t>(back);
      registers[REG_RSP] = static_cast<greg_t>(stack + 8);
      registers[REG_RAX] = 0;
      if (watched.resultInMemory) {
        registers[REG_RAX] = registers[REG_RDI];
        std::memset(reinterpret_cast<void*>(registers[REG_RDI]), 0, watched.heldBytes);
      }
      std::memset(&context.uc_mcontext.fpregs->_xmm[0], 0, sizeof(context.uc_mcontext.fpregs->_xmm[0]));
      return;
    }
    s_state->pending.push_back({back, stack + 8, s_state->calls.size() - 1, watched.result});
    plant(back);
  }
  // The function's own first instruction runs alone; then the breakpoint comes back.
  poke(address, s_state->bytes[address]);
  s_state->stepping = address;
  registers[REG_RIP] = static_cast<greg_t>(address);
  registers[REG_EFL] |= kStepFlag;
}

void onTrap(int, siginfo_t*, void* data) {
  ucontext_t& context = *static_cast<ucontext_t*>(data);
  if (s_state == nullptr) {
    return;
  }
  if (s_state->stepping != 0) {
    if (s_state->bytes.count(s_state->stepping) != 0) {
      poke(s_state->stepping, kTrap);
    }
    s_state->stepping = 0;
    context.uc_mcontext.gregs[REG_EFL] &= ~kStepFlag;
    return;
  }
  const std::uintptr_t address = static_cast<std::uintptr_t>(context.uc_mcontext.gregs[REG_RIP]) - 1;
  const auto entry = s_state->entries.find(address);
  if (entry != s_state->entries.end()) {
    onEntry(context, address, entry->second);
  } else if (s_state->bytes.count(address) != 0) {
    onReturn(context, address);
  }
}

} // namespace

conformance::Recorder::Recorder(std::pair<std::uintptr_t, std::uintptr_t> code) {
  s_state = new State();
  s_state->code = code;
  struct sigaction action = {};
  action.sa_sigaction = &onTrap;
  action.sa_flags = SA_SIGINFO;
  sigaction(SIGTRAP, &action, &s_state->previous);
}

conformance::Recorder::~Recorder() {
  take();
  sigaction(SIGTRAP, &s_state->previous, nullptr);
  delete s_state;
  s_state = nullptr;
}

void conformance::Recorder::watch(const Watched& watched) {
  for (const std::uintptr_t address : watched.addresses) {
    const auto known = s_state->entries.find(address);
    if (known == s_state->entries.end()) {
      s_state->entries[address] = watched;
    } else if (known->second.operation != watched.operation) {
      known->second.operation += "\n" + watched.operation;
    }
    plant(address);
  }
}

std::vector<conformance::RecordedCall> conformance::Recorder::take() {
  while (!s_state->bytes.empty()) {
    remove(s_state->bytes.begin()->first);
  }
  s_state->entries.clear();
  s_state->pending.clear();
  std::vector<RecordedCall> calls;
  calls.swap(s_state->calls);
  return calls;
}
