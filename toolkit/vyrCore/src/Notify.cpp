/// The toolkit's message channel.
#include <vyr/Notify.h>

#include <algorithm>
#include <iostream>

namespace vyr {

namespace {

/// The message that a thread is putting together.
struct ThreadMessage {
  NotifyLevel level = NOTIFY_DEBUG;
  std::ostringstream stream;
};

ThreadMessage& threadMessage() {
  thread_local ThreadMessage message;
  return message;
}

const char* levelPrefix(NotifyLevel level) {
  switch (level) {
  case NOTIFY_DEBUG:
    return "Debug: ";
  case NOTIFY_INFO:
    return "Info: ";
  case NOTIFY_WARNING:
    return "Warning: ";
  case NOTIFY_ERROR:
    return "Error: ";
  }
  return "";
}

} // namespace

NotifySink::~NotifySink() = default;

Notify* Notify::instance() {
  // Never destroyed: objects that die at exit may still have something to say.
  static Notify* const channel = new Notify;
  return channel;
}

std::string Notify::setDebugStrings(NotifyLevel level, const char* file, int line, const char* function) {
  threadMessage().level = level;
  std::ostringstream prefix;
  prefix << levelPrefix(level);
  if (file != nullptr && *file != '\0') {
    prefix << file;
    if (line >= 0) {
      prefix << '(' << line << ')';
    }
    prefix << ' ' << (function != nullptr ? function : "") << ": ";
  }
  return prefix.str();
}

std::ostringstream& Notify::getThreadStringStream() {
  return threadMessage().stream;
}

void Notify::flushThreadMessage() {
  ThreadMessage& message = threadMessage();
  std::string text = message.stream.str();
  message.stream.str(std::string());
  message.stream.clear();
  while (!text.empty() && text.back() == '\n') {
    text.pop_back();
  }
  if (message.level < m_level) {
    return;
  }
  std::lock_guard<std::mutex> guard(m_mutex);
  if (m_sinks.empty()) {
    std::cerr << text << std::endl;
  }
  for (const ref_ptr<NotifySink>& sink : m_sinks) {
    sink->message(message.level, text);
  }
}

void Notify::setNotifyLevel(NotifyLevel level) {
  m_level = level;
}

void Notify::addSink(NotifySink* sink) {
  if (sink != nullptr) {
    std::lock_guard<std::mutex> guard(m_mutex);
    m_sinks.emplace_back(sink);
  }
}

void Notify::removeSink(NotifySink* sink) {
  std::lock_guard<std::mutex> guard(m_mutex);
  m_sinks.erase(std::remove_if(m_sinks.begin(), m_sinks.end(),
                               [sink](const ref_ptr<NotifySink>& held) { return held.get() == sink; }),
                m_sinks.end());
}

std::ostream& operator<<(std::ostream& out, const Notify::End& end) {
  end.channel->flushThreadMessage();
  return out;
}

NotifyMessage::NotifyMessage(NotifyLevel level, const char* file, int line, const char* function)
    : m_level(level)
    , m_file(file)
    , m_line(line)
    , m_function(function) {}

NotifyMessage::~NotifyMessage() {
  // The text is collected apart, so that a message streamed inside another one's expression keeps to itself.
  Notify* channel = Notify::instance();
  const std::string prefix = channel->setDebugStrings(m_level, m_file.c_str(), m_line, m_function.c_str());
  channel->getThreadStringStream() << prefix << m_text.str() << channel->end();
}

} // namespace vyr
