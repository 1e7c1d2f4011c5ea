/// Collects lines of text and writes them onto the heads-up display.
#include <vyrOSG/HudTextManager.h>

#include <algorithm>

namespace vyrOSG {

namespace {

/// Adds a text to the lines, cut at its line breaks.
void appendLines(std::vector<std::string>& lines, const std::string& text) {
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  lines.push_back(text.substr(begin));
}

} // namespace

HudTextManager::ReferencedText::ReferencedText(const vyr::VyrString<std::string>& text)
    : m_text(text) {}

HudTextManager::ReferencedText::~ReferencedText() = default;

const vyr::VyrString<std::string>& HudTextManager::ReferencedText::getText() const {
  return m_text;
}

void HudTextManager::ReferencedText::setText(const vyr::VyrString<std::string>& text) {
  m_text = text;
}

HudTextManager::HudTextManager(vyrOSG::SceneDecorator* decorator)
    : m_decorator(decorator) {}

HudTextManager::~HudTextManager() = default;

void HudTextManager::addText(const vyr::VyrString<std::string>& text) {
  if (m_stepEnded)
    clearText();
  m_stepText.push_back(text);
}

void HudTextManager::addConstantText(const vyr::VyrString<std::string>& text) {
  m_constantText.push_back(text);
}

void HudTextManager::clearConstantText() {
  m_constantText.clear();
}

void HudTextManager::clearText() {
  m_stepText.clear();
  m_stepEnded = false;
}

void HudTextManager::addReferencedText(ReferencedText* text) {
  if (text && std::find(m_referencedText.begin(), m_referencedText.end(), text) == m_referencedText.end())
    m_referencedText.push_back(text);
}

bool HudTextManager::removeReferencedText(ReferencedText* text) {
  const auto found = std::find(m_referencedText.begin(), m_referencedText.end(), text);
  if (found == m_referencedText.end())
    return false;
  m_referencedText.erase(found);
  return true;
}

std::vector<std::string> HudTextManager::getLines() const {
  std::vector<std::string> lines;
  for (const std::string& text : m_constantText)
    appendLines(lines, text);
  for (const vyr::ref_ptr<ReferencedText>& text : m_referencedText)
    if (!text->getText().empty())
      appendLines(lines, text->getText());
  for (const std::string& text : m_stepText)
    appendLines(lines, text);
  return lines;
}

void HudTextManager::updateHud() {
  const std::vector<std::string> lines = getLines();
  if (m_decorator.valid()) {
    // Unchanged lines are written as well: somebody may have cleared the display meanwhile.
    for (std::size_t i = 0; i < lines.size(); ++i)
      m_decorator->setText(static_cast<int>(i), lines[i]);
    for (std::size_t i = lines.size(); i < m_numShown; ++i)
      m_decorator->setText(static_cast<int>(i), std::string());
  }
  m_numShown = lines.size();
}

void HudTextManager::last(const vyr::TimeStamp&) {
  // Nothing was added during this step: what is left belongs to the one before.
  if (m_stepEnded)
    clearText();
  updateHud();
  m_stepEnded = true;
}

void HudTextManager::simulationChanged(vyrSDK::Simulation* simulation) {
  m_simulation = simulation;
}

} // namespace vyrOSG
