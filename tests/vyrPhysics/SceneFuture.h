/// The promise of scene files: what was read goes on as what was written.
#pragma once

#include "Scene.h"

#include <gtest/gtest.h>

#include <string>

namespace scene {

/// Writes, reads into a new simulation, and lets both go on. Returns the copy.
inline vyr::ref_ptr<vyrSDK::Simulation> expectSameFuture(vyrSDK::Simulation& original, int steps) {
  const std::string text = original.toText();
  vyr::ref_ptr<vyrSDK::Simulation> copy = new vyrSDK::Simulation;
  EXPECT_TRUE(copy->fromText(text));
  EXPECT_EQ(copy->stateHash(), original.stateHash());
  EXPECT_TRUE(copy->toText() == text);
  EXPECT_EQ(copy->getContacts().size(), original.getContacts().size());
  for (int i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
    original.step();
    copy->step();
    EXPECT_EQ(copy->stateHash(), original.stateHash()) << "step " << i;
  }
  return copy;
}

/// The error messages of a text that must be refused; it must not change the simulation.
inline std::vector<std::string> errorsOf(vyrSDK::Simulation& simulation, const std::string& text) {
  const uint64_t before = simulation.stateHash();
  Messages messages;
  EXPECT_FALSE(simulation.fromText(text, "scene.json")) << text;
  EXPECT_EQ(simulation.stateHash(), before);
  return messages.get();
}

} // namespace scene
