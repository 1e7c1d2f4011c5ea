/// An empty folder that is removed with everything in it.
#pragma once

#include <filesystem>
#include <string>
#include <unistd.h>

/// Each object makes a folder of its own below the system's folder for temporary files.
class TemporaryFolder {
public:
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "vyr-test-XXXXXX").string();
    m_path = mkdtemp(pattern.data());
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path() const { return m_path.string(); }
  std::string operator/(const std::string& name) const { return (m_path / name).string(); }

  /// The number of files directly inside a folder, 0 where it is missing.
  static std::size_t countFiles(const std::string& folder) {
    std::error_code missing;
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder, missing))
      count += entry.is_regular_file() ? 1 : 0;
    return count;
  }

private:
  std::filesystem::path m_path;
};
