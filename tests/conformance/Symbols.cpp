// Reads the tables from the files: the dynamic linker's own look-up knows neither local functions nor readable names.
#include "Symbols.h"

#include <cxxabi.h>
#include <elf.h>
#include <link.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace {

struct Library {
  std::string file;
  std::uintptr_t base;
};

int addLibrary(dl_phdr_info* info, std::size_t, void* list) {
  const std::string file = info->dlpi_name != nullptr ? info->dlpi_name : "";
  const std::string name = file.substr(file.rfind('/') + 1);
  for (const char* part : {"libvyr", "libosg", "libOpenThreads"}) {
    if (name.compare(0, std::strlen(part), part) == 0) {
      static_cast<std::vector<Library>*>(list)->push_back({file, info->dlpi_addr});
      break;
    }
  }
  return 0;
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

std::string readable(const char* symbol) {
  int status = 0;
  char* demangled = abi::__cxa_demangle(symbol, nullptr, nullptr, &status);
  if (status != 0) {
    return "";
  }
  std::string text = demangled;
  std::free(demangled);
  replaceAll(text, "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >", "std::string");
  replaceAll(text, "[abi:cxx11]", "");
  return text;
}

/// The name of an instance of a function template without result type and template arguments; "" for other functions.
std::string withoutTemplate(const std::string& name) {
  std::size_t start = 0;
  std::size_t argumentsFrom = std::string::npos;
  int depth = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '<' && depth++ == 0) {
      argumentsFrom = i;
    } else if (name[i] == '>') {
      --depth;
    } else if (name[i] == ' ' && depth == 0) {
      start = i + 1;
    } else if (name[i] == '(' && depth == 0) {
      const bool isTemplate =
          start > 0 && argumentsFrom > start && argumentsFrom != std::string::npos && name[i - 1] == '>';
      return isTemplate ? name.substr(start, argumentsFrom - start) + name.substr(i) : "";
    }
  }
  return "";
}

} // namespace

conformance::Symbols::Symbols() {
  std::vector<Library> libraries;
  dl_iterate_phdr(&addLibrary, &libraries);
  for (const Library& library : libraries) {
    std::ifstream stream(library.file, std::ios::binary | std::ios::ate);
    std::vector<char> file(stream.good() ? static_cast<std::size_t>(stream.tellg()) : 0);
    stream.seekg(0);
    stream.read(file.data(), static_cast<std::streamsize>(file.size()));
    if (file.size() < sizeof(Elf64_Ehdr)) {
      continue;
    }
    const auto* header = reinterpret_cast<const Elf64_Ehdr*>(file.data());
    const auto* sections = reinterpret_cast<const Elf64_Shdr*>(file.data() + header->e_shoff);
    for (int i = 0; i < header->e_shnum; ++i) {
      if (sections[i].sh_type != SHT_SYMTAB && sections[i].sh_type != SHT_DYNSYM) {
        continue;
      }
      const char* names = file.data() + sections[sections[i].sh_link].sh_offset;
      const auto* symbols = reinterpret_cast<const Elf64_Sym*>(file.data() + sections[i].sh_offset);
      for (std::size_t s = 0; s < sections[i].sh_size / sizeof(Elf64_Sym); ++s) {
        const Elf64_Sym& symbol = symbols[s];
        const char* name = names + symbol.st_name;
        if (ELF64_ST_TYPE(symbol.st_info) != STT_FUNC || symbol.st_shndx == SHN_UNDEF ||
            std::strncmp(name, "_Z", 2) != 0) {
          continue;
        }
        const std::string full = readable(name);
        add(full, library.base + symbol.st_value);
        m_names[library.base + symbol.st_value] = full;
        if (full.find('>') != std::string::npos && full.find("operator") == std::string::npos) {
          const std::string shorter = withoutTemplate(full);
          if (!shorter.empty()) {
            add(shorter, library.base + symbol.st_value);
          }
        }
      }
    }
  }
}

void conformance::Symbols::add(const std::string& name, std::uintptr_t address) {
  std::vector<std::uintptr_t>& list = m_functions[name];
  if (std::find(list.begin(), list.end(), address) == list.end()) {
    list.push_back(address);
  }
}

std::string conformance::Symbols::at(std::uintptr_t address) const {
  const auto found = m_names.find(address);
  return found != m_names.end() ? found->second : "";
}

std::vector<std::string> conformance::Symbols::named(const std::string& name) const {
  std::vector<std::string> result;
  const std::string start = name + "(";
  for (auto at = m_functions.lower_bound(start);
       at != m_functions.end() && at->first.compare(0, start.size(), start) == 0; ++at) {
    result.push_back(at->first);
  }
  return result;
}

std::vector<std::uintptr_t> conformance::Symbols::addresses(const std::string& fullName) const {
  const auto found = m_functions.find(fullName);
  return found != m_functions.end() ? found->second : std::vector<std::uintptr_t>();
}

namespace {

struct CodeSearch {
  std::uintptr_t address;
  std::pair<std::uintptr_t, std::uintptr_t> found;
};

int searchCode(dl_phdr_info* info, std::size_t, void* data) {
  auto* search = static_cast<CodeSearch*>(data);
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const ElfW(Phdr)& part = info->dlpi_phdr[i];
    const std::uintptr_t first = info->dlpi_addr + part.p_vaddr;
    if (part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0 && search->address >= first &&
        search->address < first + part.p_memsz) {
      search->found = {first, first + part.p_memsz - 1};
      return 1;
    }
  }
  return 0;
}

} // namespace

std::pair<std::uintptr_t, std::uintptr_t> conformance::codeAround(std::uintptr_t address) {
  CodeSearch search{address, {0, 0}};
  dl_iterate_phdr(&searchCode, &search);
  return search.found;
}
