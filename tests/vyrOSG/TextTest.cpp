/// Text in the scene.
#include <vyrOSG/Text.h>

#include "CapturedMessages.h"
#include "OffscreenViewer.h"

#include <osg/Geode>
#include <osgText/Text>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using osgText::TextBase;
using vyrOSG::Text;

std::string textOf(const Text& text) {
  return text.getDrawable()->getText().createUTF8EncodedString();
}

TEST(Text, CarriesOneDrawableInAGeode) {
  osg::ref_ptr<Text> text = new Text("label");
  ASSERT_EQ(text->getNumChildren(), 1u);
  osg::Geode* geode = text->getChild(0)->asGeode();
  ASSERT_NE(geode, nullptr);
  ASSERT_EQ(geode->getNumDrawables(), 1u);
  EXPECT_EQ(geode->getDrawable(0), text->getDrawable());
}

TEST(Text, StandsAtTheOriginInWhiteUnlessTold) {
  osg::ref_ptr<Text> text = new Text("label");
  EXPECT_EQ(textOf(*text), "label");
  EXPECT_EQ(text->getDrawable()->getPosition(), osg::Vec3(0, 0, 0));
  EXPECT_EQ(text->getDrawable()->getColor(), osg::Vec4(1, 1, 1, 1));
  EXPECT_EQ(text->getDrawable()->getCharacterHeight(), 1.0f);
  EXPECT_EQ(text->getDrawable()->getAxisAlignment(), TextBase::SCREEN);
  EXPECT_EQ(text->getDrawable()->getAlignment(), TextBase::LEFT_BASE_LINE);
  osg::ref_ptr<Text> empty = new Text;
  EXPECT_EQ(textOf(*empty), "");
  EXPECT_EQ(empty->getDrawable()->getColor(), osg::Vec4(1, 1, 1, 1));
}

TEST(Text, TakesPositionAndColour) {
  osg::ref_ptr<Text> text = new Text("label", vyr::Vec3(1, 2, 3), vyr::Vec4(1, 0.5, 0.25, 0.75));
  EXPECT_EQ(text->getDrawable()->getPosition(), osg::Vec3(1, 2, 3));
  EXPECT_EQ(text->getDrawable()->getColor(), osg::Vec4(1, 0.5f, 0.25f, 0.75f));
}

TEST(Text, EverySetterReachesTheDrawable) {
  osg::ref_ptr<Text> text = new Text;
  text->setText("two\nlines");
  text->setPosition(vyr::Vec3(4, 5, 6));
  text->setColor(vyr::Vec4(0, 1, 0, 1));
  text->setCharacterSize(0.25f);
  EXPECT_EQ(textOf(*text), "two\nlines");
  EXPECT_EQ(text->getDrawable()->getPosition(), osg::Vec3(4, 5, 6));
  EXPECT_EQ(text->getDrawable()->getColor(), osg::Vec4(0, 1, 0, 1));
  EXPECT_EQ(text->getDrawable()->getCharacterHeight(), 0.25f);
}

TEST(Text, ReadsUtf8) {
  osg::ref_ptr<Text> text = new Text("\xC3\xA4\xC2\xB2");
  EXPECT_EQ(text->getDrawable()->getText().size(), 2u);
  EXPECT_EQ(text->getDrawable()->getText()[0], 0xE4u);
}

TEST(Text, EveryAxisAlignmentIsTaken) {
  osg::ref_ptr<Text> text = new Text;
  for (int value = Text::XY_PLANE; value <= Text::USER_DEFINED_ROTATION; ++value) {
    text->setAxisAlignment(static_cast<Text::AxisAlignment>(value));
    EXPECT_EQ(text->getDrawable()->getAxisAlignment(), value);
  }
}

TEST(Text, EveryBackdropIsTaken) {
  osg::ref_ptr<Text> text = new Text;
  for (int value = Text::DROP_SHADOW_BOTTOM_RIGHT; value <= Text::NONE; ++value) {
    text->setBackdropType(static_cast<Text::BackdropType>(value));
    EXPECT_EQ(text->getDrawable()->getBackdropType(), value);
  }
}

TEST(Text, EveryDrawModeIsTaken) {
  osg::ref_ptr<Text> text = new Text;
  for (int value = 0; value <= 15; ++value) {
    text->setDrawMode(static_cast<Text::DrawModeMask>(value));
    EXPECT_EQ(text->getDrawMode(), value);
    EXPECT_EQ(text->getDrawable()->getDrawMode(), static_cast<unsigned int>(value & Text::TEXT));
    EXPECT_EQ(text->getChild(0)->asGeode()->getNumDrawables(), (value & ~Text::TEXT) != 0 ? 2u : 1u);
    EXPECT_EQ(text->getChild(0)->asGeode()->getDrawable(0), text->getDrawable());
  }
}

// Each decoration alone changes pixels of a picture that is empty without it.
class TextDecoration : public testing::TestWithParam<int> {};

