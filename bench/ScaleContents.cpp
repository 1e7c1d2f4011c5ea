/// Simulated content of any size: wires, soft ground, contacts, trees.
#include "ScaleContents.h"

#include <vyr/RigidBody.h>
#include <vyrCollide/Box.h>
#include <vyrModel/Terrain.h>
#include <vyrModel/Tree.h>
#include <vyrOSG/ForceArrowRenderer.h>
#include <vyrOSG/PressureRenderer.h>
#include <vyrOSG/TerrainRenderer.h>
#include <vyrOSG/TreeRenderer.h>
#include <vyrOSG/WireRenderer.h>
#include <vyrOSG/utils.h>
#include <vyrWire/Wire.h>

#include <osgUtil/UpdateVisitor>

#include <cmath>
#include <memory>

namespace scale {

namespace {

using vyr::Vec3;

vyr::ref_ptr<vyr::RigidBody> addBox(vyrSDK::Simulation& simulation, const Vec3& place, const Vec3& half, double mass) {
  vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody("box"));
  body->add(new vyrCollide::Geometry(new vyrCollide::Box(half)));
  body->setMass(mass);
  body->setPosition(place);
  simulation.add(body.get());
  return body;
}

/// A slack wire between two fixed places, 0.1 m a segment.
Content makeWire(int segments) {
  Content content;
  const double length = 0.1 * segments;
  vyr::ref_ptr<vyrWire::Wire> wire(new vyrWire::Wire(length, static_cast<std::size_t>(segments), 1));
  content.simulation->add(wire.get());
  wire->attachBegin(nullptr, Vec3(0, 0, 0));
  wire->attachEnd(nullptr, Vec3(0.8 * length, 0, 0));
  vyr::ref_ptr<vyrOSG::WireRenderer> renderer(new vyrOSG::WireRenderer(wire.get(), content.group.get()));
  content.draw = [renderer] { renderer->update(); };
  content.size = [wire] { return wire->getNumSegments(); };
  return content;
}

/// A field of which every part is loaded: a box for each hundred cells.
Content makeTerrain(int cells) {
  Content content;
  const auto side = static_cast<std::size_t>(std::lround(std::sqrt(cells)));
  const double extent = 0.1 * static_cast<double>(side);
  vyr::ref_ptr<vyrModel::Terrain> terrain(
      new vyrModel::Terrain(side + 1, side + 1, extent, extent, vyr::RealVector((side + 1) * (side + 1), 0.0)));
  content.simulation->add(terrain.get());
  const double half = 0.5 * extent;
  for (double x = -half + 0.5; x < half; x += 1)
    for (double y = -half + 0.5; y < half; y += 1)
      addBox(*content.simulation, Vec3(x, y, 0.205), Vec3(0.2, 0.2, 0.2), 100);
  auto renderer = std::make_shared<vyr::ref_ptr<vyrOSG::TerrainRenderer>>();
  vyrOSG::Group* group = content.group.get();
  content.draw = [renderer, terrain, group] {
    // All rows anew: the most that a frame can ask for.
    *renderer = nullptr;
    *renderer = new vyrOSG::TerrainRenderer(terrain.get(), vyr::RangeReal(-1, 1), group);
  };
  content.size = [side] { return side * side; };
  return content;
}

/// Boxes side by side on a floor, the first body: four contacts each.
Content makeBoxes(int contacts, std::vector<vyr::RigidBody*>& outBoxes) {
  Content content;
  const int boxes = (contacts + 3) / 4;
  const int side = static_cast<int>(std::ceil(std::sqrt(boxes)));
  const auto ground = addBox(*content.simulation, Vec3(0, 0, -0.5), Vec3(side, side, 0.5), 1);
  ground->setMotionControl(vyr::RigidBody::STATIC);
  outBoxes.push_back(ground.get());
  for (int i = 0; i < boxes; ++i) {
    const Vec3 place(i % side - 0.5 * side, i / side - 0.5 * side, 0.3);
    outBoxes.push_back(addBox(*content.simulation, place, Vec3(0.3, 0.3, 0.3), 10).get());
  }
  content.simulation->stepTo(0.5);
  const vyr::ref_ptr<vyrSDK::Simulation> simulation = content.simulation;
  content.size = [simulation] { return simulation->getContacts().size(); };
  return content;
}

/// Contacts, drawn as the boxes that touch.
Content makeContacts(int contacts) {
  std::vector<vyr::RigidBody*> boxes;
  Content content = makeBoxes(contacts, boxes);
  for (vyr::RigidBody* box : boxes)
    vyrOSG::createVisual(box, content.group.get());
  const osg::ref_ptr<vyrOSG::Group> group = content.group;
  content.draw = [group] {
    osgUtil::UpdateVisitor visitor;
    visitor.setFrameStamp(new osg::FrameStamp);
    group->accept(visitor);
  };
  return content;
}

/// Contacts, drawn as the pressure on the floor; a step makes the pressure, too.
Content makePressure(int contacts) {
  std::vector<vyr::RigidBody*> boxes;
  Content content = makeBoxes(contacts, boxes);
  vyrRender::ColorVector colors;
  colors.push_back(vyr::Vec4(0, 0, 1, 1));
  colors.push_back(vyr::Vec4(1, 0, 0, 1));
  vyr::ref_ptr<vyrOSG::PressureRenderer> renderer(
      new vyrOSG::PressureRenderer(content.group.get(), nullptr, content.simulation.get(), 0, 1000, colors));
  renderer->addGeometry(boxes.front()->getGeometries().front().get());
  content.draw = [renderer] { renderer->update(); };
  return content;
}

/// Contacts, drawn as an arrow on each box; a step measures the forces, too.
Content makeArrows(int contacts) {
  std::vector<vyr::RigidBody*> boxes;
  Content content = makeBoxes(contacts, boxes);
  vyr::ref_ptr<vyrOSG::ForceArrowRenderer> renderer(new vyrOSG::ForceArrowRenderer);
  for (vyr::RigidBody* box : boxes)
    renderer->add(box, Vec3());
  content.group->addChild(renderer->getArrowGroup());
  content.draw = [renderer] { renderer->update(0, 0); };
  return content;
}

/// One tree in the wind, from a sapling to a giant of 60 m. Limbs that find no room in the crown are not grown: the
/// size that is printed counts those that are there.
Content makeTree(int branches) {
  vyrModel::TreeParameters parameters;
  if (branches <= 10) {
    parameters.levels = 2;
    parameters.trunkSegments = 2;
    parameters.boughs = 8;
  } else if (branches <= 100) {
    parameters.boughs = 9;
    parameters.branches = 10;
  } else {
    const bool isGiant = branches > 1000;
    parameters.levels = 4;
    parameters.trunkSegments = 8;
    parameters.height = isGiant ? 60 : 12;
    parameters.trunkRadius = isGiant ? 1.0 : 0.3;
    parameters.lengthRatio = isGiant ? 0.2 : 0.3;
    parameters.boughs = isGiant ? 64 : 20;
    parameters.branches = isGiant ? 16 : 9;
  }
  parameters.leavesPerMeter = 4;
  Content content;
  vyr::ref_ptr<vyrModel::Tree> tree(new vyrModel::Tree);
  tree->grow(parameters, 3);
  tree->setWind(Vec3(8, 0, 0));
  tree->addTo(content.simulation.get());
  vyr::ref_ptr<vyrOSG::TreeRenderer> renderer(new vyrOSG::TreeRenderer(tree.get(), content.group.get()));
  content.draw = [renderer] { renderer->update(); };
  content.size = [tree] { return tree->getNumBranches(); };
  return content;
}

} // namespace

std::vector<std::pair<std::string, Maker>> makers() {
  return {{"wire", makeWire},
          {"terrain", makeTerrain},
          {"contacts", makeContacts},
          {"contacts.pressure", makePressure},
          {"contacts.arrows", makeArrows},
          {"tree", makeTree}};
}

} // namespace scale
