// Draws cars, and builds the one that scenes start with.
#include <vyrOSG/utils.h>

#include "CarVisual.h"
#include "GeometryVisual.h"
#include "ShapeMesh.h"
#include "ShapeNode.h"
#include "Surface.h"

#include <vyr/Notify.h>
#include <vyrCollide/Cylinder.h>
#include <vyrSDK/Simulation.h>
#include <vyrUtil/SimpleCar.h>

#include <cmath>

namespace vyrOSG {

namespace {

const osg::Vec4 kTyreColor(0.16f, 0.16f, 0.17f, 1);
const osg::Vec4 kSpokeColor(0.78f, 0.79f, 0.81f, 1);

} // namespace

osg::ref_ptr<osg::Group> makeWheel(const vyrCollide::Cylinder& cylinder, float detailRatio) {
  osg::ref_ptr<osg::Group> wheel = new osg::Group;
  wheel->setName(kWheelName);
  osg::ref_ptr<osg::Geode> tyre = makeShapeNode(&cylinder, detailRatio);
  surface::setDefaultMaterial(tyre, kTyreColor);
  wheel->addChild(tyre);

  constexpr double kSpokeLength = 0.72;
  constexpr double kSpokeWidth = 0.09;
  constexpr double kStandOut = 1.04;
  constexpr int kSpokes = 3;
  osg::ref_ptr<osg::Geode> spoke = new osg::Geode;
  spoke->addDrawable(mesh::makeBox(osg::Vec3d(kSpokeLength * cylinder.getRadius(), kSpokeWidth * cylinder.getRadius(),
                                              kStandOut * cylinder.getHeight() / 2)));
  osg::ref_ptr<osg::Group> spokes = new osg::Group;
  for (int i = 0; i < kSpokes; ++i) {
    osg::ref_ptr<osg::MatrixTransform> turned = new osg::MatrixTransform;
    turned->setMatrix(osg::Matrixd::rotate(i * osg::PI / kSpokes, osg::Vec3d(0, 0, 1)));
    turned->addChild(spoke);
    spokes->addChild(turned);
  }
  surface::setDefaultMaterial(spokes, kSpokeColor);
  wheel->addChild(spokes);
  return wheel;
}

vyrOSG::Group* createVisual(vyrUtil::SimpleCar* car, vyrOSG::Group* group, float detailRatio) {
  if (!car || !group || !car->isValid())
    return nullptr;
  osg::ref_ptr<vyrOSG::Group> carGroup = new vyrOSG::Group;
  carGroup->setName(car->getName());
  createBodyVisual(car->getChassis(), carGroup.get(), detailRatio, group->getNumChildren());
  for (size_t i = 0; i < vyrUtil::SimpleCar::NUM_WHEELS; ++i) {
    vyr::RigidBody* body = car->getWheel(i);
    vyrOSG::Group* wheelGroup = createBodyVisual(body, carGroup.get(), detailRatio, 0);
    for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body->getGeometries()) {
      GeometryNode* node = findGeometryNode(geometry.get(), wheelGroup);
      const auto* cylinder = dynamic_cast<const vyrCollide::Cylinder*>(geometry->getShape());
      if (node && cylinder)
        node->setRenderChild(GeometryNode::RENDER_DATA, makeWheel(*cylinder, detailRatio).get());
    }
  }
  group->addChild(carGroup.get());
  return carGroup.get();
}

vyrUtil::SimpleCar* createSimpleBoxCar(const vyr::Vec3& size, double mass, vyrSDK::Simulation* simulation,
                                       vyrOSG::Group* group, bool createVisual) {
  for (double number : {size[0], size[1], size[2], mass}) {
    if (!std::isfinite(number) || number <= 0) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::createSimpleBoxCar: the size (" << size << ") or the mass " << mass
                                    << " is no positive number";
      return nullptr;
    }
  }
  vyr::ref_ptr<vyrUtil::SimpleCar> car = new vyrUtil::SimpleCar(size, mass);
  if (!car->isValid())
    return nullptr;
  car->setName("car");
  if (simulation)
    simulation->add(static_cast<vyrSDK::Assembly*>(car.get()));
  if (createVisual)
    vyrOSG::createVisual(car.get(), group);
  return car.release();
}

} // namespace vyrOSG
