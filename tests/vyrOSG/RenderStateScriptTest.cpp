/// Render states that are described by a script.
#include "CapturedMessages.h"
#include "TemporaryFolder.h"

#include <vyrOSG/RenderStateManager.h>

#include <vyrCFG/ConfigScript.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osg/Image>
#include <osg/Material>
#include <osg/StateSet>
#include <osg/TexMat>
#include <osg/Texture1D>
#include <osg/Texture2D>
#include <osg/Texture3D>
#include <osg/TextureCubeMap>
#include <osgDB/WriteFile>

#include <algorithm>
#include <fstream>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Manager = vyrOSG::RenderStateManager;

class RenderStateScript : public testing::Test {
protected:
  void SetUp() override {
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(4, 4, 1, GL_RGB, GL_UNSIGNED_BYTE);
    for (unsigned int i = 0; i < image->getTotalSizeInBytes(); ++i)
      image->data()[i] = static_cast<unsigned char>(i);
    osgDB::writeImageFile(*image, folder / "wood.png");
    osg::ref_ptr<osg::Image> wide = new osg::Image;
    wide->allocateImage(8, 4, 1, GL_RGB, GL_UNSIGNED_BYTE);
    std::fill_n(wide->data(), wide->getTotalSizeInBytes(), static_cast<unsigned char>(7));
    osgDB::writeImageFile(*wide, folder / "wide.png");
    std::ofstream(folder / "lit.frag") << "void main() { gl_FragColor = vec4(1.0); }\n";
  }
  void TearDown() override { manager->clear(); }

  /// Writes the script beside the files that it names and parses it.
  void parse(const std::string& text) {
    std::ofstream(folder / "states.json") << text;
    vyr::ref_ptr<vyrCFG::ConfigScript> script = new vyrCFG::ConfigScript(folder / "states.json");
    ASSERT_TRUE(script->isValid());
    manager->parse(script.get());
  }
  /// The messages with the script's folder taken out.
  std::vector<std::string> errors() {
    std::vector<std::string> lines = messages.take();
    for (std::string& line : lines)
      for (std::size_t at; (at = line.find(folder.path() + "/")) != std::string::npos;)
        line.erase(at, folder.path().size() + 1);
    return lines;
  }

  TemporaryFolder folder;
  Manager* manager = Manager::instance();
  CapturedMessages messages;
  osg::ref_ptr<osg::StateSet> stateSet{new osg::StateSet};
};

const char* const kWhole = R"({
  // The order of the sections does not matter.
  "renderStates": {
    "planks": {
      "ambient": [0.25, 0.25, 0.25],
      "diffuse": [1, 0.5, 0.25, 1],
      "specular": [0.5, 0.5, 0.5],
      "emissive": [0, 0, 0.125],
      "alpha": 0.5,
      "shininess": 32,
      "textures": [
        {"texture": "wood"},
        {"texture": "wood", "unit": 3, "scale": [2, 4], "offset": [0.5, 0], "rotation": 0, "sampler": "detail"}
      ],
      "uniforms": {"gain": 0.5},
      "sharedUniforms": ["time"],
      "shaderState": "glow"
    }
  },
  "shaderStates": {
    "glow": {"program": "lit", "uniforms": {"tint": [1, 0, 0], "on": true}, "sharedUniforms": ["time"]}
  },
  "uniforms": {"time": {"type": "float", "value": 3}},
  "programs": {"lit": {"shaders": ["lit", "move"], "attributes": {"tangent": 6}}},
  "shaders": {
    "lit": {"stage": "fragment", "file": "lit.frag"},
    "move": {"stage": "vertex", "source": ["void main() {", "  gl_Position = gl_Vertex;", "}"]}
  },
  "textures": {"wood": {"file": "wood.png", "wrap": "clamp", "filter": "nearest", "anisotropy": 4}}
})";

