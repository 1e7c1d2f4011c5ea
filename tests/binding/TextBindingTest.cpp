// The module Text: every row of vyrOSG.Text.
#include "GivenObjects.h"
#include "LuaState.h"

#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyrOSG/Text.h>

#include <osg/Group>
#include <osg/observer_ptr>
#include <osgText/Text>

#include <gtest/gtest.h>

int tolua_vyrOSG_Text_open(lua_State* state);
int luaopen_vyrOSG_Text(lua_State* state);

namespace {

using bindingtest::invalidSelf;
using bindingtest::mismatch;
using bindingtest::ownedCount;

class TextBinding : public ::testing::Test {
protected:
  TextBinding() {
    tolua_vyrOSG_Text_open(lua.get());
    bindingtest::give(lua, "vec3", &vec3, "vyr::Vec3");
    bindingtest::give(lua, "vec4", &vec4, "vyr::Vec4");
  }
  /// The drawable of the text that a chunk leaves in the global `text`.
  const osgText::Text& run(const std::string& chunk) {
    EXPECT_EQ("", lua.run(chunk));
    return *bindingtest::taken<vyrOSG::Text>(lua, "text")->getDrawable();
  }

  vyr::Vec3 vec3{1, 2, 3};
  vyr::Vec4 vec4{1, 0.5, 0.25, 1};
  bindingtest::LuaState lua;
};

TEST_F(TextBinding, OpensAloneWithTheSharedBlock) {
  bindingtest::LuaState fresh;
  EXPECT_EQ(1, luaopen_vyrOSG_Text(fresh.get()));
  EXPECT_EQ(1, tolua_vyrOSG_Text_open(fresh.get()));
  EXPECT_EQ("1 4 nil", fresh.eval("vyr.FrictionModel.DIRECT, vyr.Constraint.ITERATIVE, osg"));
  EXPECT_EQ("vyrOSG::Text", fresh.eval("vyrOSG.Text()"));
}

TEST_F(TextBinding, Constants) {
  const std::pair<const char*, int> constants[] = {{"XY_PLANE", 0},
                                                   {"REVERSED_XY_PLANE", 1},
                                                   {"XZ_PLANE", 2},
                                                   {"REVERSED_XZ_PLANE", 3},
                                                   {"YZ_PLANE", 4},
                                                   {"REVERSED_YZ_PLANE", 5},
                                                   {"SCREEN", 6},
                                                   {"USER_DEFINED_ROTATION", 7},
                                                   {"DROP_SHADOW_BOTTOM_RIGHT", 0},
                                                   {"DROP_SHADOW_CENTER_RIGHT", 1},
                                                   {"DROP_SHADOW_TOP_RIGHT", 2},
                                                   {"DROP_SHADOW_BOTTOM_CENTER", 3},
                                                   {"DROP_SHADOW_TOP_CENTER", 4},
                                                   {"DROP_SHADOW_BOTTOM_LEFT", 5},
                                                   {"DROP_SHADOW_CENTER_LEFT", 6},
                                                   {"DROP_SHADOW_TOP_LEFT", 7},
                                                   {"OUTLINE", 8},
                                                   {"NONE", 9},
                                                   {"TEXT", 1},
                                                   {"BOUNDINGBOX", 2},
                                                   {"FILLEDBOUNDINGBOX", 4},
                                                   {"ALIGNMENT", 8},
                                                   {"LEFT_TOP", 0},
                                                   {"LEFT_CENTER", 1},
                                                   {"LEFT_BOTTOM", 2},
                                                   {"CENTER_TOP", 3},
                                                   {"CENTER_CENTER", 4},
                                                   {"CENTER_BOTTOM", 5},
                                                   {"RIGHT_TOP", 6},
                                                   {"RIGHT_CENTER", 7},
                                                   {"RIGHT_BOTTOM", 8},
                                                   {"LEFT_BASE_LINE", 9},
                                                   {"CENTER_BASE_LINE", 10},
                                                   {"RIGHT_BASE_LINE", 11},
                                                   {"LEFT_BOTTOM_BASE_LINE", 12},
                                                   {"CENTER_BOTTOM_BASE_LINE", 13},
                                                   {"RIGHT_BOTTOM_BASE_LINE", 14},
                                                   {"BASE_LINE", 9}};
  for (const auto& [name, value] : constants)
    EXPECT_EQ(std::to_string(value), lua.eval(std::string("vyrOSG.Text.") + name)) << name;
  EXPECT_EQ(std::to_string(std::size(constants)), lua.run("local n = 0 for k, v in pairs(vyrOSG.Text) do"
                                                          " if type(v) == 'number' then n = n + 1 end end return n"));
}

TEST_F(TextBinding, ConstructorsGiveTheTextBack) {
  EXPECT_EQ("vyrOSG::Text", lua.eval("vyrOSG.Text:new()"));
  EXPECT_EQ("vyrOSG::Text label", lua.eval("vyrOSG.Text:new('label')"));
  EXPECT_EQ("vyrOSG::Text label", lua.eval("vyrOSG.Text:new('label', vec3)"));
  EXPECT_EQ("vyrOSG::Text label", lua.eval("vyrOSG.Text:new('label', vec3, vec4)"));
  EXPECT_EQ("vyrOSG::Text", lua.eval("vyrOSG.Text:new_local()"));
  EXPECT_EQ("vyrOSG::Text label", lua.eval("vyrOSG.Text:new_local('label')"));
  EXPECT_EQ("vyrOSG::Text label", lua.eval("vyrOSG.Text:new_local('label', vec3)"));
  EXPECT_EQ("vyrOSG::Text label", lua.eval("vyrOSG.Text:new_local('label', vec3, vec4)"));
  // The class call's event keeps one value; the function behind it gives both.
  EXPECT_EQ("vyrOSG::Text", lua.eval("vyrOSG.Text('label')"));
  EXPECT_EQ("vyrOSG::Text label", lua.eval("vyrOSG.Text['.call'](vyrOSG.Text, 'label')"));
  EXPECT_EQ(mismatch("new"), lua.raised("vyrOSG.Text:new({})"));
  EXPECT_EQ(mismatch("new"), lua.raised("vyrOSG.Text:new('label', nil)"));
  EXPECT_EQ(mismatch("new"), lua.raised("vyrOSG.Text('label', vec3, nil)"));
  EXPECT_EQ(mismatch("new"), lua.raised("vyrOSG.Text('label', vec3, vec4, 1)"));
}

TEST_F(TextBinding, ConstructorsFillInPositionAndColour) {
  const osgText::Text* text = &run("text = vyrOSG.Text('label')");
  EXPECT_EQ("label", text->getText().createUTF8EncodedString());
  EXPECT_EQ(osg::Vec3(0, 0, 0), text->getPosition());
  EXPECT_EQ(osg::Vec4(1, 1, 1, 1), text->getColor());
  text = &run("text = vyrOSG.Text('label', vec3)");
  EXPECT_EQ(osg::Vec3(1, 2, 3), text->getPosition());
  EXPECT_EQ(osg::Vec4(1, 1, 1, 1), text->getColor());
  text = &run("text = vyrOSG.Text('label', vec3, vec4)");
  EXPECT_EQ(osg::Vec3(1, 2, 3), text->getPosition());
  EXPECT_EQ(osg::Vec4(1, 0.5f, 0.25f, 1), text->getColor());
  text = &run("text = vyrOSG.Text()");
  EXPECT_EQ("", text->getText().createUTF8EncodedString());
}

TEST_F(TextBinding, LuaHoldsOneReference) {
  for (const char* arguments : {"", "'label'", "'label', vec3", "'label', vec3, vec4"}) {
    EXPECT_EQ("0", ownedCount(lua, std::string("vyrOSG.Text:new(") + arguments + ")")) << arguments;
    EXPECT_EQ("1", ownedCount(lua, std::string("vyrOSG.Text:new_local(") + arguments + ")")) << arguments;
    EXPECT_EQ("1", ownedCount(lua, std::string("vyrOSG.Text(") + arguments + ")")) << arguments;
  }
  lua.run("text = vyrOSG.Text:new('label')");
  osg::ref_ptr<vyrOSG::Text> unowned = bindingtest::taken<vyrOSG::Text>(lua, "text");
  EXPECT_EQ(1, unowned->referenceCount());
  lua.run("text = vyrOSG.Text('label')");
  osg::observer_ptr<vyrOSG::Text> owned = bindingtest::taken<vyrOSG::Text>(lua, "text");
  EXPECT_EQ(1, owned->referenceCount());
  osg::ref_ptr<osg::Group> scene = new osg::Group;
  scene->addChild(owned.get());
  lua.run("text = nil");
  lua.collect();
  ASSERT_TRUE(owned.valid());
  EXPECT_EQ(1, owned->referenceCount());
  scene = nullptr;
  EXPECT_FALSE(owned.valid());
}

TEST_F(TextBinding, EverySetter) {
  const osgText::Text& text = run("text = vyrOSG.Text('label')");
  EXPECT_EQ("DejaVuSans", lua.eval("text:setFont('DejaVuSans')"));
  ASSERT_NE(nullptr, text.getFont());
  EXPECT_NE(std::string::npos, text.getFont()->getFileName().find("DejaVuSans"));
  EXPECT_EQ("", lua.run("text:setCharacterSize(0.25)"));
  EXPECT_EQ(0.25f, text.getCharacterHeight());
  EXPECT_EQ("", lua.run("text:setPosition(vec3)"));
  EXPECT_EQ(osg::Vec3(1, 2, 3), text.getPosition());
  EXPECT_EQ("", lua.run("text:setAxisAlignment(vyrOSG.Text.XZ_PLANE)"));
  EXPECT_EQ(osgText::TextBase::XZ_PLANE, text.getAxisAlignment());
  EXPECT_EQ("", lua.run("text:setBackdropType(vyrOSG.Text.OUTLINE)"));
  EXPECT_EQ(osgText::Text::OUTLINE, text.getBackdropType());
  EXPECT_EQ("", lua.run("text:setDrawMode(vyrOSG.Text.TEXT + vyrOSG.Text.BOUNDINGBOX)"));
  EXPECT_EQ(3, bindingtest::taken<vyrOSG::Text>(lua, "text")->getDrawMode());
  EXPECT_EQ("new", lua.eval("text:setText('new')"));
  EXPECT_EQ("new", text.getText().createUTF8EncodedString());
  EXPECT_EQ("", lua.run("text:setAlignment(vyrOSG.Text.CENTER_CENTER)"));
  EXPECT_EQ(osgText::TextBase::CENTER_CENTER, text.getAlignment());
  EXPECT_EQ("", lua.run("text:setColor(vec4)"));
  EXPECT_EQ(osg::Vec4(1, 0.5f, 0.25f, 1), text.getColor());
}

TEST_F(TextBinding, NilStringsAreEmpty) {
  const osgText::Text& text = run("text = vyrOSG.Text('label')");
  EXPECT_EQ("", lua.eval("text:setText(nil)"));
  EXPECT_EQ("", text.getText().createUTF8EncodedString());
}

TEST_F(TextBinding, WrongArgumentsAndNullSelf) {
  lua.run("text = vyrOSG.Text()");
  bindingtest::giveNull(lua, "null", "vyrOSG::Text");
  const std::pair<const char*, const char*> setters[] = {
      {"setFont", "'f'"},        {"setCharacterSize", "1"}, {"setPosition", "vec3"},
      {"setAxisAlignment", "1"}, {"setBackdropType", "1"},  {"setDrawMode", "1"},
      {"setText", "'t'"},        {"setAlignment", "1"},     {"setColor", "vec4"}};
  for (const auto& [name, argument] : setters) {
    const std::string call = std::string(":") + name + "(";
    EXPECT_EQ(mismatch(name), lua.raised("text" + call + "{})")) << name;
    EXPECT_EQ(mismatch(name), lua.raised("text" + call + argument + ", 1)")) << name;
    EXPECT_EQ(invalidSelf(name), lua.raised("null" + call + argument + ")")) << name;
  }
  EXPECT_EQ(mismatch("setPosition"), lua.raised("text:setPosition(nil)"));
  EXPECT_EQ(mismatch("setColor"), lua.raised("text:setColor(nil)"));
}

} // namespace
