// The modules SimulationPausedPrinter and SimulationTimePrinter: every row, virtual calls, ownership.
#include "CallChecks.h"

#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/SceneDecorator.h>
#include <vyrOSG/SimulationPausedPrinter.h>
#include <vyrOSG/SimulationTimePrinter.h>

namespace {

class SimulationPrinters : public bindingtest::CallChecks {
protected:
  SimulationPrinters() {
    set("hud", manager.get(), "vyrOSG::HudTextManager");
    set("app", application.get(), "vyrOSG::ExampleApplication");
    lua.run("paused = vyrOSG.SimulationPausedPrinter(hud, app) time = vyrOSG.SimulationTimePrinter(hud)");
  }

  osg::ref_ptr<vyrOSG::SceneDecorator> decorator{new vyrOSG::SceneDecorator(320, 240)};
  vyr::ref_ptr<vyrOSG::HudTextManager> manager{new vyrOSG::HudTextManager(decorator.get())};
  vyr::ref_ptr<vyrOSG::ExampleApplication> application{new vyrOSG::ExampleApplication};
};

TEST_F(SimulationPrinters, AreBuiltThreeWays) {
  lua.run("a = vyrOSG.SimulationPausedPrinter:new(hud, app) b = vyrOSG.SimulationPausedPrinter:new_local(nil, nil)");
  EXPECT_EQ("vyrOSG::SimulationPausedPrinter vyrOSG::SimulationPausedPrinter vyrOSG::SimulationPausedPrinter",
            lua.eval("a, b, paused"));
  const vyr::ref_ptr<vyrOSG::SimulationPausedPrinter> keepPaused = global<vyrOSG::SimulationPausedPrinter>("a");
  EXPECT_EQ(1, keepPaused->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::SimulationPausedPrinter>("b")->getReferenceCount());
  lua.run("c = vyrOSG.SimulationTimePrinter:new(hud) d = vyrOSG.SimulationTimePrinter:new_local(nil)");
  EXPECT_EQ("vyrOSG::SimulationTimePrinter vyrOSG::SimulationTimePrinter vyrOSG::SimulationTimePrinter",
            lua.eval("c, d, time"));
  const vyr::ref_ptr<vyrOSG::SimulationTimePrinter> keepTime = global<vyrOSG::SimulationTimePrinter>("c");
  EXPECT_EQ(1, keepTime->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::SimulationTimePrinter>("d")->getReferenceCount());
  for (const char* call : {"vyrOSG.SimulationPausedPrinter:new(hud)",
                           "vyrOSG.SimulationPausedPrinter:new_local(app, hud)", "vyrOSG.SimulationPausedPrinter()",
                           "vyrOSG.SimulationPausedPrinter(hud, app, 1)", "vyrOSG.SimulationTimePrinter:new()",
                           "vyrOSG.SimulationTimePrinter:new_local(app)", "vyrOSG.SimulationTimePrinter(hud, app)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(SimulationPrinters, WriteTheirLines) {
  application->setAutoStepping(false);
  EXPECT_EQ("", lua.run("return paused:updateHud()"));
  EXPECT_EQ("Paused", decorator->getText(0));
  application->setAutoStepping(true);
  EXPECT_EQ("", lua.run("return paused:update(1, 2.5)"));
  EXPECT_EQ("", decorator->getText(0));
  application->getSimulation()->add(manager.get());
  EXPECT_EQ("", lua.run("return time:updateHud()"));
  EXPECT_EQ("Time: 0.000 s", decorator->getText(0));
  application->getSimulation()->setTime(2.5);
  EXPECT_EQ("", lua.run("return time:update(1, 2)"));
  EXPECT_EQ("Time: 2.500 s", decorator->getText(0));
}

/// Remembers what the script's call brought.
template <class Printer>
class Probe : public Printer {
public:
  using Printer::Printer;
  void updateHud() override { ++hudUpdates; }
  void update(float x, float y) override {
    position[0] = x;
    position[1] = y;
  }
  int hudUpdates = 0;
  float position[2] = {0, 0};
};

TEST_F(SimulationPrinters, CallsAreVirtualAndPositionsSinglePrecision) {
  const vyr::ref_ptr<Probe<vyrOSG::SimulationTimePrinter>> timeProbe =
      new Probe<vyrOSG::SimulationTimePrinter>(manager.get());
  set("probe", static_cast<vyrOSG::SimulationTimePrinter*>(timeProbe.get()), "vyrOSG::SimulationTimePrinter");
  lua.run("probe:updateHud() probe:update(0.1, -2)");
  EXPECT_EQ(1, timeProbe->hudUpdates);
  EXPECT_EQ(0.1f, timeProbe->position[0]);
  EXPECT_EQ(-2.0f, timeProbe->position[1]);
  const vyr::ref_ptr<Probe<vyrOSG::SimulationPausedPrinter>> pausedProbe =
      new Probe<vyrOSG::SimulationPausedPrinter>(manager.get(), application.get());
  set("probe", static_cast<vyrOSG::SimulationPausedPrinter*>(pausedProbe.get()), "vyrOSG::SimulationPausedPrinter");
  lua.run("probe:updateHud() probe:update(3, 4)");
  EXPECT_EQ(1, pausedProbe->hudUpdates);
  EXPECT_EQ(4.0f, pausedProbe->position[1]);
}

TEST_F(SimulationPrinters, AListenerOfTheSimulationOutlivesLua) {
  const vyr::observer_ptr<vyrOSG::SimulationTimePrinter> printer = global<vyrOSG::SimulationTimePrinter>("time");
  const vyr::observer_ptr<vyrOSG::SimulationPausedPrinter> alone = global<vyrOSG::SimulationPausedPrinter>("paused");
  application->getSimulation()->add(printer.get());
  EXPECT_EQ(2, printer->getReferenceCount());
  lua.run("time, paused = nil, nil");
  lua.collect();
  EXPECT_FALSE(alone.valid());
  ASSERT_TRUE(printer.valid());
  EXPECT_EQ(1, printer->getReferenceCount());
  application->getSimulation()->clear();
  EXPECT_FALSE(printer.valid());
}

constexpr bindingtest::Call kCalls[] = {{"updateHud", ""}, {"update", "1, 2"}};

TEST_F(SimulationPrinters, EveryFunctionRefusesForeignAndNullSelfAndSurplus) {
  expectRefusals("vyrOSG.SimulationPausedPrinter", "paused", "vyrOSG::SimulationPausedPrinter", kCalls);
  expectRefusals("vyrOSG.SimulationTimePrinter", "time", "vyrOSG::SimulationTimePrinter", kCalls);
  const vyr::ref_ptr<vyrOSG::SimulationTimePrinter> readOnly = new vyrOSG::SimulationTimePrinter(nullptr);
  expectConstant("vyrOSG.SimulationTimePrinter", readOnly.get(), "vyrOSG::SimulationTimePrinter", kCalls, "");
  for (const char* call : {"time:update(1)", "paused:update()", "time:update('a', 1)"})
    EXPECT_EQ("#ferror in function 'update'.", lua.raised(call)) << call;
}

} // namespace
