// The way from the application to whatever can build a scene out of a file, without the application knowing how.
#pragma once

#include <vyrOSG/export.h>

#include <vyr/Referenced.h>

#include <string>

namespace vyrSDK {
class Simulation;
}
namespace vyrOSG {
class ExampleApplication;
class Group;
} // namespace vyrOSG

namespace vyrIO {

/// Builds scenes: a host implements it with the script language that it speaks.
class VYROSG_EXPORT CFGSceneLoader : public vyr::Referenced {
public:
  /// Runs the scene function @p function of the file @p file, which fills @p simulation and hangs its visuals under
  /// @p root (each *borrows*). True when the scene stands; otherwise @p error says why, naming file and line.
  virtual bool loadScene(const std::string& file, const std::string& function, vyrSDK::Simulation* simulation,
                         vyrOSG::ExampleApplication* application, vyrOSG::Group* root, std::string& error) = 0;

protected:
  ~CFGSceneLoader() override;
};

} // namespace vyrIO
