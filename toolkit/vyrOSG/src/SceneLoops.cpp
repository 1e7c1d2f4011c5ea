// Looks for a node above another one, each node once, however many paths lead to it.
#include <vyrOSG/SceneLoops.h>

#include <osg/Group>

#include <set>
#include <vector>

namespace vyrOSG {

bool wouldLoop(const osg::Group* parent, const osg::Node* child) {
  // What has no children of its own stands above nothing.
  if (!parent || !child || !child->asGroup() || (child != parent && child->asGroup()->getNumChildren() == 0))
    return false;
  std::set<const osg::Node*> seen = {parent};
  std::vector<const osg::Node*> waiting = {parent};
  while (!waiting.empty()) {
    const osg::Node* node = waiting.back();
    waiting.pop_back();
    if (node == child)
      return true;
    for (unsigned int i = 0; i < node->getNumParents(); ++i) {
      if (seen.insert(node->getParent(i)).second)
        waiting.push_back(node->getParent(i));
    }
  }
  return false;
}

} // namespace vyrOSG
