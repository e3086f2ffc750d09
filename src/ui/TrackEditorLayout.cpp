// The widget tree of the Track Editor window: a top row, two columns in a splitter and a bottom row
// with the range fields, a second time bar and the playback controls. Each column is a toolbar over
// two bands in a splitter of its own: on the left the node panel over the row tree, on the right the
// file commands over a time bar and the key lines. The two band splitters keep equal heights, so
// each key line sits beside its row.
#include "ui/TrackEditor.h"

#include "TrackEditorMsg.h"
#include "data/AppData.h"
#include "editor/Locale.h"
#include "editor/ToolBar.h"
#include "editor/ToolButton.h"
#include "ui/UIFactory.h"
#include "ui/UIGridLayout.h"
#include "ui/UIHLayout.h"
#include "ui/UILabel.h"
#include "ui/UISpliter.h"
#include "ui/UITimeBar.h"
#include "ui/UITimeField.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRowPanel.h"
#include "ui/UIVLayout.h"

namespace {

constexpr int TOOLBAR_FONT_SIZE = 16;
// Both columns' toolbars take this height, so that their band splitters start level.
constexpr int TOOLBAR_HEIGHT = 32;
// Wide enough for the longest text of a float time, such as "-12.345678", without scrolling.
constexpr int FIELD_WIDTH = 92;
constexpr int KEY_FIELD_WIDTH = 64;
// The height of the time bar above the key lines, and of the space above the row tree beside it.
constexpr int TIMEBAR_HEIGHT = 40;
constexpr int BOTTOM_TIMEBAR_HEIGHT = 32;
// The upper band (node panel, file commands) and the lower band (rows, key lines) share the
// columns' height in this ratio at first.
constexpr float UPPER_BAND_WEIGHT = 2.0f;
constexpr float LOWER_BAND_WEIGHT = 3.0f;
constexpr int UPPER_BAND_MIN_HEIGHT = 128;
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

UILabel* addLabel(UIElement* parent, const char* text)
{
    auto* label = jNew<UILabel>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_layout", parent->getRoot(), text);
    parent->addChild(label, UI_EXPAND_NONE, -1);
    return label;
}

// Makes a vertical splitter of two bands and adds it to column.
UISpliter* addBands(UIElement* column, UIElement* upper, UIElement* lower)
{
    auto* bands = jNew<UISpliter>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_layout", column->getRoot(),
                                  UI_SPLITER_VERTICAL);
    upper->setHeightWeight(UPPER_BAND_WEIGHT);
    lower->setHeightWeight(LOWER_BAND_WEIGHT);
    bands->addChild(upper, UI_EXPAND_BOTH, -1);
    bands->addChild(lower, UI_EXPAND_BOTH, -1);
    column->addChild(bands, UI_EXPAND_BOTH, -1);
    return bands;
}

// Copies the height weights of one band splitter's parts to the other's.
void copyBands(const UIElement* from, UIElement* to)
{
    for (int i = 0; i < from->getNumChilds() && i < to->getNumChilds(); ++i)
        to->getChild(i)->setHeightWeight(from->getChild(i)->getHeightWeight());
}

// Adds a label and a value field (Field: UIFloat or UITimeField) width pixels wide, named name and
// bound to an owner's getter and setter; the field posts message after an edit (none when 0).
template <class Field, class C, class S, class G>
Field* addField(UIElement* row, const char* key, C* owner, S setter, G getter, int message, const char* name,
                int width)
{
    addLabel(row, tr(key));
    auto* field = jNew<Field>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_layout", owner, setter, getter, row,
                              message, name);
    field->getEditor()->setFixWidth(width);
    return field;
}

// A time field of the data hub in the bottom row.
template <class S, class G>
UITimeField* addHubField(UIElement* row, const char* key, S setter, G getter, int message)
{
    return addField<UITimeField>(row, key, AppData::get(), setter, getter, message, "", FIELD_WIDTH);
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
    m_track_bar = jNew<ToolBar>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_left", getRoot(),
                                TOOLBAR_FONT_SIZE);
    m_track_bar->addButton(icon("new_track").c_str(), bind(&TrackEditor::cb_new_track, this));
    m_track_bar->addButton(icon("del_track").c_str(), bind(&TrackEditor::cb_del_track, this));
    m_track_bar->addSpacer();
    m_btn_undo = m_track_bar->addTextButton(tr("undo"), bind(&TrackEditor::cb_undo, this));
    m_btn_undo->setShortcut('Z', true, false, false);
    m_btn_redo = m_track_bar->addTextButton(tr("redo"), bind(&TrackEditor::cb_redo, this));
    m_btn_redo->setShortcut('Z', true, true, false);
    m_track_bar->setFixHeight(TOOLBAR_HEIGHT);
    m_left->addChild(m_track_bar, UI_EXPAND_ACROSS, -1);

    auto* upper = make<UIVLayout>("TrackEditor::init_top_left", getRoot());
    upper->setMinHeight(UPPER_BAND_MIN_HEIGHT);
    init_node_panel(upper);
    auto* lower = make<UIVLayout>("TrackEditor::init_top_left", getRoot());
    auto* beside_timebar = make<UIVLayout>("TrackEditor::init_top_left", getRoot());
    beside_timebar->setFixHeight(TIMEBAR_HEIGHT);
    lower->addChild(beside_timebar, UI_EXPAND_ACROSS, -1);
    jVector<UITrackRow::RowData> columns;
    columns.append({tr("E"), false});
    columns.append({tr("T"), false});
    m_rows = jNew<UITrackRowPanel>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_left", getRoot(), columns);
    m_rows->setDescriber(&TrackEditor::describe_row);
    lower->addChild(m_rows, UI_EXPAND_BOTH, -1);
    m_left_bands = addBands(m_left, upper, lower);
    m_left_bands->sigSizeChanged = bind(&TrackEditor::cb_track_table_size_changed, this);
}

