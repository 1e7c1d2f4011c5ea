/// Configuration scripts and the lines of their values.
#include <vyrCFG/ConfigScript.h>

#include <vyr/Notify.h>
#include <vyr/ref_ptr.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using vyrCFG::ConfigScript;
using vyrCFG::ConfigValue;

class CollectingSink : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel, const std::string& text) override { lines.push_back(text); }
  std::vector<std::string> lines;
};

class ConfigScriptTest : public testing::Test {
protected:
  void SetUp() override { vyr::Notify::instance()->addSink(sink.get()); }
  void TearDown() override { vyr::Notify::instance()->removeSink(sink.get()); }
  vyr::ref_ptr<CollectingSink> sink{new CollectingSink};
  vyr::ref_ptr<ConfigScript> script{new ConfigScript};
};

TEST_F(ConfigScriptTest, KeepsEveryKindWithItsLine) {
  ASSERT_TRUE(script->parse("{\n"
                            "  \"number\": 1.5,\n"
                            "  \"whole\": -3\n"
                            "  , \"text\": \"a\\nb\",\n"
                            "  \"yes\": true, // a remark\n"
                            "  \"list\": [1,\n"
                            "    2],\n"
                            "  \"nothing\": null,\n"
                            "  \"object\": {\n"
                            "    \"inner\":\n"
                            "      7\n"
                            "  }\n"
                            "}\n",
                            "text.json"));
  EXPECT_TRUE(sink->lines.empty());
  EXPECT_TRUE(script->isValid());
  EXPECT_EQ(script->getName(), "text.json");
  const ConfigValue& root = script->getRoot();
  const auto line = [&root](const char* key) { return root.find(key)->getLine(); };
  EXPECT_EQ(root.getMembers().size(), 7u);
  EXPECT_EQ(root.find("number")->asNumber(), 1.5);
  EXPECT_EQ(line("number"), 2);
  EXPECT_EQ(root.find("whole")->asNumber(), -3);
  EXPECT_EQ(line("whole"), 3);
  EXPECT_EQ(root.find("text")->asString(), "a\nb");
  EXPECT_EQ(line("text"), 4);
  EXPECT_TRUE(root.find("yes")->asBoolean());
  EXPECT_EQ(line("yes"), 5);
  const ConfigValue& list = *root.find("list");
  ASSERT_EQ(list.getElements().size(), 2u);
  EXPECT_EQ(list.getElements()[0].getLine(), 6);
  EXPECT_EQ(list.getElements()[1].getLine(), 7);
  EXPECT_EQ(list.getElements()[1].asNumber(), 2);
  EXPECT_TRUE(root.find("nothing")->isNull());
  const ConfigValue::Member& object = root.getMembers()[6];
  EXPECT_EQ(object.line, 9);
  EXPECT_EQ(object.value.getMembers()[0].line, 10);
  EXPECT_EQ(object.value.find("inner")->getLine(), 11);
  EXPECT_EQ(object.value.find("missing"), nullptr);
}

TEST_F(ConfigScriptTest, ASyntaxErrorNamesFileAndLine) {
  EXPECT_FALSE(script->parse("{\n  \"a\": 1,\n  \"b\" 2\n}", "broken.json"));
  ASSERT_EQ(sink->lines.size(), 1u);
  EXPECT_EQ(sink->lines[0].find("Error: broken.json:3: "), 0u) << sink->lines[0];
  EXPECT_FALSE(script->isValid());
  EXPECT_TRUE(script->getRoot().getMembers().empty());
}

TEST_F(ConfigScriptTest, TheOutermostValueIsAnObject) {
  EXPECT_FALSE(script->parse("\n[1, 2]", "list.json"));
  ASSERT_EQ(sink->lines.size(), 1u);
  EXPECT_EQ(sink->lines[0], "Error: list.json:2: a configuration script is an object, not a list");
}

TEST_F(ConfigScriptTest, AKeyThatStandsTwiceIsTold) {
  EXPECT_TRUE(script->parse("{\"a\": 1,\n\"a\": 2}", "twice.json"));
  ASSERT_EQ(sink->lines.size(), 1u);
  EXPECT_EQ(sink->lines[0], "Error: twice.json:2: key \"a\" stands twice, the later one counts");
  EXPECT_EQ(script->getRoot().find("a")->asNumber(), 2);
  EXPECT_EQ(script->getRoot().getMembers().size(), 1u);
}

TEST_F(ConfigScriptTest, AFailedReadForgetsTheOneBefore) {
  ASSERT_TRUE(script->parse("{\"a\": 1}"));
  EXPECT_FALSE(script->parse("{"));
  EXPECT_FALSE(script->isValid());
  EXPECT_EQ(script->getRoot().find("a"), nullptr);
}

TEST_F(ConfigScriptTest, ReadsAFileAndKnowsItsFolder) {
  const std::string file = testing::TempDir() + "ConfigScriptTest" + std::to_string(getpid()) + ".json";
  std::ofstream(file) << "{\"a\": \"file\"}";
  EXPECT_TRUE(script->load(file));
  EXPECT_EQ(script->getName(), file);
  EXPECT_EQ(script->getDirectory(), testing::TempDir());
  EXPECT_EQ(script->getRoot().find("a")->asString(), "file");
  std::remove(file.c_str());
  ASSERT_TRUE(script->parse("{}", "/etc/name"));
  EXPECT_EQ(script->getDirectory(), "");
}

TEST_F(ConfigScriptTest, AMissingFileIsOneLine) {
  EXPECT_FALSE(script->load("/no/such/file.json"));
  ASSERT_EQ(sink->lines.size(), 1u);
  EXPECT_EQ(sink->lines[0], "Error: configuration script \"/no/such/file.json\" cannot be read");
}

TEST_F(ConfigScriptTest, AFolderIsNoFile) {
  EXPECT_FALSE(script->load(testing::TempDir()));
  EXPECT_EQ(sink->lines.size(), 1u);
}

TEST(ConfigValue, LeavesOfAnotherKindGiveTheOtherwise) {
  ConfigValue value;
  EXPECT_EQ(value.asNumber(4), 4);
  value.setNumber(2);
  EXPECT_EQ(value.asNumber(4), 2);
  EXPECT_TRUE(value.asBoolean(true));
  EXPECT_EQ(value.asString(), "");
  EXPECT_STREQ(value.getKindName(), "number");
}

TEST(ConfigValue, CopiesAreDeep) {
  ConfigValue value;
  value.setMember("a", ConfigValue())->setNumber(1);
  ConfigValue copy(value);
  copy.setMember("a", ConfigValue())->setNumber(2);
  EXPECT_EQ(value.find("a")->asNumber(), 1);
  EXPECT_EQ(copy.find("a")->asNumber(), 2);
}

} // namespace
