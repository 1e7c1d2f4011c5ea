/// The search for files along the scene-graph library's paths.
#include "FileSearch.h"

#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>
#include <osgDB/Registry>

#include <algorithm>

namespace vyrOSG {

FileSearch::FileSearch(const std::string& fileName, const std::string& folder, const osgDB::Options* options) {
  if (fileName.empty() || tryPath(fileName) || (!folder.empty() && tryFolder(folder, fileName)))
    return;
  if (options)
    for (const std::string& place : options->getDatabasePathList())
      if (tryFolder(place, fileName))
        return;
  for (const std::string& place : osgDB::Registry::instance()->getDataFilePathList())
    if (tryFolder(place, fileName))
      return;
}

std::string FileSearch::getTried() const {
  std::string text;
  for (const std::string& path : m_tried)
    text += (text.empty() ? "" : ", ") + path;
  return text;
}

bool FileSearch::tryPath(const std::string& path) {
  if (std::find(m_tried.begin(), m_tried.end(), path) != m_tried.end())
    return false;
  m_tried.push_back(path);
  if (osgDB::fileType(path) != osgDB::REGULAR_FILE)
    return false;
  m_path = path;
  return true;
}

bool FileSearch::tryFolder(const std::string& folder, const std::string& fileName) {
  if (!osgDB::isAbsolutePath(fileName) && tryPath(osgDB::concatPaths(folder, fileName)))
    return true;
  return tryPath(osgDB::concatPaths(folder, osgDB::getSimpleFileName(fileName)));
}

} // namespace vyrOSG
