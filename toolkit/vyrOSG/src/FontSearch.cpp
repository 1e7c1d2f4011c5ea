/// The search for fonts. The text library has one of its own, which does not tell where it looked.
#include "FontSearch.h"

#include "FileSearch.h"

#include <osgDB/FileNameUtils>

#include <cstdlib>
#include <filesystem>
#include <vector>

namespace vyrOSG {

namespace {

const char* const kExtensions[] = {".ttf", ".otf", ".ttc", ".pfb"};

// A name without one of the usual extensions is tried as it stands and with each of them: "Vera.Bold" is a name too.
std::vector<std::string> fileNames(const std::string& name) {
  std::vector<std::string> names{name};
  const std::string extension = osgDB::convertToLowerCase(osgDB::getFileExtensionIncludingDot(name));
  for (const char* known : kExtensions)
    if (extension == known)
      return names;
  for (const char* known : kExtensions)
    names.push_back(name + known);
  return names;
}

std::vector<std::string> systemFolders() {
  std::vector<std::string> folders{"/usr/share/fonts", "/usr/local/share/fonts"};
  if (const char* home = std::getenv("HOME")) {
    folders.push_back(std::string(home) + "/.local/share/fonts");
    folders.push_back(std::string(home) + "/.fonts");
  }
  return folders;
}

// System folders are trees: a file counts wherever it lies below them, in the case that the user happened to write.
std::string findBelow(const std::string& folder, const std::string& fileName) {
  namespace fs = std::filesystem;
  const std::string wanted = osgDB::convertToLowerCase(osgDB::getSimpleFileName(fileName));
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error), end;
  for (; !error && entry != end; entry.increment(error))
    if (osgDB::convertToLowerCase(entry->path().filename().string()) == wanted && entry->is_regular_file(error))
      return entry->path().string();
  return std::string();
}

} // namespace

osg::ref_ptr<osgText::Font> findFont(const std::string& name, std::string& outTried) {
  outTried.clear();
  if (name.empty())
    return nullptr;
  const std::vector<std::string> names = fileNames(name);
  const auto note = [&outTried](const std::string& paths) { outTried += (outTried.empty() ? "" : ", ") + paths; };

  for (const std::string& fileName : names) {
    for (const std::string& candidate : {fileName, "fonts/" + fileName}) {
      const FileSearch search(candidate);
      note(search.getTried());
      if (!search.isFound())
        continue;
      if (osg::ref_ptr<osgText::Font> font = osgText::readRefFontFile(search.getPath()))
        return font;
    }
  }
  for (const std::string& folder : systemFolders()) {
    for (const std::string& fileName : names) {
      const std::string path = findBelow(folder, fileName);
      note(path.empty() ? folder + "/.../" + osgDB::getSimpleFileName(fileName) : path);
      if (path.empty())
        continue;
      if (osg::ref_ptr<osgText::Font> font = osgText::readRefFontFile(path))
        return font;
    }
  }
  return nullptr;
}

} // namespace vyrOSG