// The node-info grid of the current row's parameter, the hierarchy switch of a material binding and
// the button that binds the parameter to another node; hidden while no row is current.
void TrackEditor::init_node_panel(UIElement* parent)
{
    m_node_panel = make<UIVLayout>("TrackEditor::init_node_panel", getRoot());
    auto* grid = jNew<UIGridLayout>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_node_panel", getRoot(), 2);
    grid->setColumnRatio(1, 2.0f);
    m_node_panel->addChild(grid, UI_EXPAND_ACROSS, -1);
    const char* tag = "TrackEditor::init_node_panel";
    addLabel(grid, tr("name"));
    m_node_name = jNew<UIString>("src/ui/TrackEditor", __LINE__, tag, this, nullptr, &TrackEditor::getNodeName, grid,
                                 0, tr("name"));
    addLabel(grid, tr("id"));
    m_node_id = jNew<UIIntBase<int>>("src/ui/TrackEditor", __LINE__, tag, this, nullptr, &TrackEditor::getNodeID,
                                     grid, 0, tr("id"));
    addLabel(grid, tr("type"));
    m_node_type = jNew<UIString>("src/ui/TrackEditor", __LINE__, tag, this, nullptr, &TrackEditor::getNodeTypeString,
                                 grid, 0, tr("type"));
    addLabel(grid, tr("attribute"));
    m_node_attribute = jNew<UIString>("src/ui/TrackEditor", __LINE__, tag, this, nullptr,
                                      &TrackEditor::getTrackDataType, grid, 0, tr("attribute"));
    // The switch carries its own caption, so a script (and a screen reader) finds it by its text.
    m_mat_hierarchy_ui.append(addLabel(grid, ""));
    m_hierarchy = jNew<UIBool>("src/ui/TrackEditor", __LINE__, tag, this, &TrackEditor::setMaterialHierarchy,
                               &TrackEditor::isMaterialHierarchy, grid, TRACK_MSG_OPTION_CHANGED,
                               tr("apply_hierarchy"));
    m_mat_hierarchy_ui.append(m_hierarchy->getEditor());
    m_btn_select_node = jNew<UIButton>("src/ui/TrackEditor", __LINE__, tag, getRoot(), tr("select_node"));
    m_btn_select_node->setTooltip(tr("tip_select_node"));
    m_btn_select_node->sigClick = bind(&TrackEditor::cb_select_node, this);
    m_node_panel->addChild(m_btn_select_node, UI_EXPAND_NONE, -1);
    m_node_panel->setHidden(true);
    parent->addChild(m_node_panel, UI_EXPAND_BOTH, -1);
}

void TrackEditor::init_top_right()
{
    auto* bar = make<UIHLayout>("TrackEditor::init_top_right", getRoot());
    bar->setContentAligns(UI_ALIGN_CENTER);
    bar->setFixHeight(TOOLBAR_HEIGHT);
    m_right->addChild(bar, UI_EXPAND_ACROSS, -1);
    init_key_bar(bar);
    m_file_bar = jNew<ToolBar>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_right", getRoot(),
                               TOOLBAR_FONT_SIZE);
    m_file_bar->addTextButton(tr("load"), bind(&TrackEditor::cb_load_track, this));
    ToolButton* save = m_file_bar->addTextButton(tr("save"), bind(&TrackEditor::cb_save_track, this));
    save->setShortcut('S', true, false, false);
    m_file_bar->addTextButton(tr("clear"), bind(&TrackEditor::cb_clear_track, this));
    bar->addChild(m_file_bar, UI_EXPAND_NONE, -1);

    auto* upper = make<UIVLayout>("TrackEditor::init_top_right", getRoot());
    upper->setMinHeight(UPPER_BAND_MIN_HEIGHT);
    m_curves = jNew<UITrackCurvePanel>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_right", getRoot());
    upper->addChild(m_curves, UI_EXPAND_BOTH, -1);
    auto* lower = make<UIVLayout>("TrackEditor::init_top_right", getRoot());
    m_timebar_top = make_timebar("TrackEditor::init_top_right");
    m_timebar_top->setFixHeight(TIMEBAR_HEIGHT);
    lower->addChild(m_timebar_top, UI_EXPAND_ACROSS, -1);
    m_lines = jNew<UITrackLinePanel>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_top_right", getRoot());
    lower->addChild(m_lines, UI_EXPAND_BOTH, -1);
    m_right_bands = addBands(m_right, upper, lower);
    m_right_bands->sigSizeChanged = bind(&TrackEditor::cb_track_lines_size_changed, this);
}

