#include "ui/UIElement.h"

#include <QApplication>
#include <QBoxLayout>
#include <cmath>

#include "UINative.h"
#include "kit/jLog.h"
#include "ui/UIRoot.h"

namespace {

const char* const k_file = "engine/ui/UIElement";

bool is_vertical(const QBoxLayout* box)
{
    return box->direction() == QBoxLayout::TopToBottom || box->direction() == QBoxLayout::BottomToTop;
}

Qt::Alignment across_alignment(int align, bool vertical)
{
    if (vertical)
        return align == UI_ALIGN_CENTER ? Qt::AlignHCenter : (align == UI_ALIGN_END ? Qt::AlignRight : Qt::AlignLeft);
    return align == UI_ALIGN_CENTER ? Qt::AlignVCenter : (align == UI_ALIGN_END ? Qt::AlignBottom : Qt::AlignTop);
}

bool fills_across(int expand) { return expand == UI_EXPAND_ACROSS || expand == UI_EXPAND_BOTH; }
bool shares_along(int expand) { return expand == UI_EXPAND_ALONG || expand == UI_EXPAND_BOTH; }

int stretch_of(float weight) { return std::max(1, static_cast<int>(std::lround(weight * 100.0f))); }

// The trailing stretch takes the free space only while no child shares it.
void update_trailing_stretch(QBoxLayout* box)
{
    int last = box->count() - 1;
    bool shared = false;
    for (int i = 0; i < last; ++i)
        shared = shared || box->stretch(i) > 0;
    box->setStretch(last, shared ? 0 : 1);
}

QBoxLayout* box_of(const UINative* native)
{
    return native && native->content ? qobject_cast<QBoxLayout*>(native->content->layout()) : nullptr;
}

} // namespace

UIElement::UIElement(UIRoot* root) : UIElement(root, nullptr) {}

UIElement::UIElement(UIRoot* root, UINative* native) : m_root(root), m_native(native)
{
    if (!m_native) {
        auto* w = new QWidget();
        makeBoxLayout(w, true, 0, 0);
        m_native = makeNative(w);
    }
    registerElementWidget(m_native->widget, this);
}

UIElement::~UIElement()
{
    if (m_root && UIRoot::get() == m_root)
        m_root->forgetElement(this);
    for (int i = 0; i < m_childs.size(); ++i) {
        m_childs[i]->m_parent = nullptr;
        if (QWidget* w = nativeWidget(m_childs[i]))
            w->setParent(nullptr);
    }
    // The deriving parts are gone already: what the native widgets announce from here on (a field
    // losing the focus as it leaves the window) must reach none of their handlers.
    QWidget* w = m_native->widget.data();
    if (w) {
        registerElementWidget(w, nullptr);
        w->blockSignals(true);
        for (QObject* o : w->findChildren<QObject*>())
            o->blockSignals(true);
    }
    if (m_parent)
        m_parent->removeChild(this);
    delete w;
    jDelete(m_native, k_file, __LINE__, "UIElement::~UIElement");
}

void UIElement::update(float dt)
{
    for (int i = 0; i < m_childs.size(); ++i)
        m_childs[i]->update(dt);
}

void UIElement::release()
{
    while (!m_childs.empty()) {
        UIElement* child = m_childs[m_childs.size() - 1];
        child->release();
        jDelete(child, k_file, __LINE__, "UIElement::release");
    }
}

bool UIElement::onMouseDown(const UIEventMouse* e) { return dispatch_to_childs(&UIElement::onMouseDown, e); }
bool UIElement::onMouseMove(const UIEventMouse* e) { return dispatch_to_childs(&UIElement::onMouseMove, e); }
bool UIElement::onMouseUp(const UIEventMouse* e) { return dispatch_to_childs(&UIElement::onMouseUp, e); }
bool UIElement::onMouseDClick(const UIEventMouse* e) { return dispatch_to_childs(&UIElement::onMouseDClick, e); }
bool UIElement::onMouseWheel(const UIEventMouse* e) { return dispatch_to_childs(&UIElement::onMouseWheel, e); }
bool UIElement::onKeyPress(const UIEventKey* e) { return dispatch_to_childs(&UIElement::onKeyPress, e); }
bool UIElement::onNonClient(const UIEventMouse* e) { return dispatch_to_childs(&UIElement::onNonClient, e); }

