// Writes and reads journals through SQLite.
#include "Journal.h"

#include <vyr/Notify.h>

#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace vyrOSG {

namespace {

const char* const kSchema =
    "PRAGMA synchronous = OFF;"
    "CREATE TABLE IF NOT EXISTS session (id INTEGER PRIMARY KEY, name TEXT UNIQUE NOT NULL, format INTEGER NOT NULL,"
    "  time_step REAL NOT NULL, created TEXT NOT NULL DEFAULT CURRENT_TIMESTAMP);"
    "CREATE TABLE IF NOT EXISTS body (session INTEGER NOT NULL, id INTEGER NOT NULL, name TEXT NOT NULL,"
    "  PRIMARY KEY (session, id));"
    "CREATE TABLE IF NOT EXISTS step (session INTEGER NOT NULL, id INTEGER NOT NULL, time REAL NOT NULL,"
    "  number INTEGER NOT NULL, PRIMARY KEY (session, id));"
    "CREATE TABLE IF NOT EXISTS pose (session INTEGER NOT NULL, step INTEGER NOT NULL, body INTEGER NOT NULL,"
    "  state BLOB NOT NULL, PRIMARY KEY (session, step, body)) WITHOUT ROWID;";

/// Steps between two commits. A commit costs about as much as writing some hundred bodies; what was committed survives
/// a full disk and the end of the process.
constexpr long long kStepsPerCommit = 60;

/// How long a commit waits for somebody who is just reading the file (ms).
constexpr int kPatience = 2000;

/// Position, rotation, velocity, angular velocity.
constexpr std::size_t kNumbers = 13;

JournalStatement prepare(sqlite3* database, const char* text) {
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, text, -1, &statement, nullptr);
  return JournalStatement(statement);
}

JournalDatabase openFile(const std::string& file, int flags) {
  sqlite3* database = nullptr;
  const int result = sqlite3_open_v2(file.c_str(), &database, flags, nullptr);
  JournalDatabase opened(database);
  return result == SQLITE_OK ? std::move(opened) : nullptr;
}

/// Opens a file to read it. Writing is asked for as well: what a killed process left unfinished has to be taken back.
JournalDatabase openToRead(const std::string& file) {
  JournalDatabase database = openFile(file, SQLITE_OPEN_READWRITE);
  if (!database)
    database = openFile(file, SQLITE_OPEN_READONLY);
  // Lets a file be read that was cut off, as far as it goes; else its first page alone would refuse it.
  if (database)
    sqlite3_exec(database.get(), "PRAGMA writable_schema = ON", nullptr, nullptr, nullptr);
  return database;
}

void readState(const vyr::RigidBody& body, double* numbers) {
  const vyr::Vec3 position = body.getPosition();
  const vyr::Quat rotation = body.getRotation();
  const vyr::Vec3 velocity = body.getVelocity();
  const vyr::Vec3 turning = body.getAngularVelocity();
  for (std::size_t i = 0; i < 3; ++i) {
    numbers[i] = position[i];
    numbers[7 + i] = velocity[i];
    numbers[10 + i] = turning[i];
  }
  for (std::size_t i = 0; i < 4; ++i)
    numbers[3 + i] = rotation[i];
}

void writeState(vyr::RigidBody& body, const double* numbers) {
  body.setPosition(vyr::Vec3(numbers[0], numbers[1], numbers[2]));
  body.setRotation(vyr::Quat(numbers[3], numbers[4], numbers[5], numbers[6]));
  body.setVelocity(vyr::Vec3(numbers[7], numbers[8], numbers[9]));
  body.setAngularVelocity(vyr::Vec3(numbers[10], numbers[11], numbers[12]));
}

/// A column as text; "" for null, which damaged files hold in any column.
std::string textAt(sqlite3_stmt* statement, int column) {
  const unsigned char* text = sqlite3_column_text(statement, column);
  return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

} // namespace

void JournalDelete::operator()(sqlite3* database) const {
  sqlite3_close_v2(database);
}

void JournalDelete::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

/// What was written of a body last, so that a compact journal can leave out what has not changed.
struct Journal::BodyTrack {
  float last[kNumbers];
};