TEST_P(TextDecoration, IsDrawn) {
  OffscreenViewer offscreen(96, 64);
  if (!offscreen.isReady())
    GTEST_SKIP() << "no graphics: " << offscreen.describe();
  osg::ref_ptr<Text> text = new Text("Hg");
  text->setAlignment(Text::CENTER_CENTER);
  offscreen.viewer()->setSceneData(text);
  offscreen.camera()->setViewMatrixAsLookAt(osg::Vec3(0, -5, 0), osg::Vec3(), osg::Vec3(0, 0, 1));
  const auto drawnPixels = [&](int mode) {
    text->setDrawMode(static_cast<Text::DrawModeMask>(mode));
    const osg::ref_ptr<osg::Image> picture = offscreen.draw();
    int count = 0;
    for (int y = 0; y < picture->t(); ++y)
      for (int x = 0; x < picture->s(); ++x)
        count += picture->getColor(unsigned(x), unsigned(y)) != osg::Vec4(0, 0, 1, 1) ? 1 : 0;
    return count;
  };
  EXPECT_EQ(drawnPixels(0), 0);
  const int alone = drawnPixels(GetParam());
  const int glyphs = drawnPixels(Text::TEXT);
  EXPECT_GT(alone, 10);
  EXPECT_GT(glyphs, 10);
  EXPECT_GT(drawnPixels(GetParam() + Text::TEXT), glyphs);
  // A filled box covers more than its outline.
  if (GetParam() == Text::FILLEDBOUNDINGBOX) {
    EXPECT_GT(alone, 2 * drawnPixels(Text::BOUNDINGBOX));
  }
}

INSTANTIATE_TEST_SUITE_P(Text, TextDecoration,
                         testing::Values(Text::BOUNDINGBOX, Text::FILLEDBOUNDINGBOX, Text::ALIGNMENT));

TEST(Text, EveryAlignmentIsTaken) {
  osg::ref_ptr<Text> text = new Text;
  for (int value = Text::LEFT_TOP; value <= Text::RIGHT_BOTTOM_BASE_LINE; ++value) {
    text->setAlignment(static_cast<Text::AlignmentType>(value));
    EXPECT_EQ(text->getDrawable()->getAlignment(), value);
  }
  EXPECT_EQ(Text::BASE_LINE, Text::LEFT_BASE_LINE);
}

TEST(Text, BadValuesChangeNothingAndGiveOneLine) {
  CapturedMessages messages;
  osg::ref_ptr<Text> text = new Text("label", vyr::Vec3(1, 2, 3));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto* drawable = text->getDrawable();
  text->setPosition(vyr::Vec3(0, nan, 0));
  EXPECT_EQ(messages.takeOne(), "Error: text: setPosition(0 nan 0) is not finite");
  EXPECT_EQ(drawable->getPosition(), osg::Vec3(1, 2, 3));
  text->setColor(vyr::Vec4(HUGE_VAL, 0, 0, 1));
  EXPECT_EQ(messages.takeOne(), "Error: text: setColor(inf 0 0 1) is not finite");
  EXPECT_EQ(drawable->getColor(), osg::Vec4(1, 1, 1, 1));
  text->setCharacterSize(-2);
  EXPECT_EQ(messages.takeOne(), "Error: text: setCharacterSize(-2) is not a positive size");
  text->setCharacterSize(static_cast<float>(nan));
  EXPECT_EQ(messages.takeOne(), "Error: text: setCharacterSize(nan) is not a positive size");
  EXPECT_EQ(drawable->getCharacterHeight(), 1.0f);
  text->setAxisAlignment(static_cast<Text::AxisAlignment>(8));
  EXPECT_EQ(messages.takeOne(), "Error: text: setAxisAlignment(8) is not a value from 0 to 7");
  text->setBackdropType(static_cast<Text::BackdropType>(-1));
  EXPECT_EQ(messages.takeOne(), "Error: text: setBackdropType(-1) is not a value from 0 to 9");
  text->setDrawMode(static_cast<Text::DrawModeMask>(16));
  EXPECT_EQ(messages.takeOne(), "Error: text: setDrawMode(16) is not a value from 0 to 15");
  text->setAlignment(static_cast<Text::AlignmentType>(15));
  EXPECT_EQ(messages.takeOne(), "Error: text: setAlignment(15) is not a value from 0 to 14");
}

TEST(Text, FontsAreFoundByName) {
  CapturedMessages messages;
  osg::ref_ptr<Text> text = new Text("label");
  const osgText::Font* before = text->getDrawable()->getFont();
  text->setFont("DejaVuSans");
  EXPECT_TRUE(messages.take().empty());
  ASSERT_NE(text->getDrawable()->getFont(), nullptr);
  EXPECT_NE(text->getDrawable()->getFont(), before);
  EXPECT_NE(text->getDrawable()->getFont()->getFileName().find("DejaVuSans.ttf"), std::string::npos);
}

TEST(Text, AMissingFontNamesEveryPathAndChangesNothing) {
  CapturedMessages messages;
  osg::ref_ptr<Text> text = new Text("label");
  text->setFont("DejaVuSans.ttf");
  const osgText::Font* before = text->getDrawable()->getFont();
  text->setFont("NoSuchFace");
  const std::string line = messages.takeOne();
  EXPECT_EQ(line.find("Error: font \"NoSuchFace\" cannot be read, tried: NoSuchFace, "), 0u) << line;
  for (const char* tried : {"fonts/NoSuchFace.ttf", "NoSuchFace.otf", "/usr/share/fonts/.../NoSuchFace.ttf"})
    EXPECT_NE(line.find(tried), std::string::npos) << tried << " in " << line;
  EXPECT_EQ(text->getDrawable()->getFont(), before);
}

} // namespace
