// Reads options out of lists of arguments.
#include <vyrIO/ArgumentParser.h>

#include <gtest/gtest.h>
#include <vyr/Notify.h>
#include <vyr/ref_ptr.h>

#include <string>
#include <vector>

using vyrIO::ArgumentParser;

namespace {

using Strings = std::vector<std::string>;

/// Counts error messages while it lives.
class ErrorCount : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel level, const std::string&) override { count += level == vyr::NOTIFY_ERROR ? 1 : 0; }
  int count = 0;
};

class ArgumentParserErrors : public ::testing::Test {
protected:
  ArgumentParserErrors() { vyr::Notify::instance()->addSink(m_sink.get()); }
  ~ArgumentParserErrors() override { vyr::Notify::instance()->removeSink(m_sink.get()); }
  int errors() const { return m_sink->count; }

private:
  vyr::ref_ptr<ErrorCount> m_sink{new ErrorCount};
};

TEST(ArgumentParser, ReadsOptionsInBothForms) {
  const vyr::ref_ptr<ArgumentParser> parser = new ArgumentParser(Strings{"--a", "1.5", "--b=text", "file.lua"});
  double number = 0.0;
  std::string text;
  EXPECT_TRUE(parser->read("--a", number));
  EXPECT_EQ(1.5, number);
  EXPECT_TRUE(parser->read("--b", text));
  EXPECT_EQ("text", text);
  EXPECT_EQ(Strings{"file.lua"}, parser->getRemaining());
  EXPECT_EQ(4, parser->getNumArguments());
}

TEST(ArgumentParser, ReadingTakesTheOptionAway) {
  const vyr::ref_ptr<ArgumentParser> parser = new ArgumentParser(Strings{"--grid", "--shot", "a", "--shot", "b"});
  EXPECT_TRUE(parser->readFlag("--grid"));
  EXPECT_FALSE(parser->readFlag("--grid"));
  std::string shot;
  EXPECT_TRUE(parser->read("--shot", shot));
  EXPECT_EQ("a", shot);
  EXPECT_TRUE(parser->read("--shot", shot));
  EXPECT_EQ("b", shot);
  EXPECT_FALSE(parser->read("--shot", shot));
  EXPECT_EQ("b", shot);
}

TEST(ArgumentParser, KeepsWhatNobodyKnows) {
  const vyr::ref_ptr<ArgumentParser> parser = new ArgumentParser(Strings{"x", "--odd", "-3", "--", "--not-an-option"});
  EXPECT_EQ(Strings({"--odd"}), parser->getUnknown());
  EXPECT_EQ(Strings({"x", "-3", "--not-an-option"}), parser->getPositional());
  EXPECT_FALSE(parser->has("--not-an-option"));
}

TEST(ArgumentParser, ReadsSeveralValues) {
  const vyr::ref_ptr<ArgumentParser> parser =
      new ArgumentParser(Strings{"--window", "-10", "20", "640", "480", "rest"});
  Strings values;
  EXPECT_TRUE(parser->read("--window", 4, values));
  EXPECT_EQ(Strings({"-10", "20", "640", "480"}), values);
  EXPECT_EQ(Strings({"rest"}), parser->getRemaining());
}

TEST(ArgumentParser, TakesMainsArguments) {
  const char* const argv[] = {"vyr", "a", "b"};
  const vyr::ref_ptr<ArgumentParser> parser = new ArgumentParser(3, argv);
  EXPECT_EQ("vyr", parser->getProgramName());
  EXPECT_EQ("b", parser->getArgument(1));
  EXPECT_EQ("", parser->getArgument(2));
  EXPECT_EQ("", parser->getArgument(-1));
}

TEST_F(ArgumentParserErrors, ValuesThatAreNoNumbersAreOneErrorAndChangeNothing) {
  const vyr::ref_ptr<ArgumentParser> parser =
      new ArgumentParser(Strings{"--a", "1x", "--b", "nan", "--c", "2.5", "--d", "--e"});
  double number = 7.0;
  EXPECT_FALSE(parser->read("--a", number));
  EXPECT_EQ(1, errors());
  EXPECT_FALSE(parser->read("--b", number));
  EXPECT_EQ(2, errors());
  EXPECT_EQ(7.0, number);
  int whole = 3;
  EXPECT_FALSE(parser->read("--c", whole));
  EXPECT_EQ(3, whole);
  EXPECT_EQ(3, errors());
  std::string text = "old";
  EXPECT_FALSE(parser->read("--d", text));
  EXPECT_EQ("old", text);
  EXPECT_EQ(4, errors());
  EXPECT_TRUE(parser->readFlag("--e"));
}

TEST_F(ArgumentParserErrors, TooFewValuesAreOneError) {
  const vyr::ref_ptr<ArgumentParser> parser = new ArgumentParser(Strings{"--window", "1", "2", "--next"});
  Strings values;
  EXPECT_FALSE(parser->read("--window", 4, values));
  EXPECT_TRUE(values.empty());
  EXPECT_EQ(1, errors());
}

} // namespace
