/// Reference counts and observers under several threads: what ThreadSanitizer has to find nothing in.
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>

#include "CountedObject.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

constexpr int kRounds = 2000;

/// Lets both functions run at once, from the same moment on.
template <class First, class Second>
void atOnce(First first, Second second) {
  std::atomic<int> ready{0};
  const auto start = [&ready] {
    ++ready;
    while (ready < 2)
      std::this_thread::yield();
  };
  std::thread other([&] {
    start();
    first();
  });
  start();
  second();
  other.join();
}

TEST(ObserverThreads, ObjectDiesWhileItsObserverLetsGo) {
  for (int round = 0; round < kRounds; ++round) {
    vyr::ref_ptr<CountedObject> object(new CountedObject);
    auto* observer = new vyr::observer_ptr<CountedObject>(object.get());
    atOnce([&] { object = nullptr; }, [&] { delete observer; });
  }
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(ObserverThreads, ObjectDiesWhileItsObserverIsCopiedAndMoved) {
  vyr::ref_ptr<CountedObject> stays(new CountedObject);
  for (int round = 0; round < kRounds; ++round) {
    vyr::ref_ptr<CountedObject> object(new CountedObject);
    vyr::observer_ptr<CountedObject> observer(object.get());
    atOnce([&] { object = nullptr; },
           [&] {
             vyr::observer_ptr<CountedObject> copy(observer);
             observer = stays.get();
             copy = observer;
             EXPECT_EQ(copy.get(), stays.get());
           });
    EXPECT_EQ(observer.get(), stays.get());
  }
}

TEST(ObserverThreads, LastReferenceIsDroppedOnce) {
  for (int round = 0; round < kRounds; ++round) {
    vyr::ref_ptr<CountedObject> first(new CountedObject);
    vyr::ref_ptr<CountedObject> second(first);
    vyr::observer_ptr<CountedObject> observer(first.get());
    atOnce([&] { first = nullptr; }, [&] { second = nullptr; });
    EXPECT_FALSE(observer.valid());
  }
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(ObserverThreads, ManyThreadsObserveOneObject) {
  vyr::ref_ptr<CountedObject> object(new CountedObject);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&object] {
      for (int round = 0; round < kRounds; ++round) {
        vyr::ref_ptr<CountedObject> held(object);
        vyr::observer_ptr<CountedObject> observer(held.get());
        EXPECT_TRUE(observer.valid());
      }
    });
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(object->getReferenceCount(), 1);
}

/// Takes another observer along when it hears of a death.
class Chain : public vyr::Observer {
public:
  explicit Chain(vyr::observer_ptr<CountedObject>* other)
      : m_other(other) {}
  void objectDeleted(vyr::Referenced*) override {
    delete m_other;
    m_other = nullptr;
  }

private:
  vyr::observer_ptr<CountedObject>* m_other;
};

TEST(ObserverThreads, AnObserverMayTakeAnotherOneAlong) {
  auto* first = new vyr::observer_ptr<CountedObject>;
  Chain chain(first);
  {
    vyr::ref_ptr<CountedObject> object(new CountedObject);
    *first = object.get();
    object->addObserver(&chain);
  }
  EXPECT_EQ(CountedObject::alive, 0);
}

} // namespace
