/// Reference counts, the delete handler and the per-object observer sets.
#include <vyr/Referenced.h>

#include <algorithm>
#include <mutex>
#include <vector>

namespace vyr {

namespace {

/// The process-wide delete handler; null means plain delete.
DeleteHandler* g_deleteHandler = nullptr;

/// Guards every observer set and every observer's view of its object: an object may die on one thread while its
/// observer lets go on another, and neither may then touch the other. Recursive, because an observer that hears of a
/// death may let go of other objects. Never destroyed: objects of static life may die after everything else.
std::recursive_mutex& observerLock() {
  static auto* const lock = new std::recursive_mutex;
  return *lock;
}

using Guard = std::lock_guard<std::recursive_mutex>;

} // namespace

struct Referenced::ObserverSet {
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

void Referenced::addObserver(Observer* observer) const {
  const Guard guard(observerLock());
  if (m_observers == nullptr) {
    m_observers = new ObserverSet;
  }
  m_observers->observers.push_back(observer);
}

void Referenced::removeObserver(Observer* observer) const {
  const Guard guard(observerLock());
  if (m_observers == nullptr) {
    return;
  }
  std::vector<Observer*>& observers = m_observers->observers;
  const auto found = std::find(observers.begin(), observers.end(), observer);
  if (found != observers.end()) {
    observers.erase(found);
  }
}

void Referenced::lockObservers() {
  observerLock().lock();
}

void Referenced::unlockObservers() {
  observerLock().unlock();
}

void Referenced::notifyObservers() const {
  const Guard guard(observerLock());
  if (m_observers == nullptr) {
    return;
  }
  // One by one: an observer that hears of the death may take others along.
  std::vector<Observer*>& observers = m_observers->observers;
  while (!observers.empty()) {
    Observer* const observer = observers.back();
    observers.pop_back();
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