bool UIElement::addChild(UIElement* child, int expand, int position)
{
    if (!child || child == this || child->m_parent) {
        jLog::error("%s:%s", "UIElement::addChild", "child && child != this && !child->m_parent");
        return false;
    }
    int index = position < 0 || position > m_childs.size() ? m_childs.size() : position;
    m_childs.insert(index, child);
    child->m_parent = this;
    child->m_expand = expand;
    layoutChild(child, index);
    if (QWidget* w = nativeWidget(child))
        w->setVisible(!child->m_hidden);
    return true;
}

bool UIElement::removeChild(UIElement* child)
{
    int index = m_childs.find(child);
    if (index < 0)
        return false;
    // Out of the list first: a layout that places every child again (a grid) must not place it.
    m_childs.remove(index);
    unlayoutChild(child);
    child->m_parent = nullptr;
    return true;
}

UIElement* UIElement::getChild(int i) const { return i >= 0 && i < m_childs.size() ? m_childs[i] : nullptr; }

void UIElement::layoutChild(UIElement* child, int position)
{
    QWidget* w = nativeWidget(child);
    QBoxLayout* box = box_of(m_native);
    if (!w || !box) {
        if (w && m_native->content)
            w->setParent(m_native->content);
        return;
    }
    int last = box->count() - 1;
    box->insertWidget(std::min(position, last), w);
    relayoutChild(child);
}

void UIElement::relayoutChild(UIElement* child)
{
    QWidget* w = nativeWidget(child);
    QBoxLayout* box = box_of(m_native);
    if (!w || !box || box->indexOf(w) < 0)
        return;
    bool vertical = is_vertical(box);
    int expand = child->m_expand;
    float weight = vertical ? child->m_height_weight : child->m_width_weight;
    box->setStretchFactor(w, shares_along(expand) ? stretch_of(weight) : 0);
    box->setAlignment(w, fills_across(expand) ? Qt::Alignment() : across_alignment(m_align, vertical));
    if (shares_along(expand)) {
        QSizePolicy policy = w->sizePolicy();
        if (vertical)
            policy.setVerticalPolicy(QSizePolicy::Expanding);
        else
            policy.setHorizontalPolicy(QSizePolicy::Expanding);
        w->setSizePolicy(policy);
    }
    update_trailing_stretch(box);
}

void UIElement::unlayoutChild(UIElement* child)
{
    QWidget* w = nativeWidget(child);
    if (!w)
        return;
    if (QBoxLayout* box = box_of(m_native)) {
        box->removeWidget(w);
        update_trailing_stretch(box);
    }
    w->setParent(nullptr);
}

bool UIElement::isHit(int x, int y) const
{
    const QWidget* w = m_native->widget.data();
    if (!w || !w->isVisible())
        return false;
    QRect area = w->rect();
    QPoint offset(0, 0);
    for (const QWidget* c = w; c->parentWidget() && !c->isWindow(); c = c->parentWidget()) {
        offset += c->pos();
        area &= c->parentWidget()->rect().translated(-offset);
    }
    return area.contains(w->mapFromGlobal(QPoint(x, y)));
}

void UIElement::screenToLocal(int& x, int& y) const
{
    if (const QWidget* w = m_native->widget.data()) {
        QPoint p = w->mapFromGlobal(QPoint(x, y));
        x = p.x();
        y = p.y();
    }
}

void UIElement::localToScreen(int& x, int& y) const
{
    if (const QWidget* w = m_native->widget.data()) {
        QPoint p = w->mapToGlobal(QPoint(x, y));
        x = p.x();
        y = p.y();
    }
}

void UIElement::setFocus()
{
    m_root->setFocusElement(this);
    if (QWidget* w = m_native->widget.data()) {
        if (w->focusPolicy() == Qt::NoFocus)
            w->setFocusPolicy(Qt::ClickFocus);
        w->setFocus(Qt::OtherFocusReason);
    }
}

