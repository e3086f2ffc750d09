#include "ui/TrackTypeSelectPanel.h"

#include "anim/Track.h"
#include "kit/jLog.h"
#include "kit/jMap.h"
#include "kit/jTString.h"
#include "ui/UITreeBox.h"

TrackTypeSelectPanel::TrackTypeSelectPanel(UIRoot* root, bool* ok, jString* result)
    : PickerPanel(root), m_ok(ok), m_result(result)
{
    refresh();
}

void TrackTypeSelectPanel::refresh()
{
    jVector<jString> names;
    for (const TrackReg* reg : Track::GetAllRegs())
        names.append(reg->getName());
    m_tree->clear();
    // Branches made in this pass, by dotted path, so that names sharing a prefix share its items.
    jMap<jString, int> items;
    for (const jString& name : names) {
        if (!passes_filter(name))
            continue;
        jVector<jString> parts;
        name.splitSelf('.', parts, false);
        jString path;
        for (int i = 0; i < parts.size(); ++i) {
            const jString parent = path;
            path = i == 0 ? parts[i] : path + "." + parts[i];
            if (items.contains(path))
                continue;
            const int item = m_tree->addItem(parts[i].c_str(), -1);
            if (parts.size() > 1)
                items.insert(path, item);
            if (i > 0)
                m_tree->setItemParent(item, *items.lookup(parent));
            m_tree->setItemHidden(item, m_filter.empty());
        }
    }
}

jString TrackTypeSelectPanel::get_full_node_type_name(int item)
{
    if (m_tree->getItemNumChilds(item) > 0) {
        jLog::message("%s: \"%s\" is not leaf item, ignore", "TrackTypeSelectPanel::get_full_node_type_name",
                      m_tree->getItemText(item).c_str());
        return jString::null();
    }
    jTString<256> name(m_tree->getItemText(item));
    for (int up = m_tree->getItemParent(item); up != -1; up = m_tree->getItemParent(up)) {
        name.prepend(".");
        name.prepend(m_tree->getItemText(up));
    }
    return name;
}

void TrackTypeSelectPanel::choose(int item)
{
    if (m_ok)
        *m_ok = true;
    if (m_result)
        *m_result = get_full_node_type_name(item);
}
