/// Makes objects that functions of the visual layer ask for.
#pragma once

#include <vyr/Constraint1DOF.h>
#include <vyr/Notify.h>
#include <vyr/Vector.h>
#include <vyr/observer_ptr.h>

#include <osg/Image>
#include <osgDB/Options>
#include <osgDB/Registry>

#include <string>

namespace vyr {

/// The visual layer has the same class under a name of its own.
using Constraint1DOFVector = Vector<observer_ptr<Constraint1DOF>, ByteAllocator>;

} // namespace vyr

namespace vyrScript {

/// Reads a picture. *returns new*; Nullable: one error message names a file that cannot be read.
inline osg::Image* readImage(const std::string& fileName) {
  osgDB::Registry* const registry = osgDB::Registry::instance();
  osg::ref_ptr<osg::Image> image = registry->readImage(fileName, registry->getOptions()).getImage();
  if (image && image->data()) {
    return image.release();
  }
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "osg.Image: cannot read '" << fileName << "'";
  return nullptr;
}

inline void addFolder(osgDB::Options* options, const std::string& folder) {
  options->getDatabasePathList().push_back(folder);
}

/// False for null.
inline bool addConstraint(vyr::Constraint1DOFVector* constraints, vyr::Constraint1DOF* constraint) {
  if (constraint == nullptr) {
    return false;
  }
  constraints->push_back(vyr::observer_ptr<vyr::Constraint1DOF>(constraint));
  return true;
}

} // namespace vyrScript
