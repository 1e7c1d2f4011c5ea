/// The toolkit's message channel: levels, sinks, and one message at a time a thread.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/Singleton.h>
#include <vyr/ref_ptr.h>
#include <vyrCore/export.h>

#include <mutex>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace vyr {

/// How serious a message is.
enum NotifyLevel { NOTIFY_DEBUG = 0, NOTIFY_INFO = 1, NOTIFY_WARNING = 2, NOTIFY_ERROR = 3 };

/// Receives finished messages.
class VYRCORE_EXPORT NotifySink : public Referenced {
public:
  /// `text` is one message without its line end, prefix included. Called under the channel's lock.
  virtual void message(NotifyLevel level, const std::string& text) = 0;

protected:
  ~NotifySink() override;
};

/// The message channel. Messages below the channel's level are dropped; the others go to every sink,
/// or to the standard error stream while there is no sink.
///
/// A message is a prefix, then text streamed into the thread's string stream, then `end()` streamed behind it:
///
///     std::ostream& out = Notify::instance()->getThreadStringStream();
///     out << Notify::instance()->setDebugStrings(NOTIFY_ERROR, "", -1, "") << "text" << Notify::instance()->end();
///
/// `VYR_NOTIFY(level) << "text";` does just that.
class VYRCORE_EXPORT Notify : public Singleton {
public:
  /// Streamed behind a message to close it.
  struct End {
    Notify* channel;
  };

  static Notify* instance();

  /// Begins a message of this thread. Returns its prefix: "Error: " and the like, followed by
  /// "file(line) function: " when `file` is not empty. `line` -1: unknown.
  std::string setDebugStrings(NotifyLevel level, const char* file, int line, const char* function);
  /// The stream in which this thread's message is put together.
  std::ostringstream& getThreadStringStream();
  End end() { return {this}; }
  /// Hands this thread's message to the sinks and empties its stream; a line end at the close is cut off.
  void flushThreadMessage();

  /// The lowest level that is passed on; the default is NOTIFY_WARNING.
  void setNotifyLevel(NotifyLevel level);
  NotifyLevel getNotifyLevel() const { return m_level; }

  /// Adds a receiver; *retains* it.
  void addSink(NotifySink* sink);
  void removeSink(NotifySink* sink);

private:
  Notify() = default;

  std::mutex m_mutex;
  NotifyLevel m_level = NOTIFY_WARNING;
  std::vector<ref_ptr<NotifySink>> m_sinks;
};

/// Closes the message that was streamed before it.
VYRCORE_EXPORT std::ostream& operator<<(std::ostream& out, const Notify::End& end);

/// One message that closes itself at the end of the statement.
class VYRCORE_EXPORT NotifyMessage {
public:
  explicit NotifyMessage(NotifyLevel level, const char* file = "", int line = -1, const char* function = "");
  ~NotifyMessage();
  NotifyMessage(const NotifyMessage&) = delete;
  NotifyMessage& operator=(const NotifyMessage&) = delete;

  template <class Value>
  NotifyMessage& operator<<(const Value& value) {
    m_text << value;
    return *this;
  }

private:
  NotifyLevel m_level;
  std::string m_file;
  int m_line;
  std::string m_function;
  std::ostringstream m_text;
};

} // namespace vyr

/// `VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot read '" << file << "'";`
#define VYR_NOTIFY(level) ::vyr::NotifyMessage(level)
