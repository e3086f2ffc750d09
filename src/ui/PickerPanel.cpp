#include "ui/PickerPanel.h"

#include "editor/Locale.h"
#include "kit/jAllocator.h"
#include "ui/UIButton.h"
#include "ui/UIEditLine.h"
#include "ui/UIHLayout.h"
#include "ui/UILabel.h"
#include "ui/UIScrollBox.h"
#include "ui/UITreeBox.h"

namespace {

constexpr const char* FILE_TAG = "src/ui/PickerPanel";
constexpr int SEARCH_ROW_HEIGHT = 32;

} // namespace

PickerPanel::PickerPanel(UIRoot* root)
    : UIDialog(root),
      m_tree(jNew<UITreeBox>(FILE_TAG, __LINE__, "PickerPanel::PickerPanel", root)),
      m_search(jNew<UIEditLine>(FILE_TAG, __LINE__, "PickerPanel::PickerPanel", root, ""))
{
    setPreferredSize(PREFERRED_WIDTH, PREFERRED_HEIGHT);
    auto* searchRow = jNew<UIHLayout>(FILE_TAG, __LINE__, "PickerPanel::PickerPanel", root, 4, 0);
    searchRow->setFixHeight(SEARCH_ROW_HEIGHT);
    searchRow->setContentAligns(UI_ALIGN_CENTER);
    addChild(searchRow, UI_EXPAND_ACROSS);
    searchRow->addChild(jNew<UILabel>(FILE_TAG, __LINE__, "PickerPanel::PickerPanel", root, tr("find")));
    searchRow->addChild(m_search, UI_EXPAND_BOTH);
    auto* scroll = jNew<UIScrollBox>(FILE_TAG, __LINE__, "PickerPanel::PickerPanel", root);
    addChild(scroll, UI_EXPAND_BOTH);
    scroll->addChild(m_tree, UI_EXPAND_BOTH);
    getOkButton()->setText(tr("OK"));
    getCancelButton()->setText(tr("Cancel"));

    m_search->sigChanged = bind(&PickerPanel::cb_search_changed, this);
    m_tree->sigChanged = bind(&PickerPanel::cb_tree_changed, this);
    m_tree->sigMouse = bind(&PickerPanel::cb_tree_mouse, this);
    getOkButton()->sigClick = bind(&PickerPanel::cb_ok, this);
    getCancelButton()->sigClick = bind(&PickerPanel::cb_cancel, this);
}

bool PickerPanel::passes_filter(const jString& name) const
{
    return m_filter.empty() || name.lower().contain(m_filter);
}

void PickerPanel::choose_leaf_and_close()
{
    const int item = m_tree->getCurrentItem();
    if (item != -1 && m_tree->getItemNumChilds(item) == 0)
        choose(item);
    closeDialog();
}

void PickerPanel::cb_tree_mouse(const UIEventMouse*, UIElement*)
{
    const int item = m_tree->getCurrentItem();
    if (item != -1 && m_tree->getItemNumChilds(item) > 0)
        return; // a branch only unfolds, the picker stays open
    choose_leaf_and_close();
}

void PickerPanel::cb_tree_changed(const UIEventChanged*, UIElement*) {}

void PickerPanel::cb_search_changed(const UIEventChanged*, UIElement*)
{
    m_filter = m_search->getText().lower();
    refresh();
}

void PickerPanel::cb_ok(const UIEventMouse*, UIElement*)
{
    choose_leaf_and_close();
}

void PickerPanel::cb_cancel(const UIEventMouse*, UIElement*)
{
    closeDialog();
}