// The curve view's framing, the key commands and the selected keys' time ("t") and value.
void TrackEditor::init_key_bar(UIElement* bar)
{
    m_key_bar = jNew<ToolBar>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_key_bar", getRoot(),
                              TOOLBAR_FONT_SIZE);
    m_key_bar->addButton(icon("arrange_x").c_str(), bind(&TrackEditor::cb_arrange_x, this));
    m_key_bar->addButton(icon("arrange_y").c_str(), bind(&TrackEditor::cb_arrange_y, this));
    m_key_bar->addButton(icon("arrange_xy").c_str(), bind(&TrackEditor::cb_arrange_xy, this));
    m_key_bar->addSpacer();
    m_key_bar->addButton(icon("key_remove").c_str(), bind(&TrackEditor::cb_del_key, this));
    m_key_bar->addButton(icon("key").c_str(), bind(&TrackEditor::cb_make_key, this))->setShortcut('K', true, false, false);
    m_key_bar->addSpacer();
    m_key_bar->addButton(icon("key_constant").c_str(), bind(&TrackEditor::cb_key_const, this));
    m_key_bar->addButton(icon("key_linear").c_str(), bind(&TrackEditor::cb_key_linear, this));
    m_key_bar->addButton(icon("key_smooth").c_str(), bind(&TrackEditor::cb_key_smooth, this));
    m_key_bar->addButton(icon("key_break").c_str(), bind(&TrackEditor::cb_key_break, this));
    m_key_bar->addButton(icon("key_auto").c_str(), bind(&TrackEditor::cb_key_auto, this));
    m_key_bar->addSpacer();
    bar->addChild(m_key_bar, UI_EXPAND_NONE, -1);
    // The commands post their own messages.
    m_time_fields.append(addField<UITimeField>(bar, "time", this, &TrackEditor::setSelectedKeysTime,
                                               &TrackEditor::getSelectedKeysTime, 0, "t", KEY_FIELD_WIDTH));
    m_fields.append(addField<UIFloat>(bar, "value", this, &TrackEditor::setSelectedKeysValue,
                             &TrackEditor::getSelectedKeysValue, 0, "", KEY_FIELD_WIDTH));
}

void TrackEditor::cb_track_lines_size_changed(const UIEventChanged*, UIElement*)
{
    copyBands(m_right_bands, m_left_bands);
}

void TrackEditor::cb_track_table_size_changed(const UIEventChanged*, UIElement*)
{
    copyBands(m_left_bands, m_right_bands);
}

void TrackEditor::init_bottom()
{
    m_settings_bar = jNew<ToolBar>("src/ui/TrackEditor", __LINE__, "TrackEditor::init_bottom", getRoot(),
                                   TOOLBAR_FONT_SIZE);
    m_settings_bar->addButton(icon("setting").c_str(), bind(&TrackEditor::cb_track_settings, this));
    m_bottom->addChild(m_settings_bar, UI_EXPAND_NONE, -1);

    m_time_fields.append(
        addHubField(m_bottom, "begin", &AppData::setBeginTime, &AppData::getBeginTime, TRACK_MSG_RANGE_CHANGED));
    m_time_fields.append(addHubField(m_bottom, "end", &AppData::setEndTime, &AppData::getEndTime, TRACK_MSG_RANGE_CHANGED));
    m_time_fields.append(addHubField(m_bottom, "time", &AppData::setTime, &AppData::getTime, TRACK_MSG_TIME_CHANGED));

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
    m_btn_snap = m_play_bar->addTextButton(tr("snap"), bind(&TrackEditor::cb_snap, this));
    m_btn_snap->setCheckEnable(true);
    m_btn_snap->setTooltip(tr("tip_snap"));
    m_play_bar->addTextButton(tr("frame_all"), bind(&TrackEditor::cb_frame_all, this))->setTooltip(tr("tip_frame_all"));
    m_bottom->addChild(m_play_bar, UI_EXPAND_NONE, -1);
}