TEST_F(RenderStateScript, LoadsEverySection) {
  parse(kWhole);
  EXPECT_THAT(errors(), ElementsAre());

  auto* texture = dynamic_cast<osg::Texture2D*>(manager->findTexture("wood"));
  ASSERT_NE(texture, nullptr);
  EXPECT_EQ(texture->getImage()->s(), 4);
  EXPECT_EQ(texture->getWrap(osg::Texture::WRAP_S), osg::Texture::CLAMP_TO_EDGE);
  EXPECT_EQ(texture->getFilter(osg::Texture::MIN_FILTER), osg::Texture::NEAREST);
  EXPECT_EQ(texture->getMaxAnisotropy(), 4);

  osg::Shader* fragment = manager->findShader("lit", osg::Shader::FRAGMENT);
  osg::Shader* vertex = manager->findShader("move", osg::Shader::VERTEX);
  ASSERT_TRUE(fragment && vertex);
  EXPECT_THAT(fragment->getShaderSource(), HasSubstr("gl_FragColor"));
  EXPECT_EQ(vertex->getShaderSource(), "void main() {\n  gl_Position = gl_Vertex;\n}\n");

  osg::Program* program = manager->findProgram("lit");
  ASSERT_NE(program, nullptr);
  ASSERT_EQ(program->getNumShaders(), 2u);
  EXPECT_EQ(program->getShader(0), fragment);
  EXPECT_EQ(program->getShader(1), vertex);
  EXPECT_EQ(program->getAttribBindingList().at("tangent"), 6u);

  Manager::ShaderState* glow = manager->findShaderState("glow");
  ASSERT_NE(glow, nullptr);
  EXPECT_EQ(glow->getProgramID(), "lit");
  EXPECT_EQ(glow->findUniform("tint")->getType(), osg::Uniform::FLOAT_VEC3);
  EXPECT_EQ(glow->findUniform("on")->getType(), osg::Uniform::BOOL);

  Manager::RenderState* planks = manager->findRenderState("planks");
  ASSERT_NE(planks, nullptr);
  planks->apply(stateSet.get());
  auto* material = dynamic_cast<osg::Material*>(stateSet->getAttribute(osg::StateAttribute::MATERIAL));
  ASSERT_NE(material, nullptr);
  const osg::Material::Face front = osg::Material::FRONT;
  EXPECT_EQ(material->getAmbient(front), osg::Vec4(0.25f, 0.25f, 0.25f, 0.5f));
  EXPECT_EQ(material->getDiffuse(front), osg::Vec4(1, 0.5f, 0.25f, 0.5f));
  EXPECT_EQ(material->getSpecular(front), osg::Vec4(0.5f, 0.5f, 0.5f, 0.5f));
  EXPECT_EQ(material->getEmission(front), osg::Vec4(0, 0, 0.125f, 0.5f));
  EXPECT_EQ(material->getShininess(front), 32);
  EXPECT_EQ(stateSet->getTextureAttribute(0, osg::StateAttribute::TEXTURE), texture);
  EXPECT_EQ(stateSet->getTextureAttribute(3, osg::StateAttribute::TEXTURE), texture);
  auto* matrix = dynamic_cast<osg::TexMat*>(stateSet->getTextureAttribute(3, osg::StateAttribute::TEXMAT));
  ASSERT_NE(matrix, nullptr);
  // Scale first, then move: (1, 1) goes to (2.5, 4).
  EXPECT_EQ(osg::Vec3d(1, 1, 0) * matrix->getMatrix(), osg::Vec3d(2.5, 4, 0));
  int unit = 0;
  ASSERT_NE(stateSet->getUniform("detail"), nullptr);
  EXPECT_TRUE(stateSet->getUniform("detail")->get(unit));
  EXPECT_EQ(unit, 3);
  float number = 0;
  EXPECT_TRUE(stateSet->getUniform("gain")->get(number));
  EXPECT_EQ(number, 0.5f);
  // One uniform for all who share it.
  EXPECT_EQ(stateSet->getUniform("time"), glow->findUniform("time"));
  EXPECT_TRUE(stateSet->getUniform("time")->get(number));
  EXPECT_EQ(number, 3);
  EXPECT_EQ(stateSet->getAttribute(osg::StateAttribute::PROGRAM), program);
}

