// Shows the toolkit's messages on the terminal.
#pragma once

#include <vyr/Notify.h>

namespace vyrHost {

/// Writes messages to the standard error stream: warnings and errors, the one line that names the graphics back end,
/// and everything when verbose.
class MessageSink : public vyr::NotifySink {
public:
  /// Puts a sink into the toolkit's message channel.
  static void install(bool verbose);

  void message(vyr::NotifyLevel level, const std::string& text) override;

protected:
  ~MessageSink() override = default;

private:
  explicit MessageSink(bool verbose)
      : m_verbose(verbose) {}

  bool m_verbose;
};

} // namespace vyrHost
