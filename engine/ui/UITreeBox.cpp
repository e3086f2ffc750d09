#include "ui/UITreeBox.h"

#include <QCursor>
#include <QHeaderView>
#include <QTreeWidget>
#include <vector>

#include "UINative.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

// The items by id; an item's id, tag, data and folding flag ride in its data roles.
struct UITreeBoxItems {
    std::vector<QTreeWidgetItem*> items;
};

namespace {

const char* const k_file = "engine/ui/UITreeBox";
constexpr int k_id_role = Qt::UserRole;
constexpr int k_tag_role = Qt::UserRole + 1;
constexpr int k_data_role = Qt::UserRole + 2;
constexpr int k_hidden_role = Qt::UserRole + 3;

QTreeWidget* tree_of(const UIElement* e) { return static_cast<QTreeWidget*>(nativeWidget(e)); }

int id_of(const QTreeWidgetItem* item) { return item ? item->data(0, k_id_role).toInt() : -1; }

bool is_within(const QTreeWidgetItem* item, const QTreeWidgetItem* branch)
{
    for (; item; item = item->parent()) {
        if (item == branch)
            return true;
    }
    return false;
}

// Folding is a view state that Qt drops when an item moves, so it is re-applied from the flags.
void apply_folding(QTreeWidgetItem* item)
{
    item->setExpanded(!item->data(0, k_hidden_role).toBool());
    for (int i = 0; i < item->childCount(); ++i)
        apply_folding(item->child(i));
}

} // namespace

UITreeBox::UITreeBox(UIRoot* root)
    : UIElement(root, makeNative(new QTreeWidget())),
      m_items(jNew<UITreeBoxItems>(k_file, __LINE__, "UITreeBox::UITreeBox"))
{
    QTreeWidget* tree = tree_of(this);
    tree->setHeaderHidden(true);
    tree->setColumnCount(1);
    QObject::connect(tree, &QTreeWidget::currentItemChanged, tree, [this](QTreeWidgetItem*, QTreeWidgetItem*) {
        UIEventChanged e;
        sigChanged(&e, this);
    });
    QObject::connect(tree, &QTreeWidget::itemActivated, tree, [this](QTreeWidgetItem*, int) {
        UIEventMouse e;
        e.x = QCursor::pos().x();
        e.y = QCursor::pos().y();
        e.button = UI_MOUSE_LEFT;
        sigMouse(&e, this);
    });
}

UITreeBox::~UITreeBox() { jDelete(m_items, k_file, __LINE__, "UITreeBox::~UITreeBox"); }

bool UITreeBox::valid(int item, const char* op) const
{
    if (item >= 0 && item < static_cast<int>(m_items->items.size()))
        return true;
    jLog::error("%s:%s", op, "item");
    return false;
}

int UITreeBox::addItem(const char* text, int parent)
{
    if (parent != -1 && !valid(parent, "UITreeBox::addItem"))
        return -1;
    auto* item = new QTreeWidgetItem(QStringList(QString::fromUtf8(text ? text : "")));
    int id = static_cast<int>(m_items->items.size());
    item->setData(0, k_id_role, id);
    item->setData(0, k_tag_role, 0);
    m_items->items.push_back(item);
    if (parent == -1)
        tree_of(this)->addTopLevelItem(item);
    else
        m_items->items[parent]->addChild(item);
    apply_folding(item);
    return id;
}

bool UITreeBox::setItemParent(int item, int parent)
{
    if (!valid(item, "UITreeBox::setItemParent") || (parent != -1 && !valid(parent, "UITreeBox::setItemParent")))
        return false;
    QTreeWidgetItem* moved = m_items->items[item];
    QTreeWidgetItem* target = parent == -1 ? nullptr : m_items->items[parent];
    if (target && is_within(target, moved)) {
        jLog::error("%s:%s", "UITreeBox::setItemParent", "parent is not within item");
        return false;
    }
    QTreeWidget* tree = tree_of(this);
    if (QTreeWidgetItem* old = moved->parent())
        old->removeChild(moved);
    else
        tree->takeTopLevelItem(tree->indexOfTopLevelItem(moved));
    if (target)
        target->addChild(moved);
    else
        tree->addTopLevelItem(moved);
    apply_folding(moved);
    return true;
}

bool UITreeBox::setItemHidden(int item, bool hidden)
{
    if (!valid(item, "UITreeBox::setItemHidden"))
        return false;
    m_items->items[item]->setData(0, k_hidden_role, hidden);
    m_items->items[item]->setExpanded(!hidden);
    return true;
}

