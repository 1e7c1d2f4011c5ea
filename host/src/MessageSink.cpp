// Shows the toolkit's messages on the terminal.
#include "MessageSink.h"

#include <cstdio>

namespace vyrHost {

void MessageSink::install(bool verbose) {
  vyr::Notify::instance()->addSink(new MessageSink(verbose));
  vyr::Notify::instance()->setNotifyLevel(verbose ? vyr::NOTIFY_DEBUG : vyr::NOTIFY_INFO);
}

void MessageSink::message(vyr::NotifyLevel level, const std::string& text) {
  // The back end's line is information, yet the one that everybody wants to see.
  const bool isBackend = text.compare(0, 16, "Info: graphics: ") == 0;
  if (isBackend && !m_verbose)
    std::fprintf(stderr, "vyr: %s\n", text.c_str() + 6);
  else if (m_verbose || level >= vyr::NOTIFY_WARNING)
    std::fprintf(stderr, "vyr: %s\n", text.c_str());
}

} // namespace vyrHost
