// Who holds what: births and deaths counted, with and without explicit collectors.
#include "LuaState.h"
#include "Machine.h"

#include <gtest/gtest.h>

#include <osg/ref_ptr>

int tolua_vyrTest_Machinery_open(lua_State* state);

namespace {

using machine::Assembly;
using machine::Item;
using machine::Loose;
using machine::Part;
using machine::Value;

class Ownership : public ::testing::Test {
protected:
  Ownership() { tolua_vyrTest_Machinery_open(lua.get()); }

  template <class T>
  T* global(const char* name) {
    lua_getglobal(lua.get(), name);
    T* object = static_cast<T*>(tolua_tousertype(lua.get(), -1, nullptr));
    lua_pop(lua.get(), 1);
    return object;
  }

  bindingtest::LuaState lua;
};

TEST_F(Ownership, ValuesMadeByACallDieWithLua) {
  const int before = Value::alive();
  lua.run("v = machine.Value(1) w = machine.Value:new_local(2)");
  EXPECT_EQ(before + 2, Value::alive());
  lua.run("v, w = nil");
  lua.collect();
  EXPECT_EQ(before, Value::alive());
}

TEST_F(Ownership, ValuesMadeByNewStay) {
  const int before = Value::alive();
  lua.run("v = machine.Value:new(1)");
  Value* value = global<Value>("v");
  lua.run("v = nil");
  lua.collect();
  EXPECT_EQ(before + 1, Value::alive());
  delete value;
}

TEST_F(Ownership, CopiesDieWithLua) {
  const int before = Value::alive();
  lua.run("v = machine.Value(4) w = v:copy() v.number = 5");
  EXPECT_EQ("5 4", lua.eval("v.number, w.number"));
  lua.run("v, w = nil");
  lua.collect();
  EXPECT_EQ(before, Value::alive());
}

TEST_F(Ownership, ADeletedValueIsNotDeletedAgain) {
  const int before = Value::alive();
  lua.run("v = machine.Value(1) v:delete()");
  EXPECT_EQ(before, Value::alive());
  lua.run("v = nil");
  lua.collect();
  EXPECT_EQ(before, Value::alive());
}

TEST_F(Ownership, AFreshValueAtADeletedOnesAddressIsAnother) {
  EXPECT_EQ("7 true", lua.run("local v = machine.Value(1) v:delete()"
                              " local fresh = machine.Value(7)"
                              " return fresh.number, not rawequal(v, fresh)"));
}

TEST_F(Ownership, CountedObjectsCarryLuasReference) {
  lua.run("p = machine.Part() q = machine.Part:new() i = machine.Item() j = machine.Item:new()");
  EXPECT_EQ("1 0 1 0", lua.eval("p:count(), q:count(), i:count(), j:count()"));
  // Not owned: held once, they go.
  vyr::ref_ptr<Part> part = global<Part>("q");
  osg::ref_ptr<Item> item = global<Item>("j");
}

TEST_F(Ownership, CountedObjectsThatNobodyHoldsDieWithLua) {
  const int parts = Part::alive();
  const int items = Item::alive();
  lua.run("p = machine.Part() i = machine.Item()");
  EXPECT_EQ(parts + 1, Part::alive());
  EXPECT_EQ(items + 1, Item::alive());
  lua.run("p, i = nil");
  lua.collect();
  EXPECT_EQ(parts, Part::alive());
  EXPECT_EQ(items, Item::alive());
}

TEST_F(Ownership, CountedObjectsThatAreHeldOutliveLua) {
  const int before = Part::alive();
  lua.run("p = machine.Part()");
  vyr::ref_ptr<Part> holder = global<Part>("p");
  EXPECT_EQ(2, holder->getReferenceCount());
  lua.close();
  EXPECT_EQ(1, holder->getReferenceCount());
  EXPECT_EQ(before + 1, Part::alive());
  holder = nullptr;
  EXPECT_EQ(before, Part::alive());
}

TEST_F(Ownership, ACollectorLeavesACountOfZeroAlone) {
  const int before = Item::alive();
  lua.run("i = machine.Item()");
  Item* item = global<Item>("i");
  item->unref_nodelete();
  lua.run("i = nil");
  lua.collect();
  EXPECT_EQ(before + 1, Item::alive());
  osg::ref_ptr<Item> last = item;
}

TEST_F(Ownership, TheDeleteHandlerDestroysInstead) {
  struct Handler : vyr::DeleteHandler {
    void requestDelete(const vyr::Referenced* object) override {
      ++requests;
      vyr::Referenced::destroy(object);
    }
    int requests = 0;
  } handler;
  vyr::Referenced::setDeleteHandler(&handler);
  lua.run("p = machine.Part() p = nil");
  lua.collect();
  vyr::Referenced::setDeleteHandler(nullptr);
  EXPECT_EQ(1, handler.requests);
}

TEST_F(Ownership, ViewsKeepTheirOwnerAlive) {
  const int before = Assembly::alive();
  lua.run("view = machine.Assembly().origin other = machine.Assembly():getOrigin()");
  lua.collect();
  EXPECT_EQ(before + 2, Assembly::alive());
  lua.run("view._v[1] = 6");
  EXPECT_EQ("6", lua.eval("view._v[1]"));
  lua.run("view, other = nil");
  lua.collect();
  EXPECT_EQ(before, Assembly::alive());
}

TEST_F(Ownership, ViewsGoWithADeletedOwner) {
  lua.run("a = machine.Assembly() view = a.origin other = a:getOrigin() a:delete()");
  EXPECT_EQ(nullptr, global<void>("view"));
  EXPECT_EQ(nullptr, global<void>("other"));
  EXPECT_EQ("false false",
            lua.run("return (pcall(function() return view._v[1] end)), (pcall(function() return other._v[0] end))"));
  lua.collect();
}

TEST_F(Ownership, AnArrayWithoutItsOwnerHasNoElements) {
  lua.run("array = machine.Vector()._v");
  lua.collect();
  EXPECT_EQ("false", lua.eval("(pcall(function() return array[1] end))"));
  EXPECT_EQ("false", lua.eval("(pcall(function() array[1] = 2 end))"));
  lua.run("a = machine.Assembly() array = a.origin._v");
  EXPECT_EQ("6", lua.run("array[1] = 6 return a.origin._v[1]"));
}

TEST_F(Ownership, ViewsStillTakeFieldsOfScripts) {
  EXPECT_EQ("note 6", lua.run("local a = machine.Assembly() local v = a.origin v.remark = 'note' v._v[0] = 6"
                              " local again = a.origin return again.remark, again._v[0]"));
}

TEST_F(Ownership, ClassesWithoutCollectorRunNoDestructorByDefault) {
  const int before = Loose::alive();
  lua.run("l = machine.Loose() l = nil");
  lua.collect();
#ifdef VYROSG_EXPLICIT_COLLECTORS
  EXPECT_EQ(before, Loose::alive());
#else
  EXPECT_EQ(before + 1, Loose::alive());
#endif
}

TEST_F(Ownership, ClassesWithoutCollectorTakeAReferenceOnlyInTheExplicitMode) {
  lua.run("l = machine.Loose()");
#ifdef VYROSG_EXPLICIT_COLLECTORS
  EXPECT_EQ(1, global<Loose>("l")->referenceCount());
  EXPECT_EQ("function", lua.eval("type(rawget(machine.Loose, '.collector'))"));
#else
  EXPECT_EQ(0, global<Loose>("l")->referenceCount());
  EXPECT_EQ("nil", lua.eval("rawget(machine.Loose, '.collector')"));
#endif
}

} // namespace