Journal::Journal()
    : m_format(FULL)
    , m_session(0)
    , m_step(0)
    , m_committed(0) {}

Journal::~Journal() {
  close();
}

bool Journal::fail(const std::string& what, const std::string& why) {
  const std::string reason = !why.empty() ? why : m_database ? sqlite3_errmsg(m_database.get()) : "it cannot be opened";
  // What was written since the last commit is kept where there is room for it. The database may have given it up
  // already.
  const bool kept = m_database && sqlite3_get_autocommit(m_database.get()) == 0 && execute("COMMIT");
  const long long steps = kept ? m_step : m_committed;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "journal \"" << m_file << "\": cannot " << what << ": " << reason
                                << (m_step > 0 ? "; it ends after " + std::to_string(steps) + " steps" : "");
  if (m_database && !kept)
    execute("ROLLBACK");
  close();
  return false;
}

bool Journal::open(const std::string& file, const std::string& session, Format format, double timeStep) {
  close();
  m_file = file;
  m_format = format;
  m_step = m_committed = 0;
  m_tracks.clear();
  m_database = openFile(file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  if (!m_database || sqlite3_exec(m_database.get(), kSchema, nullptr, nullptr, nullptr) != SQLITE_OK)
    return fail("open it");
  sqlite3* database = m_database.get();
  for (const char* table : {"pose", "step", "body"}) {
    const std::string text =
        std::string("DELETE FROM ") + table + " WHERE session = (SELECT id FROM session WHERE name = ?1)";
    JournalStatement remove = prepare(database, text.c_str());
    sqlite3_bind_text(remove.get(), 1, session.c_str(), -1, SQLITE_TRANSIENT);
    if (sqlite3_step(remove.get()) != SQLITE_DONE)
      return fail("replace the session \"" + session + "\"");
  }
  JournalStatement forget = prepare(database, "DELETE FROM session WHERE name = ?1");
  sqlite3_bind_text(forget.get(), 1, session.c_str(), -1, SQLITE_TRANSIENT);
  sqlite3_step(forget.get());
  JournalStatement begin = prepare(database, "INSERT INTO session (name, format, time_step) VALUES (?1, ?2, ?3)");
  sqlite3_bind_text(begin.get(), 1, session.c_str(), -1, SQLITE_TRANSIENT);
  sqlite3_bind_int(begin.get(), 2, format);
  sqlite3_bind_double(begin.get(), 3, timeStep);
  if (sqlite3_step(begin.get()) != SQLITE_DONE)
    return fail("begin the session \"" + session + "\"");
  m_session = sqlite3_last_insert_rowid(database);
  m_insertStep = prepare(database, "INSERT INTO step (session, id, time, number) VALUES (?1, ?2, ?3, ?4)");
  m_insertBody = prepare(database, "INSERT INTO body (session, id, name) VALUES (?1, ?2, ?3)");
  m_insertPose = prepare(database, "INSERT INTO pose (session, step, body, state) VALUES (?1, ?2, ?3, ?4)");
  if (!m_insertStep || !m_insertBody || !m_insertPose)
    return fail("write to it");
  sqlite3_busy_timeout(database, kPatience);
  return execute("BEGIN") || fail("write to it");
}

bool Journal::execute(const char* text) {
  return sqlite3_exec(m_database.get(), text, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool Journal::record(const vyrSDK::Simulation& simulation) {
  if (!m_database)
    return false;
  // A step is there as a whole or not at all: when the disk is full, what came before it is still written out.
  if (!execute("SAVEPOINT step"))
    return fail("write a step");
  if (!recordStep(simulation)) {
    const std::string reason = sqlite3_errmsg(m_database.get());
    execute("ROLLBACK TO step");
    return fail("write step " + std::to_string(m_step), reason);
  }
  if (!execute("RELEASE step"))
    return fail("write a step");
  ++m_step;
  if (m_step % kStepsPerCommit != 0)
    return true;
  if (!execute("COMMIT"))
    return fail("write it out");
  m_committed = m_step;
  return execute("BEGIN") || fail("write to it");
}

bool Journal::recordStep(const vyrSDK::Simulation& simulation) {
  sqlite3_reset(m_insertStep.get());
  sqlite3_bind_int64(m_insertStep.get(), 1, m_session);
  sqlite3_bind_int64(m_insertStep.get(), 2, m_step);
  sqlite3_bind_double(m_insertStep.get(), 3, simulation.getTime());
  sqlite3_bind_int64(m_insertStep.get(), 4, static_cast<sqlite3_int64>(simulation.getTimeStamp().steps()));
  if (sqlite3_step(m_insertStep.get()) != SQLITE_DONE)
    return false;
  const std::vector<vyr::ref_ptr<vyr::RigidBody>>& bodies = simulation.getRigidBodies();
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    if (!recordBody(i, *bodies[i], m_step))
      return false;
  }
  return true;
}

bool Journal::recordBody(std::size_t index, const vyr::RigidBody& body, long long step) {
  double numbers[kNumbers];
  readState(body, numbers);
  BodyTrack now;
  for (std::size_t i = 0; i < kNumbers; ++i)
    now.last[i] = static_cast<float>(numbers[i]);
  const auto known = m_tracks.find(index);
  if (known == m_tracks.end()) {
    sqlite3_reset(m_insertBody.get());
    sqlite3_bind_int64(m_insertBody.get(), 1, m_session);
    sqlite3_bind_int64(m_insertBody.get(), 2, static_cast<sqlite3_int64>(index));
    sqlite3_bind_text(m_insertBody.get(), 3, body.getName().c_str(), -1, SQLITE_TRANSIENT);
    if (sqlite3_step(m_insertBody.get()) != SQLITE_DONE)
      return false;
  } else if (m_format == COMPACT && std::memcmp(known->second.last, now.last, sizeof(now.last)) == 0) {
    return true;
  }
  m_tracks[index] = now;
  sqlite3_reset(m_insertPose.get());
  sqlite3_bind_int64(m_insertPose.get(), 1, m_session);
  sqlite3_bind_int64(m_insertPose.get(), 2, step);
  sqlite3_bind_int64(m_insertPose.get(), 3, static_cast<sqlite3_int64>(index));
  if (m_format == COMPACT)
    sqlite3_bind_blob(m_insertPose.get(), 4, now.last, sizeof(now.last), SQLITE_TRANSIENT);
  else
    sqlite3_bind_blob(m_insertPose.get(), 4, numbers, sizeof(numbers), SQLITE_TRANSIENT);
  return sqlite3_step(m_insertPose.get()) == SQLITE_DONE;
}

void Journal::close() {
  m_insertStep.reset();
  m_insertBody.reset();
  m_insertPose.reset();
  if (m_database && sqlite3_get_autocommit(m_database.get()) == 0 && !execute("COMMIT"))
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "journal \"" << m_file << "\": cannot write out its last " << m_step - m_committed
                                  << " steps: " << sqlite3_errmsg(m_database.get());
  m_database.reset();
}

std::vector<std::string> Journal::listSessions(const std::string& file) {
  std::vector<std::string> names;
  const JournalDatabase database = openToRead(file);
  const JournalStatement list =
      database ? prepare(database.get(), "SELECT name FROM session ORDER BY id") : JournalStatement();
  if (!list) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "\"" << file << "\" is no journal, or cannot be read";
    return names;
  }
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(list.get())) == SQLITE_ROW)
    names.push_back(textAt(list.get(), 0));
  if (result != SQLITE_DONE)
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "journal \"" << file << "\" is damaged: " << sqlite3_errmsg(database.get());
  return names;
}

