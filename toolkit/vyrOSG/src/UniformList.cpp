/// Adding to and searching in a list of uniforms.
#include "UniformList.h"

#include <vyr/Notify.h>

namespace vyrOSG {

void addToList(UniformList& list, osg::Uniform* uniform, const std::string& owner) {
  if (!uniform) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "state \"" << owner << "\": a uniform to add is null";
    return;
  }
  for (osg::ref_ptr<osg::Uniform>& held : list) {
    if (held->getName() == uniform->getName()) {
      held = uniform;
      return;
    }
  }
  list.push_back(uniform);
}

osg::Uniform* findInList(const UniformList& list, const std::string& name) {
  for (const osg::ref_ptr<osg::Uniform>& held : list)
    if (held->getName() == name)
      return held.get();
  return nullptr;
}

} // namespace vyrOSG
