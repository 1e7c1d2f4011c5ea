/// Reference counts, the delete handler and the per-object observer sets.
#include <vyr/Referenced.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace vyr {

namespace {

/// The process-wide delete handler; null means plain delete.
DeleteHandler* g_deleteHandler = nullptr;

/// Guards the creation of observer sets, which happens once an object.
SpinLock g_creationLock;

} // namespace

struct Referenced::ObserverSet {
  SpinLock lock;
  std::vector<Observer*> observers;
};

Observer::~Observer() = default;
DeleteHandler::~DeleteHandler() = default;

Referenced::Referenced() = default;

Referenced::Referenced(const Referenced&) {}

Referenced::~Referenced() {
  notifyObservers();
  delete m_observers;
}

void Referenced::unref() const {
  if (atomicDecrement(m_count) != 1) {
    return;
  }
  if (getDeleteHandler() != nullptr) {
    deleteUsingDeleteHandler();
  } else {
    delete this;
  }
}

Referenced::ObserverSet* Referenced::observers() const {
  std::lock_guard<SpinLock> guard(g_creationLock);
  if (m_observers == nullptr) {
    m_observers = new ObserverSet;
  }
  return m_observers;
}

void Referenced::addObserver(Observer* observer) const {
  ObserverSet* set = observers();
  std::lock_guard<SpinLock> guard(set->lock);
  set->observers.push_back(observer);
}

void Referenced::removeObserver(Observer* observer) const {
  ObserverSet* set = observers();
  std::lock_guard<SpinLock> guard(set->lock);
  const auto found = std::find(set->observers.begin(), set->observers.end(), observer);
  if (found != set->observers.end()) {
    set->observers.erase(found);
  }
}

void Referenced::notifyObservers() const {
  if (m_observers == nullptr) {
    return;
  }
  std::vector<Observer*> leaving;
  {
    std::lock_guard<SpinLock> guard(m_observers->lock);
    leaving.swap(m_observers->observers);
  }
  for (Observer* observer : leaving) {
    observer->objectDeleted(const_cast<Referenced*>(this));
  }
}

void Referenced::setDeleteHandler(DeleteHandler* handler) {
  g_deleteHandler = handler;
}

DeleteHandler* Referenced::getDeleteHandler() {
  return g_deleteHandler;
}

void Referenced::deleteUsingDeleteHandler() const {
  getDeleteHandler()->requestDelete(this);
}

} // namespace vyr
