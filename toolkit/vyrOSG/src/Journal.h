// The journal: what bodies did, step by step, in an SQLite file.
#pragma once

#include <vyr/RigidBody.h>
#include <vyr/observer_ptr.h>
#include <vyrSDK/Simulation.h>

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace vyrOSG {

/// Deletes the handles of the database library.
struct JournalDelete {
  void operator()(sqlite3* database) const;
  void operator()(sqlite3_stmt* statement) const;
};
using JournalDatabase = std::unique_ptr<sqlite3, JournalDelete>;
using JournalStatement = std::unique_ptr<sqlite3_stmt, JournalDelete>;

/// Writes a session. A file holds any number of sessions; docs/journal.md describes its tables and both formats.
class Journal {
public:
  enum Format { FULL = 0, COMPACT = 1 };

  Journal();
  ~Journal();

  /// Opens @p file, making it if it is not there, and begins the session, replacing one of the same name.
  /// False and one error line on failure.
  bool open(const std::string& file, const std::string& session, Format format, double timeStep);
  bool isOpen() const { return m_database != nullptr; }

  /// Steps written since `open`, 0 while closed.
  long long getNumSteps() const { return m_database ? m_step : 0; }

  /// Writes the state after a step. False and one error line on failure, as of a full disk; the journal is closed then,
  /// and holds every step that fitted.
  bool record(const vyrSDK::Simulation& simulation);

  /// Ends the session and writes it out.
  void close();

  /// Names of the sessions in @p file, oldest first. Empty and one error line when it is no journal.
  static std::vector<std::string> listSessions(const std::string& file);

private:
  struct BodyTrack;
  bool execute(const char* text);
  /// @param why "" for the database's own reason.
  bool fail(const std::string& what, const std::string& why = "");
  bool recordStep(const vyrSDK::Simulation& simulation);
  bool recordBody(std::size_t index, const vyr::RigidBody& body, long long step);

  std::string m_file;
  JournalDatabase m_database;
  JournalStatement m_insertStep;
  JournalStatement m_insertBody;
  JournalStatement m_insertPose;
  Format m_format;
  long long m_session;
  long long m_step;
  long long m_committed; ///< Of the steps, those that are safe on the disk.
  std::map<std::size_t, BodyTrack> m_tracks;
};

/// Plays a session back into a simulation: bodies go where they were, the clock with them.
class JournalPlayer {
public:
  JournalPlayer();
  ~JournalPlayer();

  /// Finds the session. False and one error line when file or session are not there.
  bool open(const std::string& file, const std::string& session);
  bool isOpen() const { return m_database != nullptr; }
  void close();

  /// Puts the next recorded step into the simulation; bodies are matched by their order, and by name where that is
  /// told. False at the end of the session, or with one error line on failure.
  bool next(vyrSDK::Simulation& simulation);

private:
  bool readBodies();
  bool reportDamage();

  std::string m_file;
  JournalDatabase m_database;
  JournalStatement m_readStep;
  JournalStatement m_readPoses;
  long long m_session;
  long long m_nextStep;
  int m_format;
  std::map<long long, std::string> m_names;
};

} // namespace vyrOSG
