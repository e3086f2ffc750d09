#include "data/FParameterSingle.h"

#include <algorithm>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "anim/TrackParameter.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FTrack.h"
#include "data/SortKeyByTime.h"
#include "editor/Locale.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "msg/MsgMngr.h"
#include "ui/UITrackCurve.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRow.h"
#include "ui/UITrackRowPanel.h"

namespace {

constexpr const char* FILE_TAG = "src/data/FParameterSingle";
constexpr float NO_TIME = -1e9f;
// The row columns: "E" enables the parameter's animation, "T" shows its curve.
constexpr int COLUMN_ENABLED = 0;
constexpr int COLUMN_CURVE = 1;

jVector<UITrackRow::RowData> rowColumns()
{
    jVector<UITrackRow::RowData> columns;
    columns.append({tr("E"), false});
    columns.append({tr("T"), false});
    return columns;
}

} // namespace

FParameterSingle::~FParameterSingle() = default;

bool FParameterSingle::isCurveShown() const
{
    UITrackCurvePanel* panel = UITrackCurvePanel::get();
    return m_curve && panel && panel->isShown(m_curve);
}

void FParameterSingle::setRowText(const jString& text)
{
    if (m_row)
        m_row->setName(text);
}

void FParameterSingle::setRowSubText(const jString& text)
{
    if (m_row)
        m_row->setText(text);
}

bool FParameterSingle::build_views(const jString& name, bool helloWorld, bool withCurve)
{
    jString text;
    if (!name.empty() && !m_data->getTypeName().empty() && !display_text(m_data, text)) {
        jLog::error("%s:track type \"%s\" not support", tags().create, m_data->getTypeName().c_str());
        return false;
    }
    if (name.empty() || m_data->getTypeName().empty())
        text = name; // a component has no type of its own: its row shows its name
    const int palette = AppData::get()->getNextRowColor();
    m_row = jNew<UITrackRow>(FILE_TAG, __LINE__, tags().create, rowColumns());
    m_row->setData(this);
    m_row->setName(helloWorld && text.empty() ? jString("Hello") : text);
    if (helloWorld && text.empty())
        m_row->setText("World");
    m_row->rowChanged().append(bind(&FParameterSingle::on_row_changed, this));
    m_line = make_line();
    m_line->setData(this);
    if (withCurve) {
        m_curve = jNew<UITrackCurve>(FILE_TAG, __LINE__, tags().create);
        m_curve->setData(this);
        m_curve->setMinValue(-1e9f);
        m_curve->setMaxValue(1e9f);
    }
    setColor(AppData::RowColor(palette));
    if (UITrackRowPanel* rows = UITrackRowPanel::get())
        rows->addRow(m_row);
    if (UITrackLinePanel* lines = UITrackLinePanel::get())
        lines->addLine(m_line);
    showSwitches();
    return true;
}

TrackParameter* FParameterSingle::switch_target() const
{
    TrackParameter* shared = getParent() ? getParent()->getSharedSwitches() : nullptr;
    return shared ? shared : m_data;
}

void FParameterSingle::showSwitches()
{
    const TrackParameter* target = switch_target();
    if (m_row) {
        m_row->setState(COLUMN_ENABLED, target->isEnabled());
        m_row->setState(COLUMN_CURVE, target->isCurveShown());
    }
    if (m_curve && target->isCurveShown())
        create_curve_keys();
    UITrackCurvePanel* curves = UITrackCurvePanel::get();
    if (!curves || !m_curve)
        return;
    if (target->isCurveShown())
        curves->showCurve(m_curve);
    else
        curves->hideCurve(m_curve);
}

// The switches belong to the switch target, so every row that shows them follows: a nested
// track's "Name" and "Time" rows both show the nested track's.
void FParameterSingle::on_row_changed(UITrackRow*&& row)
{
    TrackParameter* target = switch_target();
    touch();
    target->setEnabled(row->getState(COLUMN_ENABLED));
    target->setCurveShown(row->getState(COLUMN_CURVE));
    jVector<UITrackRow*> rows;
    jVector<UITrackLine*> lines;
    jVector<UITrackCurve*> curves;
    (target == m_data ? static_cast<FParameter*>(this) : getParent())->collectUI(rows, lines, curves);
    for (UITrackRow* shown : rows)
        static_cast<FParameterSingle*>(shown->getData())->showSwitches();
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_CHANGED);
}

void FParameterSingle::retitle()
{
    jString text;
    if (!getParent() && !m_data->getName().empty() && display_text(m_data, text))
        setRowText(text);
}

void FParameterSingle::setColor(const vec4& color)
{
    if (m_row)
        m_row->setColor(color);
    if (m_line)
        m_line->setColor(color);
    if (m_curve)
        m_curve->setColor(color);
}

// The marks of the line and the points of the curve are added, removed and (stably) sorted with the
// keys, so they stand in the keys' order: when the keys are in time order already (most edits keep
// it, and every edit sorts every parameter), so are they, and only the keys' times are read.
void FParameterSingle::sortKeys()
{
    read_times();
    if (std::is_sorted(m_key_times.begin(), m_key_times.end())) {
        markDirty();
        return;
    }
    std::stable_sort(m_keys.begin(), m_keys.end(), SortKeyByTime<FKey>::Compare);
    read_times();
    if (m_line)
        m_line->sortKeys();
    if (m_curve)
        m_curve->sortKeys();
}

