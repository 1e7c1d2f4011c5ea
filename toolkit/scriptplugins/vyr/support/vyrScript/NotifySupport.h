/// The message channel as functions of a script.
#pragma once

#include <vyr/Notify.h>

namespace vyrScript {

inline void setNotifyLevel(vyr::NotifyLevel level) {
  vyr::Notify::instance()->setNotifyLevel(level);
}
inline vyr::NotifyLevel getNotifyLevel() {
  return vyr::Notify::instance()->getNotifyLevel();
}
inline void notifyDebug(const char* text) {
  VYR_NOTIFY(vyr::NOTIFY_DEBUG) << text;
}
inline void notifyInfo(const char* text) {
  VYR_NOTIFY(vyr::NOTIFY_INFO) << text;
}
inline void notifyWarning(const char* text) {
  VYR_NOTIFY(vyr::NOTIFY_WARNING) << text;
}
inline void notifyError(const char* text) {
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << text;
}

} // namespace vyrScript
