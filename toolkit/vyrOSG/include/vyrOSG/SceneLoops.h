/// Tells whether an addition would make a scene graph endless.
#pragma once

#include <vyrOSG/export.h>

namespace osg {
class Group;
class Node;
} // namespace osg

namespace vyrOSG {

/// Whether `child` is `parent` or stands above it, so that it must not become its child: every traversal would follow
/// such a graph until the stack ends. Nullable: both; nothing loops through null.
VYROSG_EXPORT bool wouldLoop(const osg::Group* parent, const osg::Node* child);

} // namespace vyrOSG
