/// Ownership by `vyr::ref_ptr`.
#include <vyr/ref_ptr.h>

#include "CountedObject.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

TEST(RefPtr, HoldsOneReference) {
  vyr::ref_ptr<CountedObject> pointer(new CountedObject);
  EXPECT_EQ(pointer->getReferenceCount(), 1);
  {
    vyr::ref_ptr<CountedObject> second(pointer);
    EXPECT_EQ(pointer->getReferenceCount(), 2);
  }
  EXPECT_EQ(pointer->getReferenceCount(), 1);
  pointer = nullptr;
  EXPECT_FALSE(pointer.valid());
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(RefPtr, MoveTransfersWithoutCounting) {
  vyr::ref_ptr<CountedObject> source(new CountedObject);
  vyr::ref_ptr<CountedObject> target(std::move(source));
  EXPECT_EQ(target->getReferenceCount(), 1);
  EXPECT_FALSE(source.valid());
}

TEST(RefPtr, AssignmentTakesBeforeItDrops) {
  // The old object is the new one's only other holder.
  struct Holder : CountedObject {
    vyr::ref_ptr<CountedObject> child{new CountedObject};
  };
  vyr::ref_ptr<CountedObject> pointer(new Holder);
  auto* child = static_cast<Holder*>(pointer.get())->child.get();
  pointer = child;
  EXPECT_EQ(pointer->getReferenceCount(), 1);
  EXPECT_EQ(CountedObject::alive, 1);
  pointer = nullptr;
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(RefPtr, SelfAssignmentKeepsTheObject) {
  vyr::ref_ptr<CountedObject> pointer(new CountedObject);
  pointer = pointer.get();
  EXPECT_EQ(pointer->getReferenceCount(), 1);
}

TEST(RefPtr, ReleaseGivesUpWithoutDestroying) {
  vyr::ref_ptr<CountedObject> pointer(new CountedObject);
  CountedObject* object = pointer.release();
  EXPECT_EQ(object->getReferenceCount(), 0);
  EXPECT_EQ(CountedObject::alive, 1);
  vyr::Referenced::destroy(object);
}

TEST(RefPtr, ConvertsToTheBase) {
  vyr::ref_ptr<CountedObject> derived(new CountedObject);
  vyr::ref_ptr<vyr::Referenced> base(derived);
  EXPECT_EQ(base, derived);
  EXPECT_EQ(derived->getReferenceCount(), 2);
}

} // namespace
