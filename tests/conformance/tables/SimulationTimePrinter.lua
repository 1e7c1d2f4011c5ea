-- The printer of the simulated time.
types { "vyrSDK::GuiEventListener", "vyrOSG::SimulationTimePrinter", "vyrOSG::HudTextManager" }
samples({ printer = function(env) return vyrOSG.SimulationTimePrinter(env.texts) end },
  { ["vyrOSG::SimulationTimePrinter"] = "printer" })

namespace "vyrOSG"
class("SimulationTimePrinter", { base = "vyrSDK::GuiEventListener", collector = "drops" })
constructor "SimulationTimePrinter(vyrOSG::HudTextManager* manager)"
row "void updateHud()"
row "void update(float x, float y)"
