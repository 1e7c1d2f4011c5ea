/// The uniforms that a shader state or a render state keeps: one a name, in the order in which they were added.
#pragma once

#include <osg/Uniform>
#include <osg/ref_ptr>

#include <string>
#include <vector>

namespace vyrOSG {

using UniformList = std::vector<osg::ref_ptr<osg::Uniform>>;

/// Adds or replaces by name. Null: one error line that names `owner`.
void addToList(UniformList& list, osg::Uniform* uniform, const std::string& owner);
/// Nullable: there is none of that name. *returns inner*
osg::Uniform* findInList(const UniformList& list, const std::string& name);

} // namespace vyrOSG