TEST_F(RenderStateScript, TexturesOfEveryKind) {
  parse(R"({"textures": {
    "line": {"kind": "1d", "file": "wide.png", "wrap": "clamp"},
    "stack": {"kind": "3d", "files": ["wood.png", "wood.png", "wood.png"], "filter": "linear"},
    "sky": {"kind": "cube", "files": ["wood.png", "wood.png", "wood.png", "wood.png", "wood.png", "wood.png"]}
  }, "renderStates": {"all": {"textures": [
    {"texture": "line", "sampler": "a"}, {"texture": "stack", "sampler": "b"}, {"texture": "sky", "sampler": "c"}]}}})");
  EXPECT_THAT(errors(), ElementsAre());
  const auto* line = dynamic_cast<osg::Texture1D*>(manager->findTexture("line"));
  const auto* stack = dynamic_cast<osg::Texture3D*>(manager->findTexture("stack"));
  const auto* sky = dynamic_cast<osg::TextureCubeMap*>(manager->findTexture("sky"));
  ASSERT_TRUE(line && stack && sky);
  EXPECT_EQ(line->getImage()->s(), 8);
  EXPECT_EQ(line->getImage()->t(), 1);
  EXPECT_EQ(line->getWrap(osg::Texture::WRAP_S), osg::Texture::CLAMP_TO_EDGE);
  ASSERT_EQ(stack->getImage()->r(), 3);
  EXPECT_EQ(stack->getFilter(osg::Texture::MIN_FILTER), osg::Texture::LINEAR);
  // Pixel 1 of row 0 is the same in all layers, and the cube has it in its last row.
  const osg::Vec4 pixel = stack->getImage()->getColor(1, 0, 0);
  EXPECT_EQ(stack->getImage()->getColor(1, 0, 2), pixel);
  for (unsigned int side = 0; side < 6; ++side) {
    ASSERT_NE(sky->getImage(side), nullptr);
    EXPECT_EQ(sky->getImage(side)->getColor(1, 3), pixel);
  }
  manager->findRenderState("all")->apply(stateSet.get());
  EXPECT_EQ(stateSet->getUniform("a")->getType(), osg::Uniform::SAMPLER_1D);
  EXPECT_EQ(stateSet->getUniform("b")->getType(), osg::Uniform::SAMPLER_3D);
  EXPECT_EQ(stateSet->getUniform("c")->getType(), osg::Uniform::SAMPLER_CUBE);
  EXPECT_EQ(stateSet->getTextureMode(2, GL_TEXTURE_CUBE_MAP), osg::StateAttribute::ON);
}

TEST_F(RenderStateScript, AnUnknownKeyIsNamedAndTheRestLoads) {
  parse("{\n"
        "  \"colour\": 1,\n"
        "  \"renderStates\": {\n"
        "    \"red\": {\n"
        "      \"difuse\": [1, 0, 0],\n"
        "      \"alpha\": 0.5\n"
        "    },\n"
        "    \"blue\": {\"diffuse\": [0, 0, 1]}\n"
        "  }\n"
        "}\n");
  EXPECT_THAT(errors(), ElementsAre("Error: states.json:5: render state \"red\": unknown key \"difuse\"",
                                    "Error: states.json:2: render states: unknown key \"colour\""));
  EXPECT_NE(manager->findRenderState("red"), nullptr);
  EXPECT_NE(manager->findRenderState("blue"), nullptr);
}

// Each case: one mistake in line 2 or below, the message it costs, and that nothing of the name is registered.
struct Mistake {
  const char* section;
  const char* text;
  const char* message;
};

class RenderStateMistake : public RenderStateScript, public testing::WithParamInterface<Mistake> {};

TEST_P(RenderStateMistake, CostsTheEntryAndOneLine) {
  const Mistake& mistake = GetParam();
  std::string text = "{\"textures\": {\"wood\": {\"file\": \"wood.png\"}},\n";
  if (std::string(mistake.section) == "textures")
    text = "{\n";
  text += std::string("\"") + mistake.section + "\": {\"bad\": " + mistake.text + "}}";
  parse(text);
  const std::vector<std::string> lines = errors();
  ASSERT_EQ(lines.size(), 1u) << testing::PrintToString(lines);
  EXPECT_EQ(lines[0].find(std::string("Error: states.json:2: ") + mistake.message), 0u) << lines[0];
  EXPECT_EQ(manager->findTexture("bad"), nullptr);
  EXPECT_EQ(manager->findProgram("bad"), nullptr);
  EXPECT_EQ(manager->findShaderState("bad"), nullptr);
  EXPECT_EQ(manager->findRenderState("bad"), nullptr);
  for (osg::Shader::Type stage : {osg::Shader::VERTEX, osg::Shader::FRAGMENT})
    EXPECT_EQ(manager->findShader("bad", stage), nullptr);
}

