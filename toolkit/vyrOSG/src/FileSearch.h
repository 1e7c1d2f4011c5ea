/// Looks for a file where the scene-graph library would, and remembers every path tried for the error message.
#pragma once

#include <osgDB/Options>

#include <string>
#include <vector>

namespace vyrOSG {

/// The outcome of a search. The order of places: the name as it stands, the given folder, the options' own paths, the
/// data file path (OSG_FILE_PATH); in each also the bare file name, as the scene-graph library does.
class FileSearch {
public:
  /// Nullable: `options`. `folder` may be empty.
  explicit FileSearch(const std::string& fileName, const std::string& folder = std::string(),
                      const osgDB::Options* options = nullptr);

  bool isFound() const { return !m_path.empty(); }
  /// The path that exists; empty when none does.
  const std::string& getPath() const { return m_path; }
  /// Every path that was tried, separated by commas.
  std::string getTried() const;

private:
  bool tryPath(const std::string& path);
  bool tryFolder(const std::string& folder, const std::string& fileName);

  std::string m_path;
  std::vector<std::string> m_tried;
};

} // namespace vyrOSG
