// Saves, restores, journals and streams the application's simulation.
#include "ApplicationFixture.h"
#include "CapturedMessages.h"

#include <nlohmann/json.hpp>

#include <algorithm>

#include <arpa/inet.h>
#include <csignal>
#include <filesystem>
#include <netinet/in.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

using vyrOSG::ExampleApplication;

namespace {

class ApplicationState : public ApplicationTest {
protected:
  std::string file() { return folder / "state.json"; }
  std::string journal() { return folder / "journal.db"; }
};

TEST_F(ApplicationState, ASavedStateComesBackBitForBit) {
  ASSERT_TRUE(init());
  run(0.3);
  ASSERT_TRUE(app->saveToFile(file()));
  const uint64_t saved = app->getSimulation()->stateHash();
  app->stopAfter(0.3);
  app->run();
  EXPECT_NE(saved, app->getSimulation()->stateHash());
  EXPECT_TRUE(app->restoreFromFile(file()));
  EXPECT_EQ(saved, app->getSimulation()->stateHash());
  EXPECT_NEAR(0.3, app->getTimeStamp(), 1e-9);
}

TEST_F(ApplicationState, AnEmptySimulationGetsTheBodiesWithVisuals) {
  ASSERT_TRUE(init());
  run(0.3);
  ASSERT_TRUE(app->saveToFile(file()));
  const vyr::Vec3 place = box->getPosition();
  const double mass = box->getMass();
  vyr::ref_ptr<ExampleApplication> other = new ExampleApplication;
  ASSERT_TRUE(other->restoreFromFile(file()));
  const auto& bodies = other->getSimulation()->getRigidBodies();
  ASSERT_EQ(2u, bodies.size());
  EXPECT_EQ("box", bodies[1]->getName());
  EXPECT_EQ(place, bodies[1]->getPosition());
  EXPECT_EQ(mass, bodies[1]->getMass());
  EXPECT_EQ(vyrCollide::Shape::PLANE, bodies[0]->getGeometries()[0]->getShape()->getType());
  EXPECT_EQ("cube", bodies[1]->getGeometries()[0]->getName());
  EXPECT_EQ(2u, other->getScene()->getNumChildren());
  app->setAutoStepping(true);
  for (int i = 0; i < 60; ++i) {
    app->step();
    other->step();
  }
  EXPECT_NEAR(box->getPosition().z(), bodies[1]->getPosition().z(), 1e-3) << "it goes on like the saved one";
}

TEST_F(ApplicationState, FilesThatDoNotFitChangeNothing) {
  ASSERT_TRUE(init());
  run(0.1);
  const uint64_t before = app->getSimulation()->stateHash();
  CapturedMessages messages;
  EXPECT_FALSE(app->restoreFromFile(folder / "none.json"));
  std::ofstream(folder / "broken.json") << "{ \"version\": 1, ";
  EXPECT_FALSE(app->restoreFromFile(folder / "broken.json"));
  std::ofstream(folder / "odd.json")
      << "{ \"version\": 1, \"time\": 0, \"step\": 0, \"bodies\": [], \"geometries\": [] }";
  EXPECT_FALSE(app->restoreFromFile(folder / "odd.json"));
  EXPECT_FALSE(app->saveToFile(folder / "no/such/folder.json"));
  const std::vector<std::string> errors = messages.take();
  ASSERT_EQ(4u, errors.size());
  EXPECT_NE(std::string::npos, errors[0].find("none.json"));
  EXPECT_NE(std::string::npos, errors[2].find("odd.json"));
  EXPECT_EQ(before, app->getSimulation()->stateHash());
}

TEST_F(ApplicationState, TheDumpWritesEveryStep) {
  ASSERT_TRUE(init({"--save-file", folder / "dump"}));
  EXPECT_EQ(folder / "dump", app->getSaveSceneFilename());
  app->setEnableSimulationDump(true);
  EXPECT_TRUE(app->getEnableSimulationDump());
  run(0.05);
  std::ifstream third(folder / "dump.3.json");
  EXPECT_EQ(3, nlohmann::json::parse(third).at("simulation").at("steps").get<int>());
}

class JournalFormats : public ApplicationState, public ::testing::WithParamInterface<int> {};

TEST_P(JournalFormats, ARecordedSessionIsPlayedBack) {
  ASSERT_TRUE(init());
  app->setJournalFormat(static_cast<std::size_t>(GetParam()));
  EXPECT_EQ(static_cast<std::size_t>(GetParam()), app->getJournalFormat());
  ASSERT_TRUE(app->journalRecord(journal(), "drop"));
  std::vector<vyr::Vec3> places;
  app->addScene(script(), "fall", 0, true);
  app->createNextScene();
  for (int i = 0; i < 30; ++i) {
    app->step();
    places.push_back(box->getPosition());
  }
  app->reloadScene();
  app->journalPlayback();
  const double tolerance = GetParam() == ExampleApplication::JOURNAL_FULL ? 0.0 : 1e-6;
  for (const vyr::Vec3& place : places) {
    app->step();
    EXPECT_NEAR(0.0, (box->getPosition() - place).length(), tolerance);
  }
  EXPECT_NEAR(0.5, app->getTimeStamp(), 1e-9);
  app->step();
  EXPECT_FALSE(app->getAutoStepping()) << "the end of the session pauses";
}

INSTANTIATE_TEST_SUITE_P(ApplicationState, JournalFormats, ::testing::Values(0, 1));

TEST_F(ApplicationState, TheCompactJournalLeavesOutWhatRests) {
  ASSERT_TRUE(init());
  app->setJournalFormat(ExampleApplication::JOURNAL_COMPACT);
  ASSERT_TRUE(app->journalRecord(journal(), "drop"));
  run(0.2);
  sqlite3* database = nullptr;
  ASSERT_EQ(SQLITE_OK, sqlite3_open(journal().c_str(), &database));
  const auto count = [&](const char* query) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, query, -1, &statement, nullptr);
    const int number = sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int(statement, 0) : -1;
    sqlite3_finalize(statement);
    return number;
  };
  EXPECT_EQ(12, count("SELECT COUNT(*) FROM step"));
  EXPECT_EQ(1, count("SELECT COUNT(*) FROM pose WHERE body = 0")) << "the ground never moves";
  EXPECT_EQ(12, count("SELECT COUNT(*) FROM pose WHERE body = 1"));
  EXPECT_EQ(52, count("SELECT LENGTH(state) FROM pose LIMIT 1"));
  sqlite3_close(database);
}