const Mistake kMistakes[] = {
    {"textures", "3", "texture \"bad\": an object is needed, not a number"},
    {"textures", "{}", "texture \"bad\": a \"file\" is needed"},
    {"textures", R"({"kind": "4d", "file": "wood.png"})",
     "texture \"bad\": \"kind\" is one of \"2d\", \"1d\", \"3d\", \"cube\""},
    {"textures", R"({"kind": "cube", "files": ["wood.png"]})",
     "texture \"bad\": \"files\" with the six sides of the cube are needed"},
    {"textures", R"({"kind": "cube"})", "texture \"bad\": \"files\" with the six sides of the cube are needed"},
    {"textures", R"({"kind": "3d", "files": ["wood.png"]})",
     "texture \"bad\": \"files\" with two pictures or more are needed"},
    {"textures", R"({"kind": "3d", "files": 3})", "texture \"bad\": \"files\" is a list of strings"},
    {"textures", R"({"kind": "3d", "files": ["wood.png", "wide.png"]})",
     "texture \"bad\": file \"wide.png\" has another size or format than \"wood.png\""},
    {"textures",
     R"({"kind": "cube", "files": ["wide.png", "wide.png", "wide.png", "wide.png", "wide.png", "wide.png"]})",
     "texture \"bad\": the sides of a cube are square"},
    {"textures", R"({"kind": "3d", "files": ["wood.png", "none.png"]})",
     "texture \"bad\": \"files\": file \"none.png\" is not there, tried: "},
    {"textures", R"({"file": 3})", "texture \"bad\": \"file\" is a string, not a number"},
    {"textures", R"({"file": "none.png"})", "texture \"bad\": \"file\": file \"none.png\" is not there, tried: "},
    {"textures", R"({"file": "lit.frag"})", "texture \"bad\": file \"lit.frag\" holds no image"},
    {"textures", R"({"file": "wood.png", "wrap": "round"})",
     "texture \"bad\": \"wrap\" is one of \"repeat\", \"clamp\", \"mirror\""},
    {"textures", R"({"file": "wood.png", "anisotropy": "much"})",
     "texture \"bad\": \"anisotropy\" is a number, not a string"},
    {"shaders", R"({"file": "lit.frag"})", "shader \"bad\": a \"stage\" is needed"},
    {"shaders", R"({"stage": "vertex"})", "shader \"bad\": either a \"file\" or a \"source\" is needed"},
    {"shaders", R"({"stage": "vertex", "file": "lit.frag", "source": ""})",
     "shader \"bad\": either a \"file\" or a \"source\" is needed"},
    {"shaders", R"({"stage": "pixel", "file": "lit.frag"})", "shader \"bad\": \"stage\" is one of \"vertex\", "},
    {"shaders", R"({"stage": "vertex", "file": "none.vert"})",
     "shader \"bad\": \"file\": file \"none.vert\" is not there, tried: "},
    {"shaders", R"({"stage": "vertex", "source": [1]})", "shader \"bad\": \"source\" is a list of strings"},
    {"programs", "{}", "program \"bad\": a list of \"shaders\" is needed"},
    {"programs", R"({"shaders": ["none"]})", "program \"bad\": there is no shader \"none\""},
    {"programs", R"({"shaders": [], "attributes": {"tangent": 16}})",
     "program \"bad\": attributes: \"tangent\" is a whole number from 0 to 15"},
    {"shaderStates", R"({"program": "none"})", "shader state \"bad\": there is no program \"none\""},
    {"shaderStates", R"({"uniforms": {"u": "text"}})",
     "shader state \"bad\": uniform \"u\": the value of a uniform is made of numbers or booleans"},
    {"shaderStates", R"({"uniforms": {"u": [1, 2, 3, 4, 5]}})",
     "shader state \"bad\": uniform \"u\": 5 numbers make no uniform"},
    {"shaderStates", R"({"uniforms": {"u": {"type": "vec3", "value": [1, 2]}}})",
     "shader state \"bad\": uniform \"u\": vec3 takes 3 numbers, not 2"},
    {"shaderStates", R"({"uniforms": {"u": {"type": "float3", "value": [1, 2, 3]}}})",
     "shader state \"bad\": uniform \"u\": there is no uniform type \"float3\""},
    {"shaderStates", R"({"uniforms": {"u": {"type": "int", "value": 1.5}}})",
     "shader state \"bad\": uniform \"u\": int does not hold these numbers"},
    {"shaderStates", R"({"uniforms": {"u": {"value": 1}}})",
     "shader state \"bad\": uniform \"u\": a uniform written as an object has a \"type\" and a \"value\""},
    {"shaderStates", R"({"uniforms": []})", "shader state \"bad\": \"uniforms\" is an object"},
    {"shaderStates", R"({"sharedUniforms": ["none"]})", "shader state \"bad\": there is no shared uniform \"none\""},
    {"uniforms", "[]", "uniforms: \"bad\": 0 numbers make no uniform"},
    {"renderStates", R"({"diffuse": [1, 0]})", "render state \"bad\": \"diffuse\" is a list of 3 to 4 numbers"},
    {"renderStates", R"({"diffuse": [1, 0, "x"]})", "render state \"bad\": \"diffuse\" is a list of 3 to 4 numbers"},
    {"renderStates", R"({"alpha": true})", "render state \"bad\": \"alpha\" is a number, not a boolean"},
    {"renderStates", R"({"textures": {}})", "render state \"bad\": \"textures\" is a list"},
    {"renderStates", R"({"textures": [{"texture": "none"}]})",
     "render state \"bad\": texture 1: there is no texture \"none\""},
    {"renderStates", R"({"textures": [{"texture": "wood", "unit": 65}]})",
     "render state \"bad\": texture 1: \"unit\" is a whole number from 0 to 64"},
    {"renderStates", R"({"textures": [{"texture": "wood", "unit": 0.5}]})",
     "render state \"bad\": texture 1: \"unit\" is a whole number from 0 to 64"},
    {"renderStates", R"({"textures": [{"texture": "wood", "scale": 2}]})",
     "render state \"bad\": texture 1: \"scale\" is a list of 2 numbers"},
    {"renderStates", R"({"shaderState": "none"})", "render state \"bad\": there is no shader state \"none\""},
};

