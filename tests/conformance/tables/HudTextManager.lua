-- Lines of text on the head-up display.
types {
  "vyrOSG::HudTextManager", "vyr::Referenced", "vyrOSG::HudTextManager::ReferencedText", "vyrSDK::StepEventListener",
  "vyrOSG::ExampleApplication", "vyrOSG::SceneDecorator",
}
samples({ line = function() return (vyrOSG.HudTextManager.ReferencedText("a line")) end },
  { ["vyrOSG::HudTextManager::ReferencedText"] = "line" })

namespace "vyrOSG"
-- Only a name, so that the module can be opened before the application's: what that one has registered has to stay.
class "ExampleApplication"
class("HudTextManager", { base = "vyrSDK::StepEventListener", collector = "drops" })
class("HudTextManager.ReferencedText", { base = "vyr::Referenced", collector = "drops" })
constructor { "ReferencedText(const vyr::VyrString<std::string>& text)", seen = "vyrOSG.HudTextManager.ReferencedText('x'):getText() == 'x'" }
row { "const vyr::VyrString<std::string>& getText() const", gives = "'a line'" }
row { "void setText(const vyr::VyrString<std::string>& text)", gives = "'text1'", seen = "self:getText() == 'text1'" }
back "HudTextManager"
constructor "HudTextManager(vyrOSG::SceneDecorator* decorator)"
row { "void addText(const vyr::VyrString<std::string>& text)", gives = "'text1'" }
row { "void addConstantText(const vyr::VyrString<std::string>& text)", gives = "'text1'" }
row "void clearConstantText()"
row "void clearText()"
row "void updateHud()"
row { "void addReferencedText(vyrOSG::HudTextManager::ReferencedText* text)",
  seen = "type(vyrOSG.ExampleApplication.setTimeStep) == 'function', vyrOSG.ExampleApplication['.collector'] ~= nil" }
