// The widget tree of the Track Editor window: a top row, two columns in a splitter (the row tree on
// the left; the file toolbar, a time bar and the key lines on the right) and a bottom row with the
// range fields, a second time bar and the playback controls. The two columns start their rows at
// the same height, so each key line sits beside its row.
#include "ui/TrackEditor.h"

#include "TrackEditorMsg.h"
#include "data/AppData.h"
#include "editor/Locale.h"
#include "editor/ToolBar.h"
#include "editor/ToolButton.h"
#include "ui/UIFactory.h"
#include "ui/UIHLayout.h"
#include "ui/UILabel.h"
#include "ui/UISpliter.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRowPanel.h"
#include "ui/UIVLayout.h"

namespace {

constexpr int TOOLBAR_FONT_SIZE = 16;
// Wide enough for the longest text of a float time, such as "-12.345678", without scrolling.
constexpr int FIELD_WIDTH = 92;
// The height of the bands above the row tree and the key lines (the toolbar and the time bar).
constexpr int HEADER_HEIGHT = 72;
constexpr int BOTTOM_TIMEBAR_HEIGHT = 32;
constexpr float NEW_TRACK_LENGTH = 10.0f;
constexpr const char* GUI = "data/core/editor/gui/";

jString icon(const char* name)
{
    return jString(GUI) + name + ".png";
}

template <class T>
T* make(const char* tag, UIRoot* root)
{
    return jNew<T>("src/ui/TrackEditor", __LINE__, tag, root);
}

// Adds a label and a number field bound to the data hub; the field posts message after an edit.
template <class S, class G>
UIFloat* addHubField(UIElement* row, const char* key, S setter, G getter, int message)
{
    row->addChild(jNew<UILabel>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_bottom", row->getRoot(), tr(key)),
                  UI_EXPAND_NONE, -1);
    auto* field = jNew<UIFloat>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_bottom", AppData::get(), setter,
                                getter, row, message, "");
    field->getEditor()->setFixWidth(FIELD_WIDTH);
    return field;
}

} // namespace

void TrackEditor::init_layout()
{
    UIRoot* root = getRoot();
    m_top = make<UIHLayout>("TrackEditor::init_layout", root);
    m_top->setMaskBackground(false);
    addChild(m_top, UI_EXPAND_ACROSS, -1);

    m_left = make<UIVLayout>("TrackEditor::init_layout", root);
    m_left->setContentAligns(UI_ALIGN_CENTER);
    m_left->setMinWidth(156);
    m_right = make<UIVLayout>("TrackEditor::init_layout", root);
    m_right->setContentAligns(UI_ALIGN_CENTER);
    m_right->setMinWidth(512);
    m_right->setWidthWeight(4.0f);

    m_columns = jNew<UISpliter>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_layout", root,
                                UI_SPLITER_HORIZONTAL);
    addChild(m_columns, UI_EXPAND_BOTH, -1);
    m_columns->addChild(m_left, UI_EXPAND_BOTH, -1);
    m_columns->addChild(m_right, UI_EXPAND_BOTH, -1);

    m_bottom = make<UIHLayout>("TrackEditor::init_layout", root);
    m_bottom->setContentAligns(UI_ALIGN_CENTER);
    addChild(m_bottom, UI_EXPAND_ACROSS, -1);
}

UITimeBar* TrackEditor::make_timebar(const char* tag)
{
    auto* bar = jNew<UITimeBar>("src/ui/TrackEditor", __LINE__, tag, getRoot(), 0.0f, NEW_TRACK_LENGTH);
    bar->timeChanged().append(bind(&TrackEditor::on_timebar_cur_time_changed, this));
    bar->rangeChanged().append(bind(&TrackEditor::on_timebar_range_changed, this));
    return bar;
}

void TrackEditor::init_top_left()
{
    auto* header = make<UIVLayout>("TrackEditor::init_top_left", getRoot());
    header->setFixHeight(HEADER_HEIGHT);
    m_left->addChild(header, UI_EXPAND_ACROSS, -1);
    jVector<UITrackRow::RowData> columns;
    columns.append({tr("E"), false});
    columns.append({tr("T"), false});
    m_rows = jNew<UITrackRowPanel>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_left", getRoot(), columns);
    m_left->addChild(m_rows, UI_EXPAND_BOTH, -1);
}

void TrackEditor::init_top_right()
{
    auto* header = make<UIVLayout>("TrackEditor::init_top_right", getRoot());
    header->setFixHeight(HEADER_HEIGHT);
    m_right->addChild(header, UI_EXPAND_ACROSS, -1);
    m_file_bar = jNew<ToolBar>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_right", getRoot(),
                               TOOLBAR_FONT_SIZE);
    m_file_bar->addTextButton(tr("load"), bind(&TrackEditor::cb_load_track, this));
    ToolButton* save = m_file_bar->addTextButton(tr("save"), bind(&TrackEditor::cb_save_track, this));
    save->setShortcut('S', true, false, false);
    m_file_bar->addTextButton(tr("clear"), bind(&TrackEditor::cb_clear_track, this));
    header->addChild(m_file_bar, UI_EXPAND_ACROSS, -1);

    m_curves = jNew<UITrackCurvePanel>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_right");
    m_timebar_top = make_timebar("TrackEditor::init_top_right");
    header->addChild(m_timebar_top, UI_EXPAND_BOTH, -1);
    m_lines = jNew<UITrackLinePanel>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_right", getRoot());
    m_right->addChild(m_lines, UI_EXPAND_BOTH, -1);
}

void TrackEditor::init_bottom()
{
    m_settings_bar = jNew<ToolBar>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_bottom", getRoot(),
                                   TOOLBAR_FONT_SIZE);
    m_settings_bar->addButton(icon("setting").c_str(), bind(&TrackEditor::cb_track_settings, this));
    m_bottom->addChild(m_settings_bar, UI_EXPAND_NONE, -1);

    m_fields.append(addHubField(m_bottom, "begin", &AppData::setBeginTime, &AppData::getBeginTime, TRACK_MSG_RANGE_CHANGED));
    m_fields.append(addHubField(m_bottom, "end", &AppData::setEndTime, &AppData::getEndTime, TRACK_MSG_RANGE_CHANGED));
    m_fields.append(addHubField(m_bottom, "time", &AppData::setTime, &AppData::getTime, TRACK_MSG_TIME_CHANGED));

    m_timebar_bottom = make_timebar("TrackEditor::init_bottom");
    m_timebar_bottom->setMinHeight(BOTTOM_TIMEBAR_HEIGHT);
    m_bottom->addChild(m_timebar_bottom, UI_EXPAND_BOTH, -1);

    m_play_bar = jNew<ToolBar>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_bottom", getRoot(),
                               TOOLBAR_FONT_SIZE);
    m_play_bar->addButton(icon("time_prev").c_str(), bind(&TrackEditor::cb_begin, this));
    m_btn_play = m_play_bar->addButton(icon("time_play").c_str(), bind(&TrackEditor::cb_play, this));
    m_btn_play->setCheckEnable(true);
    m_play_bar->addButton(icon("time_next").c_str(), bind(&TrackEditor::cb_end, this));
    m_btn_loop = m_play_bar->addButton(icon("time_loop").c_str(), bind(&TrackEditor::cb_loop, this));
    m_btn_loop->setCheckEnable(true);
    m_bottom->addChild(m_play_bar, UI_EXPAND_NONE, -1);
}
