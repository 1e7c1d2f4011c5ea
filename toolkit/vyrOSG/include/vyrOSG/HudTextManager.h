/// Collects lines of text from many sources and shows them on a scene decorator's heads-up display.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/VyrString.h>
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrOSG/SceneDecorator.h>
#include <vyrOSG/export.h>
#include <vyrSDK/Simulation.h>
#include <vyrSDK/StepEventListener.h>

#include <osg/observer_ptr>

#include <cstddef>
#include <string>
#include <vector>

namespace vyrOSG {

/**
 * A step listener that writes lines onto a heads-up display, from the first line down: first the constant lines, then
 * the referenced texts, then the lines of the step, each in the order of adding.
 *
 * Lines of the step are shown until the next step ends and are then dropped. As a listener of a simulation the manager
 * updates the display after each step; otherwise updateHud() does. A text with line breaks takes several lines. Below
 * its own lines an update clears only lines that the manager wrote before.
 */
class VYROSG_EXPORT HudTextManager : public vyrSDK::StepEventListener {
public:
  /// A text that its owner changes and the manager shows for as long as both are alive.
  class VYROSG_EXPORT ReferencedText : public vyr::Referenced {
  public:
    explicit ReferencedText(const vyr::VyrString<std::string>& text);

    /// Gets the text. An empty text takes no line.
    const vyr::VyrString<std::string>& getText() const;
    /// Sets the text.
    void setText(const vyr::VyrString<std::string>& text);

  protected:
    ~ReferencedText() override;

  private:
    vyr::VyrString<std::string> m_text;
  };

  /// Nullable: decorator; without one the lines are collected and not shown. *Borrows* through a weak pointer.
  explicit HudTextManager(vyrOSG::SceneDecorator* decorator);

  /// Adds a line of the step.
  void addText(const vyr::VyrString<std::string>& text);
  /// Adds a line that stays until clearConstantText().
  void addConstantText(const vyr::VyrString<std::string>& text);
  /// Drops the constant lines.
  void clearConstantText();
  /// Drops the lines of the step.
  void clearText();
  /// Writes the lines onto the display.
  void updateHud();
  /// Adds a text that is shown until it is removed; one that is there already is not added twice. Nullable: null is
  /// ignored. *Retains*.
  void addReferencedText(ReferencedText* text);
  /// Removes a referenced text. False if it was not there.
  bool removeReferencedText(ReferencedText* text);

  /// The lines as updateHud() writes them, from the first down.
  std::vector<std::string> getLines() const;

  /// The simulation that the manager listens to. Nullable. *Returns inner*.
  vyrSDK::Simulation* getSimulation() const { return m_simulation.get(); }

  /// After a step: shows its lines.
  void last(const vyr::TimeStamp& time) override;
  void simulationChanged(vyrSDK::Simulation* simulation) override;

protected:
  ~HudTextManager() override;

private:
  osg::observer_ptr<SceneDecorator> m_decorator;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
  std::vector<std::string> m_constantText;
  std::vector<vyr::ref_ptr<ReferencedText>> m_referencedText;
  std::vector<std::string> m_stepText;
  std::size_t m_numShown = 0;
  bool m_stepEnded = false;
};

} // namespace vyrOSG