// Playback

JournalPlayer::JournalPlayer()
    : m_session(0)
    , m_nextStep(0)
    , m_format(0) {}

JournalPlayer::~JournalPlayer() = default;

void JournalPlayer::close() {
  m_readStep.reset();
  m_readPoses.reset();
  m_database.reset();
  m_names.clear();
}

bool JournalPlayer::open(const std::string& file, const std::string& session) {
  close();
  m_file = file;
  m_nextStep = 0;
  m_database = openToRead(file);
  const JournalStatement find =
      m_database ? prepare(m_database.get(), "SELECT id, format FROM session WHERE name = ?1") : JournalStatement();
  if (find)
    sqlite3_bind_text(find.get(), 1, session.c_str(), -1, SQLITE_TRANSIENT);
  const int found = find ? sqlite3_step(find.get()) : SQLITE_ERROR;
  if (found != SQLITE_ROW) {
    const std::string reason = !m_database            ? "it cannot be opened"
                               : found == SQLITE_DONE ? "it has no session \"" + session + "\""
                                                      : sqlite3_errmsg(m_database.get());
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "journal \"" << file << "\" cannot be played back: " << reason;
    close();
    return false;
  }
  m_session = sqlite3_column_int64(find.get(), 0);
  m_format = sqlite3_column_int(find.get(), 1);
  m_readStep = prepare(m_database.get(), "SELECT time, number FROM step WHERE session = ?1 AND id = ?2");
  m_readPoses =
      prepare(m_database.get(), "SELECT body, state FROM pose WHERE session = ?1 AND step = ?2 ORDER BY body");
  if (!m_readStep || !m_readPoses || !readBodies()) {
    reportDamage();
    close();
    return false;
  }
  sqlite3_bind_int64(m_readStep.get(), 1, m_session);
  sqlite3_bind_int64(m_readPoses.get(), 1, m_session);
  return true;
}

