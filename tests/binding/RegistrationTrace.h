/// Records every registration that open functions make, by standing in front of the runtime's functions.
#pragma once

#include <string>
#include <vector>

namespace bindingtest {

/// The calls since the last clear, one text each: "usertype vyr::Vec3", "cclass Node osg::Node base= collector", ...
/// Two blanks a level stand before what belongs into an opened table.
std::vector<std::string>& registrationTrace();

} // namespace bindingtest
