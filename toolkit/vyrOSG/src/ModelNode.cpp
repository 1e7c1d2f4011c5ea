/// Finds the plugin for a model, looks at the file first, and says why it could not be read.
#include "ModelNode.h"

#include "Look.h"
#include "ModelCheck.h"
#include "ReaderMessages.h"

#include <osgDB/FileNameUtils>
#include <osgDB/Registry>

#include <set>

namespace vyrOSG {

namespace {

/// Endings that plugins read without the library knowing which plugin that is.
bool addEndings() {
  osgDB::Registry* registry = osgDB::Registry::instance();
  registry->addFileExtensionAlias("osgz", "gz");
  registry->addFileExtensionAlias("asc", "3dc");
  return true;
}

/// The name before an ending that changes the model: "car.obj.2.scale" and "car.obj.(0.5).scale" become "car.obj". The
/// same name, where it ends otherwise.
std::string withoutChange(const std::string& fileName) {
  static const std::set<std::string> s_withNumbers = {"scale", "rot", "trans"};
  static const std::set<std::string> s_alone = {"normals", "osgshadow", "shadow", "gz"};
  const std::string ending = osgDB::getLowerCaseFileExtension(fileName);
  std::string name = osgDB::getNameLessExtension(fileName);
  if (s_alone.count(ending) != 0)
    return name;
  if (s_withNumbers.count(ending) == 0)
    return fileName;
  const std::size_t open = !name.empty() && name.back() == ')' ? name.rfind(".(") : std::string::npos;
  return open == std::string::npos ? osgDB::getNameLessExtension(name) : name.substr(0, open);
}

/// The endings that change a model: ".2.scale" of "car.obj.2.scale".
std::string changesIn(const std::string& fileName) {
  std::string inner = fileName;
  while (inner != withoutChange(inner))
    inner = withoutChange(inner);
  return fileName.substr(inner.size());
}

} // namespace

FileSearch findModel(const std::string& fileName, const osgDB::Options* options) {
  FileSearch search(fileName, "", options);
  const std::string inner = withoutChange(fileName);
  return search.isFound() || inner == fileName ? search : findModel(inner, options);
}

osg::ref_ptr<osg::Node> readModelNode(const std::string& fileName, const osgDB::Options* options,
                                      std::string& outProblem) {
  static const bool s_knowsEndings = addEndings();
  static_cast<void>(s_knowsEndings);
  const FileSearch search = findModel(fileName, options);
  if (search.isFound() && !isSoundModel(search.getPath(), outProblem))
    return nullptr;
  ReaderMessages messages(fileName);
  osgDB::Registry* registry = osgDB::Registry::instance();
  osgDB::ReaderWriter::ReadResult result = registry->readNode(fileName, options ? options : registry->getOptions());
  osg::ref_ptr<osg::Node> node = result.getNode();
  if (node) {
    rememberFile(*node, search.getPath() + changesIn(fileName));
    return node;
  }
  const std::string ending = osgDB::getLowerCaseFileExtension(fileName);
  outProblem = messages.takeReason();
  if (!registry->getReaderWriterForExtension(ending))
    outProblem = "there is no plugin for files that end in '." + ending + "'";
  else if (outProblem.empty())
    outProblem = result.message().empty() ? "it is no model of the format of its ending" : result.message();
  return nullptr;
}

} // namespace vyrOSG
