/// The line that shows the simulation's time.
#include "CapturedMessages.h"

#include <vyrOSG/SceneDecorator.h>
#include <vyrOSG/SimulationTimePrinter.h>
#include <vyrSDK/Simulation.h>

#include <gtest/gtest.h>

namespace {

using vyrOSG::HudTextManager;
using vyrOSG::SimulationTimePrinter;

class SimulationTimePrinterTest : public testing::Test {
protected:
  osg::ref_ptr<vyrOSG::SceneDecorator> decorator{new vyrOSG::SceneDecorator(320, 240)};
  vyr::ref_ptr<HudTextManager> manager{new HudTextManager(decorator.get())};
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
};

TEST_F(SimulationTimePrinterTest, PrintsTheTimeOfItsSimulation) {
  const vyr::ref_ptr<SimulationTimePrinter> printer = new SimulationTimePrinter(manager.get());
  ASSERT_TRUE(simulation->add(printer.get()));
  simulation->setTimeStep(0.25);
  simulation->updateGui(0, 0);
  EXPECT_EQ(decorator->getText(0), "Time: 0.000 s");
  for (int i = 0; i < 5; ++i)
    simulation->step();
  printer->update(1.5f, 2.5f);
  EXPECT_EQ(decorator->getText(0), "Time: 1.250 s");
  simulation->step();
  printer->updateHud();
  EXPECT_EQ(decorator->getText(0), "Time: 1.500 s");
}

TEST_F(SimulationTimePrinterTest, TakesTheManagersSimulationWithoutOneOfItsOwn) {
  const vyr::ref_ptr<SimulationTimePrinter> printer = new SimulationTimePrinter(manager.get());
  printer->updateHud();
  EXPECT_EQ(decorator->getText(0), "");
  simulation->add(manager.get());
  printer->updateHud();
  EXPECT_EQ(decorator->getText(0), "Time: 0.000 s");
  simulation->remove(manager.get());
  printer->updateHud();
  EXPECT_EQ(decorator->getText(0), "");
}

TEST_F(SimulationTimePrinterTest, TakesItsLineAlongWhenItGoes) {
  vyr::ref_ptr<SimulationTimePrinter> printer = new SimulationTimePrinter(manager.get());
  simulation->add(printer.get());
  printer->updateHud();
  EXPECT_EQ(manager->getLines().size(), 1u);
  simulation->clear();
  printer = nullptr;
  EXPECT_EQ(manager->getLines().size(), 0u);
}

TEST_F(SimulationTimePrinterTest, WithoutAManagerNothingHappens) {
  CapturedMessages messages;
  const vyr::ref_ptr<SimulationTimePrinter> printer = new SimulationTimePrinter(nullptr);
  printer->update(0, 0);
  EXPECT_TRUE(messages.take().empty());
}

} // namespace
