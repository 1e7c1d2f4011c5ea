/// Sorts what the library says into complaints and reports of progress.
#include "ReaderMessages.h"

#include <vyr/Notify.h>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace vyrOSG {

namespace {

/// Models without materials of their own are no mistake.
const char* const kNoMaterialNamed = "unable to find material ''";

} // namespace

/// Models may be read on several threads, and the library has one handler for all.
class ReaderMessages::Handler : public osg::NotifyHandler {
public:
  void notify(osg::NotifySeverity severity, const char* message) override {
    std::string text = message;
    text.erase(text.find_last_not_of(" \r\n") + 1);
    std::replace(text.begin(), text.end(), '\n', ' ');
    if (severity > osg::NOTICE || text.empty() || text.find(kNoMaterialNamed) != std::string::npos)
      return;
    const std::lock_guard<std::mutex> guard(m_mutex);
    (severity > osg::WARN ? m_told : m_complaints).push_back(text);
  }

  std::vector<std::string> takeComplaints() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return std::exchange(m_complaints, {});
  }

  std::string takeReason() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const std::vector<std::string> told = std::exchange(m_told, {});
    const std::vector<std::string> complaints = std::exchange(m_complaints, {});
    if (!complaints.empty())
      return complaints.front();
    return told.empty() ? std::string() : told.back();
  }

private:
  std::mutex m_mutex;
  std::vector<std::string> m_complaints;
  std::vector<std::string> m_told;
};

ReaderMessages::ReaderMessages(const std::string& fileName)
    : m_fileName(fileName)
    , m_handler(new Handler)
    , m_before(osg::getNotifyHandler()) {
  osg::setNotifyHandler(m_handler);
}

ReaderMessages::~ReaderMessages() {
  osg::setNotifyHandler(m_before);
  for (const std::string& text : m_handler->takeComplaints())
    VYR_NOTIFY(vyr::NOTIFY_WARNING) << m_fileName << ": " << text;
}

std::string ReaderMessages::takeReason() {
  return m_handler->takeReason();
}

} // namespace vyrOSG
