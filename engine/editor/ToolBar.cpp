#include "editor/ToolBar.h"

#include <QFrame>
#include <QBoxLayout>
#include <QWidget>

#include "../ui/UINative.h"

namespace {

const char* const FILE_TAG = "engine/editor/ToolBar";

// A thin vertical line with a little room on either side.
QWidget* make_separator(int height)
{
    auto* line = new QFrame();
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Plain);
    line->setFixedWidth(9);
    line->setFixedHeight(height);
    line->setStyleSheet("color: #4a4e55;");
    return line;
}

QWidget* make_row()
{
    auto* row = new QWidget();
    makeBoxLayout(row, false, 2, 1);
    return row;
}

} // namespace

ToolBar::ToolBar(UIRoot* root, int fontSize) : UIElement(root, makeNative(make_row())), m_font_size(fontSize) {}

void ToolBar::setFontSize(int size)
{
    m_font_size = size;
    for (int i = 0; i < getNumButtons(); ++i)
        getButton(i)->setIconSize(size);
}

ToolButton* ToolBar::addButton(const char* icon, const UISlot<UIEventMouse>& callback)
{
    return append(jNew<ToolButton>(FILE_TAG, __LINE__, "ToolBar::addButton", getRoot(), icon, "", m_font_size),
                  callback);
}

ToolButton* ToolBar::addTextButton(const char* text, const UISlot<UIEventMouse>& callback)
{
    return append(jNew<ToolButton>(FILE_TAG, __LINE__, "ToolBar::addTextButton", getRoot(), "", text, m_font_size),
                  callback);
}

void ToolBar::addSpacer()
{
    auto* gap = jNew<UIElement>(FILE_TAG, __LINE__, "ToolBar::addSpacer", getRoot());
    addChild(gap, UI_EXPAND_NONE, -1);
    QWidget* content = gap->native() ? gap->native()->content.data() : nullptr;
    if (auto* box = content ? qobject_cast<QBoxLayout*>(content->layout()) : nullptr)
        box->insertWidget(0, make_separator(m_font_size + 4));
}

int ToolBar::getNumButtons() const
{
    int count = 0;
    for (int i = 0; i < getNumChilds(); ++i)
        count += dynamic_cast<ToolButton*>(getChild(i)) ? 1 : 0;
    return count;
}

ToolButton* ToolBar::getButton(int i) const
{
    if (i < 0)
        return nullptr;
    for (int c = 0; c < getNumChilds(); ++c) {
        auto* button = dynamic_cast<ToolButton*>(getChild(c));
        if (button && i-- == 0)
            return button;
    }
    return nullptr;
}

void ToolBar::updateButtons()
{
    for (int i = 0; i < getNumButtons(); ++i)
        getButton(i)->refreshLook();
}

bool ToolBar::onKeyPress(const UIEventKey* e)
{
    for (int i = 0; i < getNumButtons(); ++i) {
        ToolButton* button = getButton(i);
        if (!button->isHidden() && button->isEnabled() && button->matchesShortcut(e))
            return button->click();
    }
    return UIElement::onKeyPress(e);
}

ToolButton* ToolBar::append(ToolButton* button, const UISlot<UIEventMouse>& callback)
{
    button->sigClick = callback;
    addChild(button, UI_EXPAND_NONE, -1);
    return button;
}
