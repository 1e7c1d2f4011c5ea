/// The order, the life and the drawing of lines on the heads-up display.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"

#include <vyrOSG/HudTextManager.h>
#include <vyrOSG/SceneDecorator.h>
#include <vyrSDK/Simulation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using vyrOSG::HudTextManager;
using ReferencedText = vyrOSG::HudTextManager::ReferencedText;

class HudTextManagerTest : public testing::Test {
protected:
  CapturedMessages messages;
  osg::ref_ptr<vyrOSG::SceneDecorator> decorator{new vyrOSG::SceneDecorator(320, 240)};
  vyr::ref_ptr<HudTextManager> manager{new HudTextManager(decorator.get())};
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
};

TEST_F(HudTextManagerTest, ConstantLinesThenReferencedThenTheStepsLines) {
  const vyr::ref_ptr<ReferencedText> text = new ReferencedText(std::string("speed"));
  manager->addText(std::string("step"));
  manager->addReferencedText(text.get());
  manager->addConstantText(std::string("first"));
  manager->addConstantText(std::string("second"));
  EXPECT_THAT(manager->getLines(), ElementsAre("first", "second", "speed", "step"));
  EXPECT_EQ(decorator->getText(0), "");
  manager->updateHud();
  EXPECT_EQ(decorator->getText(0), "first");
  EXPECT_EQ(decorator->getText(1), "second");
  EXPECT_EQ(decorator->getText(2), "speed");
  EXPECT_EQ(decorator->getText(3), "step");
  EXPECT_EQ(decorator->getText(4), "");
}

TEST_F(HudTextManagerTest, ReferencedTextsFollowTheirOwner) {
  const vyr::ref_ptr<ReferencedText> text = new ReferencedText(std::string("1 m/s"));
  EXPECT_EQ(text->getText(), "1 m/s");
  manager->addReferencedText(text.get());
  manager->addReferencedText(text.get());
  manager->addReferencedText(nullptr);
  EXPECT_EQ(text->getReferenceCount(), 2);
  text->setText(std::string("2 m/s"));
  EXPECT_THAT(manager->getLines(), ElementsAre("2 m/s"));
  text->setText(std::string());
  EXPECT_THAT(manager->getLines(), IsEmpty());
  EXPECT_TRUE(manager->removeReferencedText(text.get()));
  EXPECT_FALSE(manager->removeReferencedText(text.get()));
  EXPECT_EQ(text->getReferenceCount(), 1);
}

TEST_F(HudTextManagerTest, LineBreaksMakeLines) {
  manager->addConstantText(std::string("a\nb\n"));
  EXPECT_THAT(manager->getLines(), ElementsAre("a", "b", ""));
}

TEST_F(HudTextManagerTest, ClearingLeavesTheOtherKind) {
  manager->addConstantText(std::string("constant"));
  manager->addText(std::string("step"));
  manager->clearText();
  EXPECT_THAT(manager->getLines(), ElementsAre("constant"));
  manager->addText(std::string("step"));
  manager->clearConstantText();
  EXPECT_THAT(manager->getLines(), ElementsAre("step"));
}

TEST_F(HudTextManagerTest, AnUpdateTakesBackOnlyItsOwnLines) {
  decorator->setText(5, std::string("mine"));
  manager->addText(std::string("a"));
  manager->addText(std::string("b"));
  manager->updateHud();
  manager->clearText();
  manager->addText(std::string("c"));
  manager->updateHud();
  EXPECT_EQ(decorator->getText(0), "c");
  EXPECT_EQ(decorator->getText(1), "");
  EXPECT_EQ(decorator->getText(5), "mine");
}

TEST_F(HudTextManagerTest, ClearedDisplaysComeBackWithTheNextUpdate) {
  manager->addConstantText(std::string("a"));
  manager->updateHud();
  decorator->clearText();
  manager->updateHud();
  EXPECT_EQ(decorator->getText(0), "a");
}

TEST_F(HudTextManagerTest, LinesOfAStepLastUntilTheNextStepEnds) {
  // Adds its line before the step; listeners added before and after the manager must fare alike.
  class Adder : public vyrSDK::StepEventListener {
  public:
    Adder(HudTextManager* manager, const std::string& name)
        : m_manager(manager)
        , m_name(name) {}
    void pre(const vyr::TimeStamp&) override { m_manager->addText(m_name + std::to_string(m_count++)); }

  private:
    HudTextManager* m_manager;
    std::string m_name;
    int m_count = 0;
  };
  const vyr::ref_ptr<Adder> early = new Adder(manager.get(), "early");
  const vyr::ref_ptr<Adder> late = new Adder(manager.get(), "late");
  ASSERT_TRUE(simulation->add(early.get()));
  ASSERT_TRUE(simulation->add(manager.get()));
  ASSERT_TRUE(simulation->add(late.get()));
  EXPECT_EQ(manager->getSimulation(), simulation.get());
  simulation->step();
  EXPECT_EQ(decorator->getText(0), "early0");
  EXPECT_EQ(decorator->getText(1), "late0");
  manager->updateHud();
  EXPECT_EQ(decorator->getText(0), "early0");
  simulation->step();
  EXPECT_EQ(decorator->getText(0), "early1");
  EXPECT_EQ(decorator->getText(1), "late1");
  EXPECT_EQ(decorator->getText(2), "");
  simulation->remove(early.get());
  simulation->remove(late.get());
  simulation->step();
  EXPECT_EQ(decorator->getText(0), "");
  simulation->remove(manager.get());
  EXPECT_EQ(manager->getSimulation(), nullptr);
}

TEST_F(HudTextManagerTest, TheDecoratorMayBeAbsentOrGo) {
  const vyr::ref_ptr<HudTextManager> alone = new HudTextManager(nullptr);
  alone->addText(std::string("a"));
  alone->updateHud();
  EXPECT_THAT(alone->getLines(), ElementsAre("a"));
  manager->addText(std::string("b"));
  decorator = nullptr;
  manager->updateHud();
  EXPECT_THAT(messages.take(), IsEmpty());
}

/// Pixels of an image that are brighter than the black background.
int countLitPixels(const osg::Image& image) {
  int lit = 0;
  for (unsigned row = 0; row < static_cast<unsigned>(image.t()); ++row)
    for (unsigned column = 0; column < static_cast<unsigned>(image.s()); ++column)
      lit += image.getColor(column, row).r() > 0.3f ? 1 : 0;
  return lit;
}

TEST_F(HudTextManagerTest, LinesAreDrawnOverTheScene) {
  OffscreenViewer screen(320, 240);
  if (!screen.isReady())
    GTEST_SKIP() << "no graphics: " << screen.describe();
  decorator->setBackgroundColor(vyr::Vec3(0, 0, 0));
  screen.viewer()->setSceneData(decorator.get());
  const osg::ref_ptr<osg::Image> empty = screen.draw();
  manager->addConstantText(std::string("Speed 12.5 m/s"));
  manager->updateHud();
  const osg::ref_ptr<osg::Image> written = screen.draw();
  manager->clearConstantText();
  manager->updateHud();
  const osg::ref_ptr<osg::Image> cleared = screen.draw();
  ASSERT_TRUE(empty && written && cleared);
  EXPECT_EQ(countLitPixels(*empty), 0);
  EXPECT_GT(countLitPixels(*written), 200);
  EXPECT_EQ(countLitPixels(*cleared), 0);
}

} // namespace
