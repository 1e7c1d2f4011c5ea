/// Render states, shader states and their registry.
#include "CapturedMessages.h"
#include "TemporaryFolder.h"

#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/Node.h>
#include <vyrOSG/RenderStateManager.h>
#include <vyrOSG/SimulationObject.h>

#include <gtest/gtest.h>
#include <osg/Material>
#include <osg/StateSet>
#include <osg/TexMat>
#include <osg/Texture2D>
#include <osg/observer_ptr>

#include <cmath>
#include <fstream>

namespace {

using Manager = vyrOSG::RenderStateManager;
using RenderState = Manager::RenderState;
using ShaderState = Manager::ShaderState;

constexpr osg::Material::Face kFront = osg::Material::FRONT;

const osg::Material* materialOf(osg::StateSet* stateSet) {
  return dynamic_cast<osg::Material*>(stateSet->getAttribute(osg::StateAttribute::MATERIAL));
}

class RenderStates : public testing::Test {
protected:
  void TearDown() override { manager->clear(); }
  Manager* manager = Manager::instance();
  CapturedMessages messages;
  osg::ref_ptr<osg::StateSet> stateSet{new osg::StateSet};
};

TEST_F(RenderStates, ThereIsOneManager) {
  EXPECT_NE(manager, nullptr);
  EXPECT_EQ(manager, Manager::instance());
}

TEST_F(RenderStates, EntriesAreFoundUntilCleared) {
  vyr::ref_ptr<RenderState> renderState = new RenderState("look");
  vyr::ref_ptr<ShaderState> shaderState = new ShaderState("shade", "program");
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D;
  manager->addRenderState(renderState.get());
  manager->addShaderState(shaderState.get());
  manager->addTexture("wood", texture);
  osg::Program* program = manager->createProgram("program");
  osg::Shader* shader = manager->createShader("lit", "void main() {}", osg::Shader::VERTEX, false);
  EXPECT_EQ(manager->findRenderState("look"), renderState.get());
  EXPECT_EQ(manager->findShaderState("shade"), shaderState.get());
  EXPECT_EQ(manager->findTexture("wood"), texture.get());
  ASSERT_NE(program, nullptr);
  EXPECT_EQ(program->getName(), "program");
  EXPECT_EQ(manager->findProgram("program"), program);
  ASSERT_NE(shader, nullptr);
  EXPECT_EQ(manager->findShader("lit", osg::Shader::VERTEX), shader);
  // A shader has its name for its stage alone.
  EXPECT_EQ(manager->findShader("lit", osg::Shader::FRAGMENT), nullptr);
  EXPECT_EQ(renderState->getReferenceCount(), 2);
  manager->clear();
  EXPECT_EQ(renderState->getReferenceCount(), 1);
  EXPECT_EQ(texture->referenceCount(), 1);
  EXPECT_EQ(manager->findRenderState("look"), nullptr);
  EXPECT_EQ(manager->findShaderState("shade"), nullptr);
  EXPECT_EQ(manager->findTexture("wood"), nullptr);
  EXPECT_EQ(manager->findProgram("program"), nullptr);
  EXPECT_EQ(manager->findShader("lit", osg::Shader::VERTEX), nullptr);
}

TEST_F(RenderStates, AnEntryOfTheSameNameReplaces) {
  vyr::ref_ptr<RenderState> first = new RenderState("look"), second = new RenderState("look");
  manager->addRenderState(first.get());
  manager->addRenderState(second.get());
  EXPECT_EQ(manager->findRenderState("look"), second.get());
  EXPECT_EQ(first->getReferenceCount(), 1);
}

TEST_F(RenderStates, NullAndNamelessEntriesAreRefused) {
  manager->addRenderState(nullptr);
  EXPECT_EQ(messages.takeOne(), "Error: render states: a render state to register is null");
  manager->addShaderState(nullptr);
  EXPECT_EQ(messages.takeOne(), "Error: render states: a shader state to register is null");
  manager->addTexture("wood", nullptr);
  EXPECT_EQ(messages.takeOne(), "Error: render states: a texture to register is null");
  vyr::ref_ptr<RenderState> nameless = new RenderState("");
  manager->addRenderState(nameless.get());
  EXPECT_EQ(messages.takeOne(), "Error: render states: a render state to register has no name");
  EXPECT_EQ(manager->createProgram(""), nullptr);
  EXPECT_EQ(messages.takeOne(), "Error: render states: a program to register has no name");
  EXPECT_EQ(manager->createShader("", "", osg::Shader::VERTEX, false), nullptr);
  EXPECT_EQ(messages.takeOne(), "Error: render states: a shader to register has no name");
}

TEST_F(RenderStates, CreatingAgainGivesTheSameObjects) {
  EXPECT_EQ(manager->createProgram("p"), manager->createProgram("p"));
  osg::Shader* shader = manager->createShader("s", "one", osg::Shader::FRAGMENT, false);
  EXPECT_EQ(manager->createShader("s", "two", osg::Shader::FRAGMENT, false), shader);
  EXPECT_EQ(shader->getShaderSource(), "two");
}

TEST_F(RenderStates, ShadersAreReadFromFiles) {
  TemporaryFolder folder;
  std::ofstream(folder / "lit.frag") << "void main() {}\n";
  osg::Shader* shader = manager->createShader("lit", folder / "lit.frag", osg::Shader::FRAGMENT, true);
  ASSERT_NE(shader, nullptr);
  EXPECT_EQ(shader->getShaderSource(), "void main() {}\n");
  EXPECT_EQ(shader->getFileName(), folder / "lit.frag");
  // A failed read leaves the registered shader as it is.
  EXPECT_EQ(manager->createShader("lit", folder / "none.frag", osg::Shader::FRAGMENT, true), nullptr);
  const std::string line = messages.takeOne();
  EXPECT_NE(line.find("none.frag\" cannot be read, tried: " + (folder / "none.frag")), std::string::npos) << line;
  EXPECT_EQ(manager->findShader("lit", osg::Shader::FRAGMENT), shader);
  EXPECT_EQ(shader->getShaderSource(), "void main() {}\n");
}

TEST_F(RenderStates, ColoursGoIntoTheMaterial) {
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->setColor(RenderState::AMBIENT, vyr::Vec4(0.25, 0, 0, 1));
  state->setColor(RenderState::DIFFUSE, vyr::Vec4(0, 0.25, 0, 1));
  state->setColor(RenderState::SPECULAR, vyr::Vec4(0, 0, 0.25, 1));
  state->setColor(RenderState::EMISSIVE, vyr::Vec4(0.5, 0.5, 0, 1));
  state->setColor(RenderState::SHININESS, vyr::Vec4(16, 0, 0, 0));
  state->apply(stateSet.get());
  const osg::Material* material = materialOf(stateSet);
  ASSERT_NE(material, nullptr);
  EXPECT_EQ(material->getAmbient(kFront), osg::Vec4(0.25f, 0, 0, 1));
  EXPECT_EQ(material->getDiffuse(kFront), osg::Vec4(0, 0.25f, 0, 1));
  EXPECT_EQ(material->getSpecular(kFront), osg::Vec4(0, 0, 0.25f, 1));
  EXPECT_EQ(material->getEmission(kFront), osg::Vec4(0.5f, 0.5f, 0, 1));
  EXPECT_EQ(material->getShininess(kFront), 16);
  EXPECT_EQ(stateSet->getRenderingHint(), osg::StateSet::DEFAULT_BIN);
  EXPECT_EQ(stateSet->getMode(GL_BLEND), static_cast<unsigned int>(osg::StateAttribute::INHERIT));
}

TEST_F(RenderStates, AlphaGoesIntoEveryColourAndBlends) {
  vyr::ref_ptr<RenderState> state = new RenderState("glass");
  state->setColor(RenderState::ALPHA, vyr::Vec4(0.5, 0, 0, 0));
  state->setColor(RenderState::DIFFUSE, vyr::Vec4(1, 0, 0, 1));
  state->apply(stateSet.get());
  EXPECT_EQ(materialOf(stateSet)->getDiffuse(kFront), osg::Vec4(1, 0, 0, 0.5f));
  EXPECT_EQ(materialOf(stateSet)->getSpecular(kFront).a(), 0.5f);
  EXPECT_EQ(stateSet->getMode(GL_BLEND), static_cast<unsigned int>(osg::StateAttribute::ON));
  EXPECT_EQ(stateSet->getRenderingHint(), osg::StateSet::TRANSPARENT_BIN);
  // An opaque state after it takes blending away again.
  vyr::ref_ptr<RenderState> opaque = new RenderState("stone");
  opaque->setColor(RenderState::ALPHA, vyr::Vec4(1, 0, 0, 0));
  opaque->apply(stateSet.get());
  EXPECT_EQ(stateSet->getMode(GL_BLEND), static_cast<unsigned int>(osg::StateAttribute::INHERIT));
  EXPECT_EQ(stateSet->getRenderingHint(), osg::StateSet::DEFAULT_BIN);
}

TEST_F(RenderStates, ADiffuseColourAloneSetsAmbientToo) {
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->setColor(RenderState::DIFFUSE, vyr::Vec4(1, 0.5, 0, 1));
  state->apply(stateSet.get());
  EXPECT_EQ(materialOf(stateSet)->getAmbient(kFront), osg::Vec4(1, 0.5f, 0, 1));
}

TEST_F(RenderStates, AMaterialThatIsThereIsCopiedNotChanged) {
  osg::ref_ptr<osg::Material> shared = new osg::Material;
  shared->setSpecular(osg::Material::FRONT_AND_BACK, osg::Vec4(0, 0, 1, 1));
  stateSet->setAttribute(shared);
  const osg::Vec4 before = shared->getDiffuse(kFront);
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->setColor(RenderState::DIFFUSE, vyr::Vec4(1, 0, 0, 1));
  state->apply(stateSet.get());
  EXPECT_EQ(shared->getDiffuse(kFront), before);
  EXPECT_NE(materialOf(stateSet), shared.get());
  EXPECT_EQ(materialOf(stateSet)->getDiffuse(kFront), osg::Vec4(1, 0, 0, 1));
  EXPECT_EQ(materialOf(stateSet)->getSpecular(kFront), osg::Vec4(0, 0, 1, 1));
}

TEST_F(RenderStates, BadColoursAreSkippedWithOneLine) {
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->setColor(6, vyr::Vec4(1, 1, 1, 1));
  state->apply(stateSet.get());
  EXPECT_EQ(messages.takeOne(), "Error: render state \"look\": there is no colour kind 6");
  state = new RenderState("look");
  state->setColor(RenderState::DIFFUSE, vyr::Vec4(std::nan(""), 1, 1, 1));
  state->apply(stateSet.get());
  EXPECT_EQ(messages.takeOne(), "Error: render state \"look\": colour (nan 1 1 1) is not finite");
  EXPECT_FALSE(std::isnan(materialOf(stateSet)->getDiffuse(kFront).r()));
  // Beyond the range the library would complain.
  state = new RenderState("look");
  state->setColor(RenderState::SHININESS, vyr::Vec4(500, 0, 0, 0));
  state->apply(stateSet.get());
  EXPECT_EQ(materialOf(stateSet)->getShininess(kFront), 128);
}

TEST_F(RenderStates, TexturesMatricesAndSamplers) {
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D;
  osg::ref_ptr<osg::TexMat> matrix = new osg::TexMat;
  osg::ref_ptr<osg::Uniform> sampler = new osg::Uniform("map", 2);
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->addTexture(0, texture);
  state->addTexture(2, texture, matrix, sampler);
  state->addTexture(3, nullptr);
  state->apply(stateSet.get());
  EXPECT_EQ(stateSet->getTextureAttribute(0, osg::StateAttribute::TEXTURE), texture.get());
  EXPECT_EQ(stateSet->getTextureMode(0, GL_TEXTURE_2D), static_cast<unsigned int>(osg::StateAttribute::ON));
  EXPECT_EQ(stateSet->getTextureAttribute(0, osg::StateAttribute::TEXMAT), nullptr);
  EXPECT_EQ(stateSet->getTextureAttribute(2, osg::StateAttribute::TEXTURE), texture.get());
  EXPECT_EQ(stateSet->getTextureAttribute(2, osg::StateAttribute::TEXMAT), matrix.get());
  EXPECT_EQ(stateSet->getUniform("map"), sampler.get());
  EXPECT_EQ(stateSet->getTextureAttribute(3, osg::StateAttribute::TEXTURE), nullptr);
  EXPECT_EQ(materialOf(stateSet), nullptr);
}

TEST_F(RenderStates, TextureUnitsOutOfRangeAreSkipped) {
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->addTexture(-1, new osg::Texture2D);
  state->apply(stateSet.get());
  EXPECT_EQ(messages.takeOne(), "Error: render state \"look\": texture unit -1 is not from 0 to 64");
  state = new RenderState("look");
  state->addTexture(65, new osg::Texture2D);
  state->apply(stateSet.get());
  EXPECT_EQ(messages.takeOne(), "Error: render state \"look\": texture unit 65 is not from 0 to 64");
  EXPECT_TRUE(stateSet->getTextureAttributeList().empty());
}

TEST_F(RenderStates, ATextureRecordHoldsAndReleases) {
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D;
  osg::ref_ptr<osg::TexMat> matrix = new osg::TexMat;
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->addTexture(1, texture, matrix);
  EXPECT_EQ(texture->referenceCount(), 2);
  EXPECT_EQ(matrix->referenceCount(), 2);
  state->addTexture(1, new osg::Texture2D);
  EXPECT_EQ(texture->referenceCount(), 1);
  EXPECT_EQ(matrix->referenceCount(), 1);
}

TEST_F(RenderStates, OverrideValuesReachEverything) {
  manager->createProgram("p");
  vyr::ref_ptr<ShaderState> shade = new ShaderState("shade", "p");
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->setColor(RenderState::DIFFUSE, vyr::Vec4(1, 0, 0, 0.5));
  state->addTexture(0, new osg::Texture2D);
  state->addUniform(new osg::Uniform("u", 1.0f));
  state->setShaderState(shade.get());
  state->apply(stateSet.get(), Manager::Values(Manager::ON | Manager::OVERRIDE));
  const unsigned int kOverride = osg::StateAttribute::OVERRIDE;
  EXPECT_EQ(stateSet->getAttributePair(osg::StateAttribute::MATERIAL)->second, kOverride);
  EXPECT_EQ(stateSet->getMode(GL_BLEND), osg::StateAttribute::ON | kOverride);
  EXPECT_EQ(stateSet->getTextureMode(0, GL_TEXTURE_2D), osg::StateAttribute::ON | kOverride);
  EXPECT_EQ(stateSet->getUniformPair("u")->second, kOverride);
  EXPECT_EQ(stateSet->getAttributePair(osg::StateAttribute::PROGRAM)->second, kOverride);
  state->apply(stateSet.get());
  EXPECT_EQ(stateSet->getTextureMode(0, GL_TEXTURE_2D), static_cast<unsigned int>(osg::StateAttribute::ON));
}

TEST_F(RenderStates, UniformsAreKeptByName) {
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  vyr::ref_ptr<ShaderState> shade = new ShaderState("shade", "");
  osg::ref_ptr<osg::Uniform> first = new osg::Uniform("u", 1.0f), second = new osg::Uniform("u", 2.0f);
  state->addUniform(first);
  shade->addUniform(first);
  EXPECT_EQ(state->findUniform("u"), first.get());
  EXPECT_EQ(state->findUniform("v"), nullptr);
  state->addUniform(second);
  shade->addUniform(second);
  EXPECT_EQ(state->findUniform("u"), second.get());
  EXPECT_EQ(shade->findUniform("u"), second.get());
  EXPECT_EQ(first->referenceCount(), 1);
  state->addUniform(nullptr);
  EXPECT_EQ(messages.takeOne(), "Error: state \"look\": a uniform to add is null");
  state->apply(stateSet.get());
  EXPECT_EQ(stateSet->getUniform("u"), second.get());
}

TEST_F(RenderStates, ShaderStatesApplyProgramAndUniforms) {
  osg::Program* program = manager->createProgram("p");
  vyr::ref_ptr<ShaderState> shade = new ShaderState("shade", "p");
  shade->addUniform(new osg::Uniform("u", 1.0f));
  EXPECT_EQ(shade->getName(), "shade");
  EXPECT_EQ(shade->getProgramID(), "p");
  shade->apply(stateSet.get());
  EXPECT_EQ(stateSet->getAttribute(osg::StateAttribute::PROGRAM), program);
  EXPECT_NE(stateSet->getUniform("u"), nullptr);
  osg::ref_ptr<vyrOSG::Node> node = new vyrOSG::Node;
  shade->apply(node.get(), Manager::OVERRIDE);
  EXPECT_EQ(node->getStateSet()->getAttribute(osg::StateAttribute::PROGRAM), program);
  shade->apply(static_cast<vyrOSG::Node*>(nullptr));
  shade->apply(static_cast<osg::StateSet*>(nullptr));
  EXPECT_TRUE(messages.take().empty());
}

TEST_F(RenderStates, AnUnknownProgramLeavesTheTargetAlone) {
  vyr::ref_ptr<ShaderState> shade = new ShaderState("shade", "lost");
  shade->addUniform(new osg::Uniform("u", 1.0f));
  shade->apply(stateSet.get());
  EXPECT_EQ(messages.takeOne(), "Error: shader state \"shade\": there is no program \"lost\"");
  EXPECT_TRUE(stateSet->getAttributeList().empty());
  EXPECT_TRUE(stateSet->getUniformList().empty());
  // Without a program a shader state is its uniforms.
  vyr::ref_ptr<ShaderState> plain = new ShaderState("plain", "");
  plain->addUniform(new osg::Uniform("u", 1.0f));
  plain->apply(stateSet.get());
  EXPECT_NE(stateSet->getUniform("u"), nullptr);
}

TEST_F(RenderStates, TheShaderStateIsReplacedAndReleased) {
  vyr::ref_ptr<ShaderState> first = new ShaderState("a", ""), second = new ShaderState("b", "");
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->setShaderState(first.get());
  EXPECT_EQ(first->getReferenceCount(), 2);
  state->setShaderState(second.get());
  EXPECT_EQ(first->getReferenceCount(), 1);
  state->setShaderState(nullptr);
  EXPECT_EQ(second->getReferenceCount(), 1);
}

TEST_F(RenderStates, NamesChange) {
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  manager->addRenderState(state.get());
  state->setName("other");
  EXPECT_EQ(state->getName(), "other");
  EXPECT_EQ(manager->findRenderState("look"), state.get());
  EXPECT_EQ(manager->findRenderState("other"), nullptr);
}

TEST_F(RenderStates, EveryKindOfTargetIsTaken) {
  vyr::ref_ptr<RenderState> state = new RenderState("look");
  state->setColor(RenderState::DIFFUSE, vyr::Vec4(1, 0, 0, 1));
  const osg::Vec4 red(1, 0, 0, 1);
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  osg::ref_ptr<vyrOSG::Node> node = new vyrOSG::Node;
  osg::ref_ptr<vyrOSG::GeometryNode> geometryNode = new vyrOSG::GeometryNode;
  osg::ref_ptr<osg::Node> visual = new osg::Node;
  vyrOSG::SimulationObject object(nullptr, nullptr, visual.get()), empty;
  state->apply(group.get());
  state->apply(node.get());
  state->apply(geometryNode.get());
  state->apply(object);
  state->apply(empty);
  for (osg::Node* target :
       std::initializer_list<osg::Node*>{group.get(), node.get(), geometryNode.get(), visual.get()}) {
    ASSERT_NE(target->getStateSet(), nullptr);
    EXPECT_EQ(materialOf(target->getStateSet())->getDiffuse(kFront), red);
  }
  state->apply(static_cast<vyrOSG::Group*>(nullptr));
  state->apply(static_cast<vyrOSG::Node*>(nullptr));
  state->apply(static_cast<vyrOSG::GeometryNode*>(nullptr));
  state->apply(static_cast<osg::StateSet*>(nullptr));
  EXPECT_TRUE(messages.take().empty());
}

// A body's visual is a group of geometry nodes that each have the look they were made with.
TEST_F(RenderStates, VisualsBelowTakeTheColourOver) {
  osg::ref_ptr<vyrOSG::Group> root = new vyrOSG::Group;
  vyrOSG::SimulationObject box =
      vyrOSG::SimulationObject::createBox("box", vyr::AffineMatrix4x4(), vyr::Vec3(1, 1, 1), root.get(), nullptr);
  osg::Node* visual = root->getChild(0);
  ASSERT_NE(visual, nullptr);
  const auto own = [](osg::Node* node) { return node->getStateSet() ? materialOf(node->getStateSet()) : nullptr; };
  ASSERT_NE(own(box.getNode()), nullptr);
  vyr::ref_ptr<RenderState> matt = new RenderState("matt");
  matt->setColor(RenderState::SPECULAR, vyr::Vec4(0, 0, 0, 1));
  matt->apply(root.get());
  EXPECT_NE(own(box.getNode()), nullptr);
  vyr::ref_ptr<RenderState> red = new RenderState("red");
  red->setColor(RenderState::DIFFUSE, vyr::Vec4(1, 0, 0, 1));
  red->apply(root.get());
  EXPECT_EQ(own(box.getNode()), nullptr);
  EXPECT_EQ(materialOf(root->getStateSet())->getDiffuse(kFront), osg::Vec4(1, 0, 0, 1));
  // A colour that was given to the visual itself stays.
  red->apply(box);
  matt->apply(root.get());
  red->apply(root.get());
  EXPECT_NE(own(box.getNode()), nullptr);
}

TEST_F(RenderStates, ApplyingIsDoneOnceForAll) {
  // What was applied stays when the manager forgets the state.
  osg::observer_ptr<osg::Program> program = manager->createProgram("p");
  vyr::ref_ptr<ShaderState> shade = new ShaderState("shade", "p");
  shade->apply(stateSet.get());
  manager->clear();
  EXPECT_TRUE(program.valid());
  stateSet = nullptr;
  EXPECT_FALSE(program.valid());
}

} // namespace
