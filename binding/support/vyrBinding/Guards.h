/// Questions that a wrapper asks before a call that would read outside an object or through null.
///
/// A description names guarded functions (`guard getChild;`); the wrapper then calls vyrBinding::guards::getChild(self,
/// arguments...), and where the answer is no it pushes nil, 0 or false without making the call.
#pragma once

#include <cstddef>
#include <type_traits>

namespace vyrBinding {
namespace guards {

/// The scene-graph library does not check these indices.
template <class Node>
bool getParent(Node& node, unsigned int index) {
  return index < node.getNumParents();
}
template <class Group>
bool getChild(Group& group, unsigned int index) {
  return index < group.getNumChildren();
}
template <class Geode>
bool getDrawable(Geode& geode, unsigned int index) {
  return index < geode.getNumDrawables();
}

/// A geode is no group for scripts, although the scene-graph library derives it from one.
template <class Node>
bool asGroup(Node& node) {
  return node.asGeode() == nullptr;
}

/// Heights stand at column + row * columns of the height array, which may be shorter than the grid.
template <class HeightField>
bool setHeight(HeightField& field, unsigned int column, unsigned int row, float) {
  const std::size_t index = column + static_cast<std::size_t>(row) * field.getNumColumns();
  return index < field.getHeightList().size();
}

} // namespace guards

/// How many elements `operator[]` of T reaches; 0 means that T checks by itself.
template <class T>
struct ElementCount {
  static constexpr long kValue = 0;
};

template <class T>
bool isElement(long index) {
  return ElementCount<T>::kValue == 0 || (index >= 0 && index < ElementCount<T>::kValue);
}

/// Reads an element; 0 outside of the elements.
template <class T, class Index>
auto element(T& object, Index index) -> std::decay_t<decltype(object[index])> {
  if (!isElement<std::remove_const_t<T>>(static_cast<long>(index)))
    return {};
  return object[index];
}

/// Writes an element; nothing happens outside of the elements.
template <class T, class Index, class Value>
void setElement(T& object, Index index, Value value) {
  if (isElement<std::remove_const_t<T>>(static_cast<long>(index)))
    object[index] = value;
}

} // namespace vyrBinding