bool UITreeBox::isItemHidden(int item) const
{
    return valid(item, "UITreeBox::isItemHidden") && m_items->items[item]->data(0, k_hidden_role).toBool();
}

bool UITreeBox::isItemShown(int item) const
{
    if (!valid(item, "UITreeBox::isItemShown"))
        return false;
    for (QTreeWidgetItem* up = m_items->items[item]->parent(); up; up = up->parent()) {
        if (!up->isExpanded())
            return false;
    }
    return true;
}

bool UITreeBox::setItemText(int item, const char* text)
{
    if (!valid(item, "UITreeBox::setItemText"))
        return false;
    m_items->items[item]->setText(0, QString::fromUtf8(text ? text : ""));
    return true;
}

jString UITreeBox::getItemText(int item) const
{
    if (!valid(item, "UITreeBox::getItemText"))
        return jString();
    return jString(m_items->items[item]->text(0).toUtf8().constData());
}

bool UITreeBox::setItemTag(int item, int tag)
{
    if (!valid(item, "UITreeBox::setItemTag"))
        return false;
    m_items->items[item]->setData(0, k_tag_role, tag);
    return true;
}

int UITreeBox::getItemTag(int item) const
{
    return valid(item, "UITreeBox::getItemTag") ? m_items->items[item]->data(0, k_tag_role).toInt() : 0;
}

bool UITreeBox::setItemData(int item, void* data)
{
    if (!valid(item, "UITreeBox::setItemData"))
        return false;
    m_items->items[item]->setData(0, k_data_role, QVariant::fromValue(reinterpret_cast<quintptr>(data)));
    return true;
}

void* UITreeBox::getItemData(int item) const
{
    if (!valid(item, "UITreeBox::getItemData"))
        return nullptr;
    return reinterpret_cast<void*>(m_items->items[item]->data(0, k_data_role).value<quintptr>());
}

bool UITreeBox::setItemColor(int item, const vec4& color)
{
    if (!valid(item, "UITreeBox::setItemColor"))
        return false;
    m_items->items[item]->setForeground(0, QBrush(toQColor(color.x, color.y, color.z, color.w)));
    return true;
}

int UITreeBox::getCurrentItem() const { return id_of(tree_of(this)->currentItem()); }

bool UITreeBox::setCurrentItem(int item)
{
    if (item != -1 && !valid(item, "UITreeBox::setCurrentItem"))
        return false;
    tree_of(this)->setCurrentItem(item == -1 ? nullptr : m_items->items[item]);
    return true;
}

int UITreeBox::getItemParent(int item) const
{
    return valid(item, "UITreeBox::getItemParent") ? id_of(m_items->items[item]->parent()) : -1;
}

int UITreeBox::getItemNumChilds(int item) const
{
    return valid(item, "UITreeBox::getItemNumChilds") ? m_items->items[item]->childCount() : 0;
}

int UITreeBox::getItemChild(int item, int i) const
{
    if (!valid(item, "UITreeBox::getItemChild"))
        return -1;
    return id_of(m_items->items[item]->child(i));
}

int UITreeBox::getNumItems() const { return static_cast<int>(m_items->items.size()); }

namespace {

// The first child of at (null: the top level) whose text is text, or null.
QTreeWidgetItem* child_named(QTreeWidget* tree, QTreeWidgetItem* at, const QString& text)
{
    int count = at ? at->childCount() : tree->topLevelItemCount();
    for (int i = 0; i < count; ++i) {
        QTreeWidgetItem* c = at ? at->child(i) : tree->topLevelItem(i);
        if (c->text(0) == text)
            return c;
    }
    return nullptr;
}

} // namespace

int UITreeBox::findItem(const char* dottedPath) const
{
    QString path = QString::fromUtf8(dottedPath ? dottedPath : "");
    QTreeWidget* tree = tree_of(this);
    QTreeWidgetItem* at = nullptr;
    for (const QString& part : path.split('.')) {
        at = child_named(tree, at, part);
        if (!at)
            return id_of(child_named(tree, nullptr, path));
    }
    return id_of(at);
}

bool UITreeBox::activateItem(int item)
{
    if (!valid(item, "UITreeBox::activateItem"))
        return false;
    QTreeWidget* tree = tree_of(this);
    tree->setCurrentItem(m_items->items[item]);
    emit tree->itemActivated(m_items->items[item], 0);
    return true;
}

void UITreeBox::clear()
{
    tree_of(this)->clear();
    m_items->items.clear();
}
