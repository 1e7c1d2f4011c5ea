/// The message channel.
#include <vyr/Notify.h>

#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

namespace {

using Messages = std::vector<std::pair<vyr::NotifyLevel, std::string>>;

class CollectingSink : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel level, const std::string& text) override { messages.emplace_back(level, text); }
  Messages messages;
};

class Notify : public testing::Test {
protected:
  void SetUp() override { channel->addSink(sink.get()); }
  void TearDown() override {
    channel->removeSink(sink.get());
    channel->setNotifyLevel(vyr::NOTIFY_WARNING);
  }
  vyr::Notify* channel = vyr::Notify::instance();
  vyr::ref_ptr<CollectingSink> sink{new CollectingSink};
};

TEST_F(Notify, AMessageIsPrefixTextAndEnd) {
  channel->getThreadStringStream() << channel->setDebugStrings(vyr::NOTIFY_ERROR, "", -1, "") << "lost " << 3
                                   << std::endl
                                   << channel->end();
  EXPECT_EQ(sink->messages, (Messages{{vyr::NOTIFY_ERROR, "Error: lost 3"}}));
}

TEST_F(Notify, ThePrefixNamesFileLineAndFunction) {
  EXPECT_EQ(channel->setDebugStrings(vyr::NOTIFY_WARNING, "a.cpp", 12, "f"), "Warning: a.cpp(12) f: ");
}

TEST_F(Notify, MessagesBelowTheLevelAreDropped) {
  VYR_NOTIFY(vyr::NOTIFY_INFO) << "quiet";
  EXPECT_TRUE(sink->messages.empty());
  channel->setNotifyLevel(vyr::NOTIFY_DEBUG);
  VYR_NOTIFY(vyr::NOTIFY_DEBUG) << "loud";
  EXPECT_EQ(sink->messages, (Messages{{vyr::NOTIFY_DEBUG, "Debug: loud"}}));
}

TEST_F(Notify, ADroppedMessageLeavesNothingBehind) {
  VYR_NOTIFY(vyr::NOTIFY_DEBUG) << "dropped";
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "kept";
  EXPECT_EQ(sink->messages, (Messages{{vyr::NOTIFY_ERROR, "Error: kept"}}));
}

TEST_F(Notify, ThreadsDoNotMixTheirMessages) {
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([] {
      for (int i = 0; i < 100; ++i) {
        VYR_NOTIFY(vyr::NOTIFY_ERROR) << "one"
                                      << "two";
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  ASSERT_EQ(sink->messages.size(), 400u);
  for (const auto& message : sink->messages) {
    EXPECT_EQ(message.second, "Error: onetwo");
  }
}

} // namespace