bool UIElement::hasFocus() const { return m_root->getFocus() == this; }

void UIElement::removeFocus()
{
    if (!hasFocus())
        return;
    m_root->setFocusElement(nullptr);
    // The native focus may sit on a widget inside this element's own (a field in a frame).
    QWidget* w = m_native->widget.data();
    QWidget* focused = QApplication::focusWidget();
    if (w && focused && (focused == w || w->isAncestorOf(focused)))
        focused->clearFocus();
}

void UIElement::setContentAligns(int align)
{
    m_align = align;
    for (int i = 0; i < m_childs.size(); ++i)
        relayoutChild(m_childs[i]);
}

void UIElement::setMinWidth(int w)
{
    if (QWidget* n = m_native->widget.data())
        n->setMinimumWidth(std::max(0, w));
}

void UIElement::setMinHeight(int h)
{
    if (QWidget* n = m_native->widget.data())
        n->setMinimumHeight(std::max(0, h));
}

void UIElement::setMinSize(int w, int h)
{
    setMinWidth(w);
    setMinHeight(h);
}

void UIElement::setFixWidth(int w)
{
    QWidget* n = m_native->widget.data();
    if (!n)
        return;
    if (w < 0) {
        n->setMinimumWidth(0);
        n->setMaximumWidth(QWIDGETSIZE_MAX);
    } else {
        n->setFixedWidth(w);
    }
}

void UIElement::setFixHeight(int h)
{
    QWidget* n = m_native->widget.data();
    if (!n)
        return;
    if (h < 0) {
        n->setMinimumHeight(0);
        n->setMaximumHeight(QWIDGETSIZE_MAX);
    } else {
        n->setFixedHeight(h);
    }
}

void UIElement::setFixSize(int w, int h)
{
    setFixWidth(w);
    setFixHeight(h);
}

void UIElement::setPreferredSize(int w, int h)
{
    m_preferred_width = w;
    m_preferred_height = h;
}

int UIElement::getPreferredWidth() const
{
    const QWidget* n = m_native->widget.data();
    return m_preferred_width > 0 || !n ? m_preferred_width : n->sizeHint().width();
}

int UIElement::getPreferredHeight() const
{
    const QWidget* n = m_native->widget.data();
    return m_preferred_height > 0 || !n ? m_preferred_height : n->sizeHint().height();
}

int UIElement::getWidth() const
{
    const QWidget* n = m_native->widget.data();
    return n ? n->width() : 0;
}

int UIElement::getHeight() const
{
    const QWidget* n = m_native->widget.data();
    return n ? n->height() : 0;
}

void UIElement::setWidthWeight(float w)
{
    m_width_weight = w;
    if (m_parent)
        m_parent->relayoutChild(this);
}

void UIElement::setHeightWeight(float h)
{
    m_height_weight = h;
    if (m_parent)
        m_parent->relayoutChild(this);
}

void UIElement::setHidden(bool hidden)
{
    m_hidden = hidden;
    QWidget* n = m_native->widget.data();
    if (!n)
        return;
    // An element outside any tree is shown by whoever takes it in; showing it now would open a
    // window of its own.
    if (hidden)
        n->hide();
    else if (m_parent)
        n->show();
}

void UIElement::setBackgroundColor(const vec4& color)
{
    m_background = color;
    apply_background();
}

void UIElement::setMaskBackground(bool mask)
{
    m_mask_background = mask;
    apply_background();
}

void UIElement::setTooltip(const char* text)
{
    if (QWidget* n = m_native->widget.data())
        n->setToolTip(QString::fromUtf8(text ? text : ""));
}

void UIElement::apply_background()
{
    QWidget* n = m_native->widget.data();
    if (!n)
        return;
    n->setAutoFillBackground(m_mask_background);
    QPalette palette = n->palette();
    palette.setColor(QPalette::Window, toQColor(m_background.x, m_background.y, m_background.z, m_background.w));
    n->setPalette(palette);
}