TEST_F(ApplicationState, SessionsAreListedInOrder) {
  ASSERT_TRUE(init());
  for (const char* name : {"one", "two", "one"}) {
    ASSERT_TRUE(app->journalRecord(journal(), name));
    app->addScene(script(), "fall", 0, true);
    app->createNextScene();
    app->step();
  }
  ASSERT_TRUE(app->journalRecord(journal(), "three"));
  app->stopAfter(0.0);
  app->run();
  EXPECT_EQ(std::vector<std::string>({"two", "one", "three"}), app->listSessionNames(journal()));
  CapturedMessages messages;
  EXPECT_TRUE(app->listSessionNames(folder / "none.db").empty());
  EXPECT_NE(std::string::npos, messages.takeOne().find("none.db"));
}

TEST_F(ApplicationState, JournalMistakesAreErrors) {
  CapturedMessages messages;
  app->setJournalFormat(2);
  EXPECT_EQ(0u, app->getJournalFormat());
  app->journalPlayback();
  EXPECT_FALSE(app->journalRecord(folder / "no/such/folder.db", "x"));
  EXPECT_FALSE(init({"--journal", folder / "none.db", "--journal-session"}) && false);
  EXPECT_GE(messages.take().size(), 3u);
}

/// Files of this process end at a size for as long as the object lives, as on a disk that is full.
class FullDisk {
public:
  explicit FullDisk(rlim_t bytes)
      : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_old);
    const rlimit limit = {bytes, m_old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &m_old);
    std::signal(SIGXFSZ, m_handler);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

private:
  void (*m_handler)(int);
  rlimit m_old;
};

TEST_F(ApplicationState, AFullDiskEndsTheJournalAndKeepsItsSteps) {
  ASSERT_TRUE(init());
  ASSERT_TRUE(app->journalRecord(journal(), "drop"));
  app->addScene(script(), "fall", 0, true);
  app->createNextScene();
  std::vector<vyr::Vec3> places;
  std::string message;
  {
    const FullDisk full(64 * 1024);
    CapturedMessages messages;
    for (int i = 0; i < 2000; ++i) {
      app->step();
      places.push_back(box->getPosition());
    }
    message = messages.takeOne();
  }
  EXPECT_NE(std::string::npos, message.find(journal())) << message;
  const std::size_t at = message.find("it ends after ");
  ASSERT_NE(std::string::npos, at) << message;
  const int steps = std::stoi(message.substr(at + 14));
  EXPECT_GT(steps, 100);
  EXPECT_LT(steps, 1000);
  EXPECT_EQ(std::vector<std::string>({"drop"}), app->listSessionNames(journal()));
  app->reloadScene();
  app->journalPlayback();
  for (int i = 0; i < steps; ++i) {
    app->step();
    ASSERT_EQ(places[static_cast<std::size_t>(i)], box->getPosition()) << i;
  }
  EXPECT_TRUE(app->getAutoStepping());
  app->step();
  EXPECT_FALSE(app->getAutoStepping()) << "and nothing behind them";
}

