// The module ImageCapture: every row of the recorder, its results, defaults, errors and ownership.
#include "CallChecks.h"

#include <vyr/Vec2u.h>
#include <vyrOSG/ImageCapture.h>
#include <vyrSDK/Simulation.h>

#include <set>

namespace {

using bindingtest::lastRaised;

class ImageCapture : public bindingtest::CallChecks {
protected:
  ImageCapture() {
    set("simulation", simulation.get(), "vyrSDK::Simulation");
    lua.run("c = vyrOSG.ImageCapture(simulation)");
  }
  vyrOSG::ImageCapture* capture() { return global<vyrOSG::ImageCapture>("c"); }

  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
};

/// Counts the deaths of a recorder and answers the calls that are virtual.
class Probe : public vyrOSG::ImageCapture {
public:
  explicit Probe(int& deaths)
      : vyrOSG::ImageCapture(nullptr)
      , m_deaths(deaths) {}
  void startCapture(int number) override { started.insert(number); }
  bool stopCapture() override { return true; }

  std::multiset<int> started;

protected:
  ~Probe() override { ++m_deaths; }

private:
  int& m_deaths;
};

TEST_F(ImageCapture, IsBuiltThreeWays) {
  lua.run("a = vyrOSG.ImageCapture:new(simulation) b = vyrOSG.ImageCapture:new_local(nil)");
  EXPECT_EQ("vyrOSG::ImageCapture vyrOSG::ImageCapture vyrOSG::ImageCapture", lua.eval("a, b, c"));
  EXPECT_EQ(0, global<vyrOSG::ImageCapture>("a")->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::ImageCapture>("b")->getReferenceCount());
  EXPECT_EQ(1, capture()->getReferenceCount());
  EXPECT_EQ(simulation.get(), global<vyrOSG::ImageCapture>("a")->getSimulation());
  EXPECT_EQ(nullptr, global<vyrOSG::ImageCapture>("b")->getSimulation());
  const vyr::ref_ptr<vyrOSG::ImageCapture> keep = global<vyrOSG::ImageCapture>("a");
  // nil is a null simulation; an argument that is missing is not.
  for (const char* call : {"vyrOSG.ImageCapture:new()", "vyrOSG.ImageCapture:new_local(1)", "vyrOSG.ImageCapture({})",
                           "vyrOSG.ImageCapture:new(simulation, 1)"}) {
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
  }
}

TEST_F(ImageCapture, CollectionDropsTheReferenceOfLua) {
  const vyr::observer_ptr<vyrOSG::ImageCapture> alone = capture();
  lua.run("held = vyrOSG.ImageCapture(nil)");
  const vyr::ref_ptr<vyrOSG::ImageCapture> holder = global<vyrOSG::ImageCapture>("held");
  EXPECT_EQ(2, holder->getReferenceCount());
  lua.run("c, held = nil, nil");
  lua.collect();
  EXPECT_EQ(nullptr, alone.get());
  EXPECT_EQ(1, holder->getReferenceCount());
}

TEST_F(ImageCapture, AnObjectWithoutReferencesIsLeftAloneByItsCollector) {
  lua.run("held = vyrOSG.ImageCapture(nil)");
  vyrOSG::ImageCapture* object = global<vyrOSG::ImageCapture>("held");
  const vyr::observer_ptr<vyrOSG::ImageCapture> watch = object;
  object->unrefWithoutDelete();
  lua.run("held = nil");
  lua.collect();
  ASSERT_EQ(object, watch.get());
  const vyr::ref_ptr<vyrOSG::ImageCapture> end = object;
}

TEST_F(ImageCapture, FpsIsSinglePrecisionAndFixedWhileACaptureRuns) {
  EXPECT_EQ("25", lua.run("c:setFps(25) return c:getFps()"));
  EXPECT_EQ("25 true 50",
            lua.run("c:startCapture() c:setFps(50) local during = c:getFps() local stopped = c:stopCapture() "
                    "c:setFps(50) return during, stopped, c:getFps()"));
  lua.run("c:setFps(0.1)");
  EXPECT_EQ(1.0f / (1.0f / 0.1f), capture()->getFps());
  EXPECT_EQ("0", lua.run("c:setFps(0) return c:getFps()"));
}

TEST_F(ImageCapture, TheMaximumIsTruncatedAndFixedWhileACaptureRuns) {
  EXPECT_EQ("", lua.run("c:setMaxImages(2.9)"));
  EXPECT_EQ("", lua.run("c:startCapture() c:setMaxImages(100)"));
  EXPECT_EQ("none", lua.raised("c:setMaxImages(-1e300)"));
}

TEST_F(ImageCapture, StartAndStopAreTold) {
  EXPECT_EQ("false", lua.eval("c:getCaptureStarted()"));
  EXPECT_EQ("", lua.run("return c:startCapture()"));
  EXPECT_EQ("true 0", lua.eval("c:getCaptureStarted(), c:getImageNum()"));
  EXPECT_EQ("true false false", lua.run("local a = c:stopCapture() return a, c:stopCapture(), c:getCaptureStarted()"));
  EXPECT_EQ("7", lua.run("c:startCapture(7.9) return c:getImageNum()"));
}

TEST_F(ImageCapture, StartAndStopAreVirtualAndTheDefaultIsZero) {
  int deaths = 0;
  vyr::ref_ptr<Probe> probe = new Probe(deaths);
  set("probe", static_cast<vyrOSG::ImageCapture*>(probe.get()), "vyrOSG::ImageCapture");
  EXPECT_EQ("true", lua.run("probe:startCapture() probe:startCapture(3) return probe:stopCapture()"));
  EXPECT_EQ((std::multiset<int>{0, 3}), probe->started);
  lua.run("probe = nil");
  lua.collect();
  EXPECT_EQ(0, deaths);
  probe = nullptr;
  EXPECT_EQ(1, deaths);
}

TEST_F(ImageCapture, StringsComeBackFromTheirSetters) {
  for (const std::string name : {"Prefix", "Postfix", "DirectoryPath"}) {
    EXPECT_EQ("some text", lua.run("return c:set" + name + "('some text')")) << name;
    EXPECT_EQ("some text", lua.run("return c:get" + name + "()")) << name;
    // A number passes for a string; only an argument that is neither does not.
    EXPECT_EQ("12", lua.run("return c:set" + name + "(12)")) << name;
    EXPECT_EQ("#ferror in function 'set" + name + "'.", lua.raised("c:set" + name + "({})")) << name;
    EXPECT_EQ(2, lastRaised().index);
    EXPECT_EQ("0", lua.run("return #c:set" + name + "(nil)")) << name;
    EXPECT_EQ("0", lua.run("return #c:get" + name + "()")) << name;
  }
}

TEST_F(ImageCapture, TheSimulationIsObserved) {
  EXPECT_EQ("vyrSDK::Simulation true", lua.eval("c:getSimulation(), c:getSimulation() == simulation"));
  EXPECT_EQ(1, simulation->getReferenceCount());
  EXPECT_EQ("", lua.run("return c:setSimulation(simulation)"));
  EXPECT_EQ("nil", lua.run("c:setSimulation(nil) return c:getSimulation()"));
  lua.run("c:setSimulation(simulation)");
  simulation = nullptr;
  EXPECT_EQ("nil", lua.eval("c:getSimulation()"));
}

TEST_F(ImageCapture, TheResolutionIsACopyThatLuaOwns) {
  EXPECT_EQ("", lua.run("return c:setImageResolution(640.7, 480)"));
  EXPECT_EQ("vyr::Vec2u", lua.run("size = c:getImageResolution() return size"));
  EXPECT_EQ(vyr::Vec2u(640, 480), *global<vyr::Vec2u>("size"));
  lua.run("c:setImageResolution(32, 16)");
  EXPECT_EQ(vyr::Vec2u(640, 480), *global<vyr::Vec2u>("size"));
  EXPECT_EQ("#ferror in function 'setImageResolution'.", lua.raised("c:setImageResolution(640)"));
}

TEST_F(ImageCapture, TheNumberGrowsByOne) {
  EXPECT_EQ("0 1 1 2", lua.eval("c:getImageNum(), c:incImageNum(), c:getImageNum(), c:incImageNum()"));
}

TEST_F(ImageCapture, ResetTimeBeginsAnInterval) {
  lua.run("c:setFps(10) c:startCapture()");
  capture()->advance(0.0);
  EXPECT_EQ(0, capture()->advance(0.09));
  EXPECT_EQ("", lua.run("return c:resetTime()"));
  EXPECT_EQ(0, capture()->advance(0.11));
  EXPECT_EQ(1, capture()->advance(0.21));
}

constexpr bindingtest::Call kCalls[] = {{"setMaxImages", "1"},
                                        {"setFps", "1"},
                                        {"getFps", ""},
                                        {"startCapture", ""},
                                        {"startCapture", "1"},
                                        {"setPrefix", "'a'"},
                                        {"getPrefix", ""},
                                        {"setDirectoryPath", "'a'"},
                                        {"getDirectoryPath", ""},
                                        {"setSimulation", "nil"},
                                        {"getSimulation", ""},
                                        {"setImageResolution", "1, 1"},
                                        {"getImageResolution", ""},
                                        {"stopCapture", ""},
                                        {"getCaptureStarted", ""},
                                        {"getPostfix", ""},
                                        {"setPostfix", "'a'"},
                                        {"getImageNum", ""},
                                        {"incImageNum", ""},
                                        {"resetTime", ""}};

TEST_F(ImageCapture, EveryFunctionRefusesForeignAndNullSelfAndSurplus) {
  expectRefusals("vyrOSG.ImageCapture", "c", "vyrOSG::ImageCapture", kCalls);
}

TEST_F(ImageCapture, FiveFunctionsTakeAReadOnlyRecorder) {
  const vyr::ref_ptr<vyrOSG::ImageCapture> other = new vyrOSG::ImageCapture(nullptr);
  expectConstant("vyrOSG.ImageCapture", other.get(), "vyrOSG::ImageCapture", kCalls,
                 "getImageNum getPostfix getDirectoryPath getPrefix getImageResolution");
}

} // namespace
