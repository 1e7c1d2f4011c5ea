/// Counts, the delete handler and copies of `vyr::Referenced`.
#include <vyr/Referenced.h>

#include "CountedObject.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

class KeepingHandler : public vyr::DeleteHandler {
public:
  void requestDelete(const vyr::Referenced* object) override { kept.push_back(object); }
  std::vector<const vyr::Referenced*> kept;
};

TEST(Referenced, CountStartsAtZero) {
  auto* object = new CountedObject;
  EXPECT_EQ(object->getReferenceCount(), 0);
  object->ref();
  EXPECT_EQ(object->getReferenceCount(), 1);
  object->unref();
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(Referenced, LastUnrefDestroys) {
  auto* object = new CountedObject;
  object->ref();
  object->ref();
  object->unref();
  EXPECT_EQ(CountedObject::alive, 1);
  object->unref();
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(Referenced, UnrefWithoutDeleteKeepsTheObject) {
  auto* object = new CountedObject;
  object->ref();
  object->unrefWithoutDelete();
  EXPECT_EQ(object->getReferenceCount(), 0);
  EXPECT_EQ(CountedObject::alive, 1);
  vyr::Referenced::destroy(object);
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(Referenced, CopyHasItsOwnCount) {
  auto* object = new CountedObject;
  object->ref();
  auto* copy = new CountedObject(*object);
  EXPECT_EQ(copy->getReferenceCount(), 0);
  copy->ref();
  copy->ref();
  *object = *copy;
  EXPECT_EQ(object->getReferenceCount(), 1);
  object->unref();
  copy->unref();
  copy->unref();
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(Referenced, DeleteHandlerTakesOver) {
  KeepingHandler handler;
  vyr::Referenced::setDeleteHandler(&handler);
  auto* object = new CountedObject;
  object->ref();
  object->unref();
  vyr::Referenced::setDeleteHandler(nullptr);
  ASSERT_EQ(handler.kept.size(), 1u);
  EXPECT_EQ(handler.kept[0], object);
  EXPECT_EQ(CountedObject::alive, 1);
  vyr::Referenced::destroy(object);
  EXPECT_EQ(CountedObject::alive, 0);
}

TEST(Referenced, CountsAreExactAcrossThreads) {
  auto* object = new CountedObject;
  object->ref();
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([object] {
      for (int i = 0; i < 20000; ++i) {
        object->ref();
        object->unref();
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(object->getReferenceCount(), 1);
  object->unref();
  EXPECT_EQ(CountedObject::alive, 0);
}

} // namespace
