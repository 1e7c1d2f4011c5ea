/// Weak pointers by `vyr::observer_ptr`.
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>

#include "CountedObject.h"

#include <gtest/gtest.h>

namespace {

TEST(ObserverPtr, BecomesNullWhenTheObjectDies) {
  vyr::observer_ptr<CountedObject> observer;
  {
    vyr::ref_ptr<CountedObject> object(new CountedObject);
    observer = object.get();
    EXPECT_EQ(object->getReferenceCount(), 1);
    EXPECT_EQ(observer.get(), object.get());
  }
  EXPECT_EQ(observer.get(), nullptr);
  EXPECT_FALSE(observer.valid());
}

TEST(ObserverPtr, CopiesObserveOnTheirOwn) {
  vyr::ref_ptr<CountedObject> object(new CountedObject);
  vyr::observer_ptr<CountedObject> first(object.get());
  {
    vyr::observer_ptr<CountedObject> second(first);
    EXPECT_EQ(second, first);
  }
  EXPECT_TRUE(first.valid());
  vyr::observer_ptr<CountedObject> third(first);
  object = nullptr;
  EXPECT_FALSE(first.valid());
  EXPECT_FALSE(third.valid());
}

TEST(ObserverPtr, ReassignmentLetsTheOldObjectGo) {
  vyr::ref_ptr<CountedObject> a(new CountedObject);
  vyr::ref_ptr<CountedObject> b(new CountedObject);
  vyr::observer_ptr<CountedObject> observer(a.get());
  observer = b.get();
  a = nullptr;
  EXPECT_EQ(observer.get(), b.get());
  observer = b.get();
  b = nullptr;
  EXPECT_FALSE(observer.valid());
}

TEST(ObserverPtr, MayDieBeforeItsObject) {
  vyr::ref_ptr<CountedObject> object(new CountedObject);
  {
    vyr::observer_ptr<CountedObject> observer(object.get());
    EXPECT_TRUE(observer.valid());
  }
  object = nullptr;
  EXPECT_EQ(CountedObject::alive, 0);
}

} // namespace
