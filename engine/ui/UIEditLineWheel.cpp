#include "ui/UIEditLineWheel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cstdlib>
#include <functional>

#include "UINative.h"
#include "kit/jString.h"

namespace {

// A line edit that turns the wheel and horizontal drags into steps while it is not being edited.
class WheelLineEdit : public QLineEdit {
public:
    std::function<void(float)> nudge;

protected:
    void wheelEvent(QWheelEvent* e) override
    {
        int notches = e->angleDelta().y() / 120;
        if (notches == 0 || !nudge)
            return QLineEdit::wheelEvent(e);
        nudge(static_cast<float>(notches));
        e->accept();
    }
    void mousePressEvent(QMouseEvent* e) override
    {
        if (hasFocus() || e->button() != Qt::LeftButton)
            return QLineEdit::mousePressEvent(e);
        m_press_x = m_last_x = static_cast<int>(e->position().x());
        m_pressed = true;
        m_dragging = false;
        e->accept();
    }
    void mouseMoveEvent(QMouseEvent* e) override
    {
        if (!m_pressed)
            return QLineEdit::mouseMoveEvent(e);
        int x = static_cast<int>(e->position().x());
        m_dragging = m_dragging || std::abs(x - m_press_x) > 3;
        if (m_dragging && std::abs(x - m_last_x) >= 4 && nudge) {
            int steps = (x - m_last_x) / 4;
            m_last_x += steps * 4;
            nudge(static_cast<float>(steps));
        }
        e->accept();
    }
    void mouseReleaseEvent(QMouseEvent* e) override
    {
        if (!m_pressed)
            return QLineEdit::mouseReleaseEvent(e);
        m_pressed = false;
        if (!m_dragging) {
            setFocus(Qt::MouseFocusReason);
            selectAll();
        }
        e->accept();
    }

private:
    int m_press_x = 0;
    int m_last_x = 0;
    bool m_pressed = false;
    bool m_dragging = false;
};

UINative* make_wheel_native(const char* label)
{
    auto* frame = new QWidget();
    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    auto* caption = new QLabel(QString::fromUtf8(label ? label : ""), frame);
    caption->setVisible(label && *label);
    row->addWidget(caption);
    auto* line = new WheelLineEdit();
    row->addWidget(line, 1);
    frame->setFocusProxy(line);
    return makeNative(frame);
}

} // namespace

UIEditLineWheel::UIEditLineWheel(UIRoot* root, const char* label)
    : UIEditLine(root, make_wheel_native(label), "")
{
    auto* line = static_cast<WheelLineEdit*>(nativeWidget(this)->findChild<QLineEdit*>());
    line->nudge = [this](float steps) { nudge(steps); };
    setMode(UI_EDIT_NUMBER);
}

void UIEditLineWheel::setStep(float step) { m_step = step; }

float UIEditLineWheel::getValue() const { return static_cast<float>(std::atof(getText().c_str())); }

void UIEditLineWheel::setValue(float value) { setText(ToString(value).c_str()); }

void UIEditLineWheel::nudge(float steps)
{
    setValue(getValue() + steps * m_step);
    UIEventChanged e;
    sigChanged(&e, this);
    sigCommit();
}