void FParameterSingle::read_times()
{
    m_key_times.clear();
    m_key_times.reserve(m_keys.size());
    for (const FKey* key : m_keys)
        m_key_times.append(key->getTime());
}

void FParameterSingle::markDirty()
{
    if (m_line)
        m_line->setDirty(true);
    if (m_curve)
        m_curve->setDirty(true);
}

void FParameterSingle::collectUI(jVector<UITrackRow*>& rows, jVector<UITrackLine*>& lines,
                                 jVector<UITrackCurve*>& curves)
{
    if (m_row)
        rows.append(m_row);
    if (m_line)
        lines.append(m_line);
    if (m_curve)
        curves.append(m_curve);
}

void FParameterSingle::appendKey(FKey* key)
{
    m_keys.append(key);
}

bool FParameterSingle::removeKey(FKey* key)
{
    m_key_set.erase(key);
    return m_keys.removeValue(key);
}

void FParameterSingle::markKeys(const jVector<FKey*>& keys)
{
    for (FKey* key : keys)
        m_key_set.insert(key);
}

float FParameterSingle::getKeyTimeBefore(float t, bool& found) const
{
    found = false;
    const int count = m_key_times.size();
    int i = 0;
    while (i < count && t >= m_key_times[i])
        ++i;
    if (i == count)
        return NO_TIME;
    const int j = std::max(i - 1, 0);
    if (t == m_key_times[j])
        return NO_TIME;
    found = true;
    return std::max(m_key_times[j], NO_TIME);
}

void FParameterSingle::create_ui_for_key(FKey* key)
{
    AppData::get()->getLoadProgress().keyMade();
    key->releaseUI();
    UITrackLineKey* mark = make_line_key(key);
    m_line->addKey(mark);
    key->setLineKey(mark);
    if (m_curve && switch_target()->isCurveShown())
        create_curve_key(key);
}

void FParameterSingle::reserve_keys(int count)
{
    m_keys.reserve(count);
    if (m_line)
        m_line->getKeys().reserve(count);
}

void FParameterSingle::create_curve_key(FKey* key)
{
    auto* point = jNew<UITrackCurveKey>(FILE_TAG, __LINE__, tags().createKey, key);
    m_curve->addKey(point);
    key->setCurveKey(point);
}

void FParameterSingle::create_curve_keys()
{
    const UITrackLinePanel* lines = UITrackLinePanel::get();
    UITrackCurvePanel* curves = UITrackCurvePanel::get();
    m_curve->getKeys().reserve(m_keys.size());
    jVector<UITrackCurveKey*> selected;
    bool made = false;
    for (FKey* key : m_keys) {
        if (key->getCurveKey())
            continue;
        create_curve_key(key);
        made = true;
        if (lines && curves && lines->getSelectedKeys().contains(key->getLineKey()))
            selected.append(key->getCurveKey());
    }
    if (made)
        m_curve->sortKeys();
    if (selected.empty())
        return;
    for (UITrackCurveKey* point : curves->getSelectedKeys())
        selected.append(point);
    curves->setSelectedKeys(selected);
}

void FParameterSingle::free_keys(const char* tag)
{
    if (m_line)
        m_line->removeAllKeys();
    if (m_curve)
        m_curve->removeAllKeys();
    for (FKey* key : m_keys) {
        key->setParameter(nullptr);
        key->releaseUI();
        jDelete(key, FILE_TAG, __LINE__, tag);
    }
    m_keys.release();
    m_key_times.release();
    m_key_set.clear();
}

void FParameterSingle::release()
{
    FTrack* owner = getOwner();
    if (owner && isDetachOnRelease() && m_data) {
        owner->getEngineTrack()->removeParameter(m_data);
        free_engine_parameter(m_data, tags().release);
        m_data = nullptr;
    }
    setParent(nullptr);
    free_keys("FParameterSingle::release");
    if (m_row) {
        m_row->clearRender();
        jDelete(m_row, FILE_TAG, __LINE__, tags().release);
    }
    if (m_line) {
        m_line->clearRender();
        jDelete(m_line, FILE_TAG, __LINE__, tags().release);
    }
    if (m_curve) {
        m_curve->clearRender();
        jDelete(m_curve, FILE_TAG, __LINE__, tags().release);
    }
    m_row = nullptr;
    m_line = nullptr;
    m_curve = nullptr;
    if (owner) {
        owner->removeSingleParameter(this);
        owner->getSelectedParameters().erase(this); // the make-key command walks the selection
    }
    setOwner(nullptr);
}

void FParameterSingle::onDelete()
{
    FTrack* owner = getOwner();
    if (!m_data || getParent())
        return; // a component's engine parameter belongs to its compound
    if (owner && owner->getEngineTrack())
        owner->getEngineTrack()->removeParameter(m_data);
    free_engine_parameter(m_data, tags().onDelete);
    m_data = nullptr;
}