INSTANTIATE_TEST_SUITE_P(RenderStateScript, RenderStateMistake, testing::ValuesIn(kMistakes));

TEST_F(RenderStateScript, ASectionIsAnObject) {
  parse("{\n\"textures\": []\n}");
  EXPECT_THAT(errors(), ElementsAre("Error: states.json:2: textures: an object is needed, not a list"));
}

TEST_F(RenderStateScript, UniformTypesFollowFromTheirValues) {
  parse(R"({"shaderStates": {"s": {"uniforms": {
    "a": 1, "b": true, "c": [1, 2], "d": [1, 2, 3], "e": [1, 2, 3, 4], "f": [true, false],
    "g": [1, 0, 0, 0, 1, 0, 0, 0, 1],
    "h": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1],
    "i": {"type": "ivec3", "value": [1, -2, 3]}, "j": {"type": "sampler2D", "value": 4}, "k": {"type": "mat2", "value": [1, 2, 3, 4]},
    "l": {"type": "uint", "value": 5}, "m": {"type": "double", "value": 0.1}
  }}}})");
  EXPECT_THAT(errors(), ElementsAre());
  Manager::ShaderState* state = manager->findShaderState("s");
  ASSERT_NE(state, nullptr);
  const std::pair<const char*, osg::Uniform::Type> types[] = {
      {"a", osg::Uniform::FLOAT},      {"b", osg::Uniform::BOOL},       {"c", osg::Uniform::FLOAT_VEC2},
      {"d", osg::Uniform::FLOAT_VEC3}, {"e", osg::Uniform::FLOAT_VEC4}, {"f", osg::Uniform::BOOL_VEC2},
      {"g", osg::Uniform::FLOAT_MAT3}, {"h", osg::Uniform::FLOAT_MAT4}, {"i", osg::Uniform::INT_VEC3},
      {"j", osg::Uniform::SAMPLER_2D}, {"k", osg::Uniform::FLOAT_MAT2}, {"l", osg::Uniform::UNSIGNED_INT},
      {"m", osg::Uniform::DOUBLE}};
  for (const auto& [name, type] : types)
    EXPECT_EQ(state->findUniform(name)->getType(), type) << name;
  int x = 0, y = 0, z = 0;
  EXPECT_TRUE(state->findUniform("i")->get(x, y, z));
  EXPECT_EQ(y, -2);
  osg::Matrixf matrix;
  EXPECT_TRUE(state->findUniform("h")->get(matrix));
  EXPECT_EQ(matrix.getTrans(), osg::Vec3d(5, 6, 7));
}

TEST_F(RenderStateScript, LoadingAgainReplacesAndKeepsPrograms) {
  parse(kWhole);
  osg::Program* program = manager->findProgram("lit");
  Manager::RenderState* before = manager->findRenderState("planks");
  vyr::ref_ptr<Manager::RenderState> held = before;
  parse(kWhole);
  EXPECT_THAT(errors(), ElementsAre());
  EXPECT_EQ(manager->findProgram("lit"), program);
  EXPECT_EQ(program->getNumShaders(), 2u);
  EXPECT_NE(manager->findRenderState("planks"), before);
}

TEST_F(RenderStateScript, ABrokenScriptLoadsNothing) {
  manager->parse(nullptr);
  EXPECT_THAT(errors(), ElementsAre("Error: render states: the configuration script is null"));
  vyr::ref_ptr<vyrCFG::ConfigScript> script = new vyrCFG::ConfigScript;
  script->parse("{\"renderStates\": {\"red\": {}}", "cut.json");
  EXPECT_EQ(errors().size(), 1u);
  manager->parse(script.get());
  EXPECT_THAT(errors(), ElementsAre());
  EXPECT_EQ(manager->findRenderState("red"), nullptr);
}

} // namespace
