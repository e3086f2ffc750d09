#pragma once

#include "kit/jString.h"
#include "ui/UIElement.h"

struct UITreeBoxItems;

// A tree of text items, each known by the id addItem returned (ids stay valid until clear). An
// item carries a tag (an int), a data pointer, a colour and a folding flag.
//
// Operations on an id that names no item log "UITreeBox::<op>:item" and return false (or -1,
// 0, null for the queries).
class UITreeBox : public UIElement {
public:
    explicit UITreeBox(UIRoot* root);
    ~UITreeBox() override;

    // Adds an item at the end of parent's children (-1: at the top level); returns its id, or -1
    // when parent names no item.
    int addItem(const char* text, int parent = -1);
    // Moves an item under parent (-1: to the top level), after parent's other children. Refuses
    // (false) to move an item under itself or under one of its descendants.
    bool setItemParent(int item, int parent);
    // The folding flag: an item flagged hidden shows with its branch collapsed, an item not
    // flagged shows its children.
    bool setItemHidden(int item, bool hidden);
    bool isItemHidden(int item) const;
    // True when the item can be seen: every item above it shows its children.
    bool isItemShown(int item) const;
    bool setItemText(int item, const char* text);
    jString getItemText(int item) const;
    bool setItemTag(int item, int tag);
    int getItemTag(int item) const;
    bool setItemData(int item, void* data);
    void* getItemData(int item) const;
    // Sets the item's text colour.
    bool setItemColor(int item, const vec4& color);

    // The current (highlighted) item, or -1.
    int getCurrentItem() const;
    // Makes an item current (-1 clears); raises sigChanged when the current item changes.
    bool setCurrentItem(int item);
    // The item's parent, or -1 for a top-level item (and for a bad id).
    int getItemParent(int item) const;
    int getItemNumChilds(int item) const;
    // Returns child i of an item, or -1.
    int getItemChild(int item, int i) const;
    // The number of items in the tree.
    int getNumItems() const;
    // Returns the item at a dotted path of texts from the top level ("Node.position"); when no
    // item lies there, the top-level item whose whole text is the path ("Lamp.001"); else -1.
    int findItem(const char* dottedPath) const;
    // Makes an item current and activates it as a double click would (raises sigMouse).
    bool activateItem(int item);
    // Removes every item.
    void clear();

    // Raised when the user activates an item (double click or Enter).
    UISlot<UIEventMouse> sigMouse;
    // Raised when the current item changes.
    UISlot<UIEventChanged> sigChanged;

private:
    bool valid(int item, const char* op) const;

    UITreeBoxItems* m_items;
};
