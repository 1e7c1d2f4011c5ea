/// The base of every shared toolkit object: an atomic reference count, a global delete handler, and observers.
#pragma once

#include <vyr/Atomic.h>
#include <vyrCore/export.h>

namespace vyr {

class Referenced;

/// Something that wants to know when an object dies; `observer_ptr` is the usual one.
class VYRCORE_EXPORT Observer {
public:
  virtual ~Observer();
  /// Called once, while the observed object is being destroyed; only its address may still be used.
  virtual void objectDeleted(Referenced* object) = 0;
};

/// Destroys objects in place of `delete`, for hosts that defer or log destruction.
class VYRCORE_EXPORT DeleteHandler {
public:
  virtual ~DeleteHandler();
  /// Destroys `object`, now or later, by `Referenced::destroy`.
  virtual void requestDelete(const Referenced* object) = 0;
};

/// An intrusively counted object. Counts start at 0: an object lives until its last holder lets go.
class VYRCORE_EXPORT Referenced {
public:
  Referenced();
  /// A copy is a new object: nobody holds or observes it yet.
  Referenced(const Referenced&);
  /// Assignment copies values, never the count or the observers.
  Referenced& operator=(const Referenced&) { return *this; }

  /// Adds one reference.
  void ref() const { atomicIncrement(m_count); }
  /// Drops one reference; the last one destroys the object, through the delete handler when one is installed.
  void unref() const;
  /// Drops one reference and never destroys, for functions that return a fresh object without a holder.
  void unrefWithoutDelete() const { atomicDecrement(m_count); }
  /// The number of references held now.
  int getReferenceCount() const { return static_cast<int>(atomicRead(m_count)); }

  /// Registers `observer`; *borrows* it until `removeObserver` or the object's death.
  void addObserver(Observer* observer) const;
  void removeObserver(Observer* observer) const;
  /// While locked, no object tells its observers of its death and none loses or gains an observer on another thread:
  /// for observers that look at their object and let go of it. May be nested.
  static void lockObservers();
  static void unlockObservers();

  /// Installs the process-wide handler; *borrows* it. Nullable: null restores plain `delete`.
  static void setDeleteHandler(DeleteHandler* handler);
  /// The installed handler. Nullable: none installed.
  static DeleteHandler* getDeleteHandler();
  /// Hands the object to the installed handler; call it only while one is installed.
  void deleteUsingDeleteHandler() const;
  /// Runs the virtual destructor; for delete handlers and collectors only.
  static void destroy(const Referenced* object) { delete object; }

protected:
  virtual ~Referenced();

private:
  struct ObserverSet;
  void notifyObservers() const;

  mutable AtomicCount m_count = 0;
  mutable ObserverSet* m_observers = nullptr; // created on first use
};

} // namespace vyr
