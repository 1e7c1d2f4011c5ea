-- The printer of "paused".
types { "vyrSDK::GuiEventListener", "vyrOSG::SimulationPausedPrinter", "vyrOSG::HudTextManager", "vyrOSG::ExampleApplication" }
samples({ printer = function(env) return vyrOSG.SimulationPausedPrinter(env.texts, env.app) end },
  { ["vyrOSG::SimulationPausedPrinter"] = "printer" })

namespace "vyrOSG"
class("SimulationPausedPrinter", { base = "vyrSDK::GuiEventListener", collector = "drops" })
constructor "SimulationPausedPrinter(vyrOSG::HudTextManager* manager, vyrOSG::ExampleApplication* application)"
row "void updateHud()"
row "void update(float x, float y)"
