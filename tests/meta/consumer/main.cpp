/// Drops a ball with the installed toolkit and looks for its picture's node.
#include <vyrLua/ScriptManager.h>
#include <vyrOSG/SimulationObject.h>
#include <vyrSDK/Simulation.h>

#include <cstdio>

int main() {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  osg::ref_ptr<vyrOSG::Group> root = new vyrOSG::Group;
  const vyrOSG::SimulationObject ball =
      vyrOSG::SimulationObject::createSphere("ball", vyr::AffineMatrix4x4::translate(0, 0, 10), 0.5, root,
                                             simulation.get(), vyr::RigidBody::DYNAMICS, true, true);
  simulation->stepTo(1);
  const double height = ball.body->getPosition().z();
  std::printf("the ball is at %.2f m, the scene has %u nodes\n", height, root->getNumChildren());
  return height < 5.2 && height > 5.0 && root->getNumChildren() == 1 ? 0 : 1;
}
