/// Catches what the scene-graph library's readers would print.
#pragma once

#include <osg/Notify>
#include <osg/ref_ptr>

#include <string>

namespace vyrOSG {

/// While it lives, messages of the scene-graph library are kept. Complaints that nobody takes go to the message channel
/// as warnings about the file when it ends.
class ReaderMessages {
public:
  explicit ReaderMessages(const std::string& fileName);
  ~ReaderMessages();
  ReaderMessages(const ReaderMessages&) = delete;
  ReaderMessages& operator=(const ReaderMessages&) = delete;

  /// Why reading failed: the first complaint, else the last thing that was told; in one line. Empties the list.
  std::string takeReason();

private:
  class Handler;

  std::string m_fileName;
  osg::ref_ptr<Handler> m_handler;
  osg::ref_ptr<osg::NotifyHandler> m_before;
};

} // namespace vyrOSG
