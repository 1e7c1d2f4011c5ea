/// What the message channel says while this lives.
#pragma once

#include <vyr/Notify.h>
#include <vyr/ref_ptr.h>

#include <string>
#include <vector>

namespace bindingtest {

class MessageLines {
public:
  MessageLines() { vyr::Notify::instance()->addSink(m_sink.get()); }
  ~MessageLines() { vyr::Notify::instance()->removeSink(m_sink.get()); }
  MessageLines(const MessageLines&) = delete;
  MessageLines& operator=(const MessageLines&) = delete;

  const std::vector<std::string>& lines() const { return m_sink->lines; }
  void clear() { m_sink->lines.clear(); }

private:
  class Sink : public vyr::NotifySink {
  public:
    void message(vyr::NotifyLevel, const std::string& text) override { lines.push_back(text); }
    std::vector<std::string> lines;
  };
  vyr::ref_ptr<Sink> m_sink{new Sink};
};

} // namespace bindingtest
