#include "editor/ToolButton.h"

#include <QFileInfo>
#include <QIcon>
#include <QToolButton>

#include <cctype>
#include <string>

#include "../ui/UINative.h"
#include "editor/DataDir.h"
#include "editor/Locale.h"
#include "kit/jLog.h"

namespace {

QToolButton* button_of(const UIElement* element)
{
    return qobject_cast<QToolButton*>(nativeWidget(element));
}

// Returns the icon of a PNG file together with its 16-pixel drawing ("key@16.png" beside
// "key.png"), which is sharper at toolbar size than a scaled-down copy; null when the file is missing.
QIcon load_icon(const std::string& file)
{
    QIcon icon;
    if (!QFileInfo::exists(QString::fromStdString(file)))
        return icon;
    icon.addFile(QString::fromStdString(file));
    const std::string png = ".png";
    if (file.size() > png.size() && file.compare(file.size() - png.size(), png.size(), png) == 0) {
        QString small = QString::fromStdString(file.substr(0, file.size() - png.size()) + "@16.png");
        if (QFileInfo::exists(small))
            icon.addFile(small);
    }
    return icon;
}

int normalised_key(int key)
{
    return key >= 'a' && key <= 'z' ? std::toupper(key) : key;
}

jString shortcut_text(const ToolShortcut& s)
{
    jString text;
    if (s.ctrl)
        text += "Ctrl+";
    if (s.shift)
        text += "Shift+";
    if (s.alt)
        text += "Alt+";
    int key = normalised_key(s.key);
    if (key > 32 && key < 127)
        text += static_cast<char>(key);
    else
        text += std::to_string(key).c_str();
    return text;
}

} // namespace

ToolButton::ToolButton(UIRoot* root, const char* icon, const char* text, int iconSize)
    : UIElement(root, makeNative(new QToolButton())), m_text(text), m_icon_size(iconSize)
{
    QToolButton* b = button_of(this);
    b->setAutoRaise(true);
    b->setFocusPolicy(Qt::NoFocus);
    QObject::connect(b, &QToolButton::clicked, b, [this](bool checked) { on_native_click(checked); });
    setIconSize(iconSize);
    if (icon && *icon)
        setIcon(icon);
    else
        setText(text);
}

ToolButton::~ToolButton() = default;

bool ToolButton::setIcon(const char* path)
{
    m_icon = path;
    QIcon icon = load_icon(DataDir::resolve(path));
    if (icon.isNull())
        jLog::error("%s:cannot read icon \"%s\"", "ToolButton::setIcon", DataDir::resolve(path).c_str());
    if (QToolButton* b = button_of(this)) {
        // Without its picture the button still names its command.
        b->setIcon(icon);
        b->setText(QString::fromUtf8(icon.isNull() ? m_icon.baseName().c_str() : m_text.c_str()));
        b->setToolButtonStyle(!icon.isNull() && m_text.empty() ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextOnly);
    }
    if (m_tip.empty()) {
        const char* tip = Locale::get().find((jString("tip_") + m_icon.baseName()).c_str());
        setTip(tip ? tip : m_icon.baseName().c_str());
    }
    return !icon.isNull();
}

void ToolButton::setText(const char* text)
{
    m_text = text;
    if (QToolButton* b = button_of(this)) {
        b->setText(QString::fromUtf8(m_text.c_str()));
        if (m_icon.empty())
            b->setToolButtonStyle(Qt::ToolButtonTextOnly);
    }
}

void ToolButton::setTip(const char* text)
{
    m_tip = text;
    setTooltip(getTooltip().c_str());
}

void ToolButton::setIconSize(int size)
{
    m_icon_size = size;
    if (QToolButton* b = button_of(this)) {
        b->setIconSize(QSize(size, size));
        QFont font = b->font();
        font.setPixelSize(size * 3 / 4 > 0 ? size * 3 / 4 : 1);
        b->setFont(font);
    }
}

void ToolButton::setShortcut(int key, bool ctrl, bool shift, bool alt)
{
    m_shortcut = ToolShortcut{key, ctrl, shift, alt};
    setTooltip(getTooltip().c_str());
}

bool ToolButton::matchesShortcut(const UIEventKey* e) const
{
    if (!e || !m_shortcut.isSet())
        return false;
    return normalised_key(e->key) == normalised_key(m_shortcut.key) && e->isCtrl() == m_shortcut.ctrl &&
           e->isShift() == m_shortcut.shift && e->isAlt() == m_shortcut.alt;
}

void ToolButton::setCheckEnable(bool enable)
{
    m_check_enable = enable;
    if (!enable)
        m_checked = false;
    refreshLook();
}

void ToolButton::setChecked(bool checked)
{
    m_checked = m_check_enable && checked;
    refreshLook();
}

void ToolButton::setEnabled(bool enabled)
{
    m_enabled = enabled;
    refreshLook();
}

bool ToolButton::click()
{
    if (!m_enabled)
        return false;
    on_native_click(!m_checked);
    refreshLook();
    return true;
}

void ToolButton::refreshLook()
{
    QToolButton* b = button_of(this);
    if (!b)
        return;
    b->setCheckable(m_check_enable);
    b->setChecked(m_checked);
    b->setEnabled(m_enabled);
    setTooltip(getTooltip().c_str());
}

void ToolButton::on_native_click(bool checked)
{
    if (m_check_enable)
        m_checked = checked;
    UIEventMouse e;
    e.button = UI_MOUSE_LEFT;
    localToScreen(e.x, e.y);
    sigClick(&e, this);
}

jString ToolButton::getTooltip() const
{
    if (!m_shortcut.isSet())
        return m_tip;
    return m_tip.empty() ? shortcut_text(m_shortcut) : m_tip + " (" + shortcut_text(m_shortcut) + ")";
}
