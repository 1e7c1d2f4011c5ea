/// Simulated content of any size, for measurements of how its cost grows.
#pragma once

#include <vyrOSG/Group.h>
#include <vyrSDK/Simulation.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace scale {

/// A simulation with one kind of content, and its drawing.
struct Content {
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  std::function<void()> draw;        ///< brings the drawing up to the simulation
  std::function<std::size_t()> size; ///< how many parts there are
};

/// Makes content of about so many parts.
using Maker = std::function<Content(int)>;

/// All kinds of content by name.
std::vector<std::pair<std::string, Maker>> makers();

} // namespace scale
