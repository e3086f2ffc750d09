#pragma once

#include "kit/jString.h"
#include "ui/UIDialog.h"

class UIEditLine;
class UITreeBox;

// The frame every picker shares: a search line above a scrolled tree of names, OK and Cancel below,
// 256 by 384 pixels. Typing in the search line narrows the tree to the names that contain the typed
// text, whatever the case. Activating a leaf (double click or Enter) or pressing OK with a leaf
// current chooses it and closes; activating a branch only unfolds it; Cancel closes without a
// choice. A deriving picker fills the tree and writes what an item stands for into the results
// its caller gave.
class PickerPanel : public UIDialog {
public:
    static constexpr int PREFERRED_WIDTH = 256;
    static constexpr int PREFERRED_HEIGHT = 384;

    // Builds the frame with an empty tree; the deriving picker fills it.
    explicit PickerPanel(UIRoot* root);

    // Fills the tree again from what the picker offers, leaving out what the filter hides.
    virtual void refresh() = 0;

    // The tree the user picks from.
    UITreeBox* getTree() const { return m_tree; }
    // The search line; typing into it narrows the tree.
    UIEditLine* getSearchBox() const { return m_search; }
    // The lower-case text of the search line; empty while nothing is typed.
    const jString& getFilter() const { return m_filter; }

protected:
    // Writes what item stands for into the caller's results and raises the chosen flag.
    virtual void choose(int item) = 0;
    // An activated leaf is chosen and closes the picker (also with nothing current); a branch
    // stays open.
    virtual void cb_tree_mouse(const UIEventMouse* e, UIElement* sender);
    // The current item changed; the base does nothing.
    virtual void cb_tree_changed(const UIEventChanged* e, UIElement* sender);

    // Whether a name shows under the filter: always while it is empty, else when the name's
    // lower-case form contains it.
    bool passes_filter(const jString& name) const;
    // Chooses the current item when it is a leaf, then closes.
    void choose_leaf_and_close();

    UITreeBox* m_tree;
    jString m_filter;

private:
    void cb_search_changed(const UIEventChanged* e, UIElement* sender);
    void cb_ok(const UIEventMouse* e, UIElement* sender);
    void cb_cancel(const UIEventMouse* e, UIElement* sender);

    UIEditLine* m_search;
};
