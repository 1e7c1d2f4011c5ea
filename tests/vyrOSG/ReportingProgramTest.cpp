/// Compile errors of shaders: reading drivers' logs, and a program that a driver refuses.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"
#include "TemporaryFolder.h"

#include <vyrOSG/RenderStateManager.h>

#include <vyrCFG/ConfigScript.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osg/Geode>
#include <osg/ShapeDrawable>

#include <fstream>

namespace {

using testing::HasSubstr;
using Manager = vyrOSG::RenderStateManager;

class ReportingProgram : public testing::Test {
protected:
  void TearDown() override { manager->clear(); }

  /// Draws one frame with a shader state on a box.
  void draw(Manager::ShaderState* state) {
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(new osg::ShapeDrawable(new osg::Box(osg::Vec3(), 1)));
    state->apply(geode->getOrCreateStateSet());
    OffscreenViewer offscreen(32, 32);
    if (!offscreen.isReady())
      GTEST_SKIP() << "no graphics: " << offscreen.describe();
    offscreen.viewer()->setSceneData(geode);
    offscreen.camera()->setViewMatrixAsLookAt(osg::Vec3(0, -5, 0), osg::Vec3(), osg::Vec3(0, 0, 1));
    picture = offscreen.draw();
    offscreen.draw();
  }

  Manager* manager = Manager::instance();
  CapturedMessages messages;
  osg::ref_ptr<osg::Image> picture;
};

TEST_F(ReportingProgram, AnErrorNamesTheLineOfTheShaderFile) {
  TemporaryFolder folder;
  std::ofstream(folder / "bad.frag") << "void main() {\n  gl_FragColor = vec4(1.0);\n  nonsense = 3;\n}\n";
  manager->createProgram("bad")->addShader(
      manager->createShader("bad", folder / "bad.frag", osg::Shader::FRAGMENT, true));
  vyr::ref_ptr<Manager::ShaderState> state = new Manager::ShaderState("state", "bad");
  draw(state.get());
  if (IsSkipped())
    return;
  // Once, although two frames were drawn.
  const std::vector<std::string> lines = messages.take();
  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines[0], HasSubstr((folder / "bad.frag") + ":3: "));
  EXPECT_THAT(lines[0], HasSubstr("nonsense"));
  EXPECT_THAT(lines[0], HasSubstr("fragment shader \"bad\""));
  for (const std::string& line : lines)
    EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1) << line;
}

TEST_F(ReportingProgram, AnErrorInAScriptNamesTheLineOfTheScript) {
  vyr::ref_ptr<vyrCFG::ConfigScript> script = new vyrCFG::ConfigScript;
  ASSERT_TRUE(script->parse("{\"shaders\": {\"bad\": {\"stage\": \"vertex\", \"source\": [\n"
                            "  \"void main() {\",\n"
                            "\n"
                            "  \"  gl_Position = lost;\",\n"
                            "  \"}\"]}},\n"
                            "\"programs\": {\"bad\": {\"shaders\": [\"bad\"]}},\n"
                            "\"shaderStates\": {\"state\": {\"program\": \"bad\"}}}",
                            "states.json"));
  manager->parse(script.get());
  draw(manager->findShaderState("state"));
  if (IsSkipped())
    return;
  const std::vector<std::string> lines = messages.take();
  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines[0], HasSubstr("states.json:4: "));
  EXPECT_THAT(lines[0], HasSubstr("lost"));
}

TEST_F(ReportingProgram, AProgramThatDoesNotLinkIsNamed) {
  manager->createProgram("unlinked")
      ->addShader(manager->createShader("half", "float missing(); void main() { gl_FragColor = vec4(missing()); }",
                                        osg::Shader::FRAGMENT, false));
  vyr::ref_ptr<Manager::ShaderState> state = new Manager::ShaderState("state", "unlinked");
  draw(state.get());
  if (IsSkipped())
    return;
  const std::vector<std::string> lines = messages.take();
  ASSERT_EQ(lines.size(), 1u) << testing::PrintToString(lines);
  EXPECT_EQ(lines[0].find("Error: program \"unlinked\" does not link: "), 0u) << lines[0];
}

TEST_F(ReportingProgram, AGoodProgramDrawsAndSaysNothing) {
  manager->createProgram("green")->addShader(manager->createShader(
      "green", "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }", osg::Shader::FRAGMENT, false));
  vyr::ref_ptr<Manager::ShaderState> state = new Manager::ShaderState("state", "green");
  draw(state.get());
  if (IsSkipped())
    return;
  EXPECT_TRUE(messages.take().empty());
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->getColor(16u, 16u), osg::Vec4(0, 1, 0, 1));
}

} // namespace