TEST_F(ApplicationState, ATruncatedJournalPlaysWhatIsThereAndSaysWhereItEnds) {
  ASSERT_TRUE(init());
  ASSERT_TRUE(app->journalRecord(journal(), "drop"));
  run(10.0);
  std::filesystem::resize_file(journal(), std::filesystem::file_size(journal()) / 2 / 4096 * 4096);
  app->reloadScene();
  CapturedMessages messages;
  app->journalPlayback();
  for (int i = 0; i < 700; ++i)
    app->step();
  EXPECT_NE(std::string::npos, messages.takeOne().find(journal()));
  EXPECT_FALSE(app->getAutoStepping());
  // No journal at all is told as shortly.
  std::ofstream(folder / "text.db") << std::string(5000, 'x');
  EXPECT_TRUE(app->listSessionNames(folder / "text.db").empty());
  EXPECT_NE(std::string::npos, messages.takeOne().find("text.db"));
  EXPECT_FALSE(app->journalRecord(folder / "text.db", "drop"));
  EXPECT_NE(std::string::npos, messages.takeOne().find("text.db"));
}

TEST_F(ApplicationState, APlayedJournalEndsARunWithoutWindow) {
  ASSERT_TRUE(init());
  ASSERT_TRUE(app->journalRecord(journal(), "drop"));
  run(0.5);
  vyr::ref_ptr<ExampleApplication> player = new ExampleApplication;
  vyr::ref_ptr<vyrIO::ArgumentParser> arguments = new vyrIO::ArgumentParser(
      script(), std::vector<std::string>{"--journal", journal(), "--journal-session", "drop", "--journal-playback"});
  ASSERT_TRUE(player->init(arguments.get()));
  player->setSceneLoader(loader.get());
  player->addScene(script(), "fall", 0, true);
  CapturedMessages messages;
  EXPECT_EQ(0, player->run());
  EXPECT_NEAR(0.5, player->getTimeStamp(), 1e-9);
  EXPECT_TRUE(messages.take().empty());
}

/// What a body costs in a step, as docs/journal.md tells it.
TEST_P(JournalFormats, TheSizeIsAsDocumented) {
  ASSERT_TRUE(init());
  app->setJournalFormat(static_cast<std::size_t>(GetParam()));
  loader->scenes["many"] = [](vyrSDK::Simulation& simulation, ExampleApplication&, vyrOSG::Group&) {
    for (int i = 0; i < 200; ++i) {
      vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("body");
      body->add(new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(0.1, 0.1, 0.1))));
      body->setPosition(vyr::Vec3(i, 0, 0));
      body->setAngularVelocity(vyr::Vec3(1, 2, 3));
      simulation.add(body.get());
    }
  };
  ASSERT_TRUE(app->journalRecord(journal(), "fall"));
  run(1.0, "many");
  const double bytes = static_cast<double>(std::filesystem::file_size(journal())) / (200 * 60);
  RecordProperty("bytes_per_body_and_step", std::to_string(bytes));
  std::printf("%.1f bytes a body and step\n", bytes);
  const double state = GetParam() == ExampleApplication::JOURNAL_FULL ? 104 : 52;
  EXPECT_GT(bytes, state);
  EXPECT_LT(bytes, state + 32);
}

TEST_F(ApplicationState, ADebuggerReceivesOneLineAStep) {
  ASSERT_TRUE(init({"--remote-debugger", "0"}));
  const int port = app->getRemoteDebuggerPort();
  ASSERT_GT(port, 0);
  const int reader = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ASSERT_EQ(0, connect(reader, reinterpret_cast<sockaddr*>(&address), sizeof(address)));
  run(0.05);
  app->updateRemoteDebugger();
  std::string received;
  char buffer[4096];
  while (std::count(received.begin(), received.end(), '\n') < 4) {
    const ssize_t got = recv(reader, buffer, sizeof(buffer), 0);
    ASSERT_GT(got, 0);
    received.append(buffer, static_cast<std::size_t>(got));
  }
  close(reader);
  const nlohmann::json first = nlohmann::json::parse(received.substr(0, received.find('\n')));
  EXPECT_EQ(1, first.at("step").get<int>());
  EXPECT_EQ("box", first.at("bodies").at(1).at("name").get<std::string>());
  EXPECT_LT(first.at("bodies").at(1).at("position").at(2).get<double>(), 1.5);
}

TEST_F(ApplicationState, WithoutTheArgumentNothingListens) {
  ASSERT_TRUE(init());
  EXPECT_EQ(0, app->getRemoteDebuggerPort());
  app->updateRemoteDebugger();
  CapturedMessages messages;
  EXPECT_FALSE(init({"--remote-debugger", "99999"}));
  EXPECT_EQ(1u, messages.take().size());
}

} // namespace
