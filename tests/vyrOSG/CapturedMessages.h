/// Collects what the message channel says while it lives, for tests of error lines.
#pragma once

#include <vyr/Notify.h>

#include <string>
#include <vector>

class CapturedMessages {
public:
  CapturedMessages() { vyr::Notify::instance()->addSink(m_sink.get()); }
  ~CapturedMessages() { vyr::Notify::instance()->removeSink(m_sink.get()); }
  CapturedMessages(const CapturedMessages&) = delete;
  CapturedMessages& operator=(const CapturedMessages&) = delete;

  /// The messages so far of a level, prefix included.
  const std::vector<std::string>& errors() const { return m_sink->errors; }
  const std::vector<std::string>& warnings() const { return m_sink->warnings; }

  /// The messages so far of the error level, prefix "Error: " included; empties the list.
  std::vector<std::string> take() {
    std::vector<std::string> taken;
    taken.swap(m_sink->errors);
    return taken;
  }
  /// The only message so far, or a text that says how many there were; empties the list.
  std::string takeOne() {
    const std::vector<std::string> taken = take();
    return taken.size() == 1 ? taken.front() : std::to_string(taken.size()) + " messages instead of one";
  }

private:
  class Sink : public vyr::NotifySink {
  public:
    void message(vyr::NotifyLevel level, const std::string& text) override {
      if (level == vyr::NOTIFY_ERROR)
        errors.push_back(text);
      if (level == vyr::NOTIFY_WARNING)
        warnings.push_back(text);
    }
    std::vector<std::string> errors;
    std::vector<std::string> warnings;
  };
  vyr::ref_ptr<Sink> m_sink{new Sink};
};
