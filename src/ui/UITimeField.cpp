#include "ui/UITimeField.h"

#include <cmath>
#include <limits>

#include "data/AppData.h"
#include "ui/TimeUnits.h"

namespace {

constexpr float SECONDS_STEP = 0.1f;

float frameRate()
{
    return AppData::get()->getFrameRate();
}

} // namespace

void UITimeField::build(UIElement* parent, const char* label)
{
    auto* line = jNew<UIEditLineWheel>("src/ui/UITimeField", __LINE__, "UITimeField::UITimeField", parent->getRoot(),
                                       label);
    m_editor = line;
    line->setMode(UI_EDIT_TEXT); // frames carry their unit: "36f"
    line->setReadOnly(m_data.isReadOnly());
    show(m_data.get());
    line->sigCommit = bind(&UITimeField::finish, this);
    line->sigFocus = bind(&UITimeField::on_focus, this);
    parent->addChild(line, UI_EXPAND_NONE, -1);
}

void UITimeField::refresh()
{
    if (m_editor->hasFocus())
        return;
    const float fps = frameRate();
    edit()->setStep(fps > 0.0f ? 1.0f / fps : SECONDS_STEP);
    if (TimeUnits::format(m_data.get(), fps) != edit()->getText())
        show(m_data.get());
}

void UITimeField::setValue(const float& value)
{
    show(value);
    notify(value);
}

float UITimeField::getShown() const
{
    float t = std::numeric_limits<float>::quiet_NaN();
    TimeUnits::parse(edit()->getText().c_str(), frameRate(), t);
    return t;
}

void UITimeField::show(float value)
{
    m_written = TimeUnits::format(value, frameRate());
    edit()->setText(m_written.c_str());
}

// What is not a time is dropped; either way the field then shows the value in its own form
// ("36f" reads back as "1.5").
void UITimeField::finish()
{
    if (!std::isnan(getShown()))
        finish_typing(this, m_written);
    show(m_data.get());
}

void UITimeField::on_focus(const UIEventFocus* e, UIElement*)
{
    if (!e->focused)
        finish();
}
