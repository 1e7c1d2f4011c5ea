/// The line that shows that the simulation is paused.
#include "CapturedMessages.h"

#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/SceneDecorator.h>
#include <vyrOSG/SimulationPausedPrinter.h>

#include <gtest/gtest.h>

namespace {

using vyrOSG::HudTextManager;
using vyrOSG::SimulationPausedPrinter;

class SimulationPausedPrinterTest : public testing::Test {
protected:
  CapturedMessages messages;
  osg::ref_ptr<vyrOSG::SceneDecorator> decorator{new vyrOSG::SceneDecorator(320, 240)};
  vyr::ref_ptr<HudTextManager> manager{new HudTextManager(decorator.get())};
  vyr::ref_ptr<vyrOSG::ExampleApplication> application{new vyrOSG::ExampleApplication};
};

TEST_F(SimulationPausedPrinterTest, TheLineFollowsTheApplication) {
  const vyr::ref_ptr<SimulationPausedPrinter> printer = new SimulationPausedPrinter(manager.get(), application.get());
  application->setAutoStepping(true);
  printer->update(0, 0);
  EXPECT_EQ(decorator->getText(0), "");
  application->setAutoStepping(false);
  printer->update(0, 0);
  EXPECT_EQ(decorator->getText(0), "Paused");
  application->setAutoStepping(true);
  printer->updateHud();
  EXPECT_EQ(decorator->getText(0), "");
}

TEST_F(SimulationPausedPrinterTest, IsCalledForEachFrameOfTheSimulation) {
  const vyr::ref_ptr<SimulationPausedPrinter> printer = new SimulationPausedPrinter(manager.get(), application.get());
  ASSERT_TRUE(application->getSimulation()->add(printer.get()));
  application->setAutoStepping(false);
  application->getSimulation()->updateGui(10, 20);
  EXPECT_EQ(decorator->getText(0), "Paused");
}

TEST_F(SimulationPausedPrinterTest, TheApplicationMayGo) {
  const vyr::ref_ptr<SimulationPausedPrinter> printer = new SimulationPausedPrinter(manager.get(), application.get());
  application->setAutoStepping(false);
  EXPECT_EQ(application->getReferenceCount(), 1);
  application = nullptr;
  printer->updateHud();
  EXPECT_EQ(decorator->getText(0), "");
}

TEST_F(SimulationPausedPrinterTest, WithoutManagerOrApplicationNothingHappens) {
  const vyr::ref_ptr<SimulationPausedPrinter> alone = new SimulationPausedPrinter(nullptr, nullptr);
  alone->update(0, 0);
  EXPECT_EQ(decorator->getText(0), "");
  EXPECT_TRUE(messages.take().empty());
}

TEST_F(SimulationPausedPrinterTest, AnOverrideIsTheOneThatUpdateRuns) {
  class Louder : public SimulationPausedPrinter {
  public:
    using SimulationPausedPrinter::SimulationPausedPrinter;
    void updateHud() override { ++calls; }
    int calls = 0;
  };
  const vyr::ref_ptr<Louder> louder = new Louder(manager.get(), application.get());
  vyrSDK::GuiEventListener* listener = louder.get();
  listener->update(0, 0);
  EXPECT_EQ(louder->calls, 1);
}

} // namespace