bool JournalPlayer::reportDamage() {
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "journal \"" << m_file << "\" is damaged"
                                << (m_nextStep > 0 ? " behind step " + std::to_string(m_nextStep) : "") << ": "
                                << sqlite3_errmsg(m_database.get());
  return false;
}

bool JournalPlayer::readBodies() {
  const JournalStatement read = prepare(m_database.get(), "SELECT id, name FROM body WHERE session = ?1");
  if (!read)
    return false;
  sqlite3_bind_int64(read.get(), 1, m_session);
  int result = SQLITE_ROW;
  while ((result = sqlite3_step(read.get())) == SQLITE_ROW)
    m_names[sqlite3_column_int64(read.get(), 0)] = textAt(read.get(), 1);
  return result == SQLITE_DONE;
}

bool JournalPlayer::next(vyrSDK::Simulation& simulation) {
  if (!m_database)
    return false;
  sqlite3_bind_int64(m_readStep.get(), 2, m_nextStep);
  const int found = sqlite3_step(m_readStep.get());
  const double time = sqlite3_column_double(m_readStep.get(), 0);
  const uint64_t number = static_cast<uint64_t>(sqlite3_column_int64(m_readStep.get(), 1));
  // A statement left open between steps would keep the file locked against other recordings.
  if (found != SQLITE_ROW && found != SQLITE_DONE)
    return reportDamage();
  sqlite3_reset(m_readStep.get());
  if (found == SQLITE_DONE)
    return false;
  sqlite3_reset(m_readPoses.get());
  sqlite3_bind_int64(m_readPoses.get(), 2, m_nextStep++);
  const std::vector<vyr::ref_ptr<vyr::RigidBody>>& bodies = simulation.getRigidBodies();
  int read = SQLITE_ROW;
  while ((read = sqlite3_step(m_readPoses.get())) == SQLITE_ROW) {
    const long long index = sqlite3_column_int64(m_readPoses.get(), 0);
    const void* state = sqlite3_column_blob(m_readPoses.get(), 1);
    const std::size_t size = static_cast<std::size_t>(sqlite3_column_bytes(m_readPoses.get(), 1));
    const std::size_t expected = kNumbers * (m_format == Journal::COMPACT ? sizeof(float) : sizeof(double));
    if (index < 0 || static_cast<std::size_t>(index) >= bodies.size() || size != expected) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "journal \"" << m_file << "\": body " << index << " (\"" << m_names[index]
                                    << "\") is not in this simulation";
      return false;
    }
    double numbers[kNumbers];
    if (m_format == Journal::COMPACT) {
      float narrow[kNumbers];
      std::memcpy(narrow, state, size);
      for (std::size_t i = 0; i < kNumbers; ++i)
        numbers[i] = static_cast<double>(narrow[i]);
    } else {
      std::memcpy(numbers, state, size);
    }
    writeState(*bodies[static_cast<std::size_t>(index)], numbers);
  }
  if (read != SQLITE_DONE)
    return reportDamage();
  simulation.setTime(time, number);
  return true;
}

} // namespace vyrOSG
