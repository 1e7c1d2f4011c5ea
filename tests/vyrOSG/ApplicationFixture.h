// An application whose scenes are built by C++ functions, for tests of what it does with them.
#pragma once

#include "TemporaryFolder.h"

#include <vyr/RigidBody.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Plane.h>
#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/GraphicsBackend.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/LaunchOptions.h>
#include <vyrOSG/utils.h>

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <map>
#include <string>

/// Builds scenes by name out of functions.
class FunctionLoader : public vyrIO::CFGSceneLoader {
public:
  using Build = std::function<void(vyrSDK::Simulation&, vyrOSG::ExampleApplication&, vyrOSG::Group&)>;

  bool loadScene(const std::string&, const std::string& function, vyrSDK::Simulation* simulation,
                 vyrOSG::ExampleApplication* application, vyrOSG::Group* root, std::string& error) override {
    built.push_back(function);
    const auto found = scenes.find(function);
    if (found == scenes.end()) {
      error = "there is no function " + function;
      return false;
    }
    found->second(*simulation, *application, *root);
    return true;
  }

  std::map<std::string, Build> scenes;
  std::vector<std::string> built;
};

/// Sets the process-wide options back when a test is over.
class ApplicationTest : public ::testing::Test {
protected:
  ApplicationTest() {
    vyrOSG::LaunchOptions& options = vyrOSG::LaunchOptions::process();
    options = vyrOSG::LaunchOptions();
    options.backend = vyrOSG::LaunchOptions::NONE;
    options.width = 160;
    options.height = 120;
    std::ofstream(script()) << "-- a scene\n";
    loader->scenes["fall"] = [this](vyrSDK::Simulation& simulation, vyrOSG::ExampleApplication&, vyrOSG::Group& root) {
      makeFall(simulation, root);
    };
    app->setSceneLoader(loader.get());
  }
  ~ApplicationTest() override { vyrOSG::LaunchOptions::process() = vyrOSG::LaunchOptions(); }

  /// A box 1 m above the ground.
  void makeFall(vyrSDK::Simulation& simulation, vyrOSG::Group& root) {
    ground = new vyr::RigidBody("ground");
    ground->setMotionControl(vyr::RigidBody::STATIC);
    ground->add(new vyrCollide::Geometry(new vyrCollide::Plane));
    box = new vyr::RigidBody("box");
    box->add(new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(0.5, 0.5, 0.5)), "cube"));
    box->setPosition(vyr::Vec3(0, 0, 1.5));
    simulation.add(ground.get());
    simulation.add(box.get());
    vyrOSG::createVisual(ground.get(), &root);
    vyrOSG::createVisual(box.get(), &root);
  }

  bool init(const std::vector<std::string>& arguments = {}) {
    parser = new vyrIO::ArgumentParser(script(), arguments);
    return app->init(parser.get());
  }

  /// Adds a scene and runs it for some simulated seconds.
  int run(double seconds, const std::string& function = "fall") {
    app->addScene(script(), function, 0, true);
    app->stopAfter(seconds);
    return app->run();
  }

  /// Whether pictures can be drawn here.
  bool useEgl() {
    vyrOSG::LaunchOptions::process().backend = vyrOSG::LaunchOptions::EGL;
    return vyrOSG::GraphicsBackend::create(vyrOSG::LaunchOptions::EGL, 8, 8, 0)->getContext() != nullptr;
  }

  std::string script() { return folder / "scene.lua"; }

  TemporaryFolder folder;
  vyr::ref_ptr<vyrIO::ArgumentParser> parser;
  vyr::ref_ptr<FunctionLoader> loader{new FunctionLoader};
  vyr::ref_ptr<vyr::RigidBody> ground;
  vyr::ref_ptr<vyr::RigidBody> box;
  vyr::ref_ptr<vyrOSG::ExampleApplication> app{new vyrOSG::ExampleApplication};
};
