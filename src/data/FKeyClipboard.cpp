#include "data/FKeyClipboard.h"

#include <algorithm>
#include <cstring>
#include <map>

#include "anim/Track.h"
#include "anim/TrackKeyCodec.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jLog.h"
#include "ui/UITrackRow.h"

namespace {

constexpr int FORMAT_VERSION = 1;

Track* engineTrack()
{
    return AppData::get()->getTrack()->getEngineTrack();
}

} // namespace

bool FKeyClipboard::path_of(const FParameterSingle* row, RowPath& path)
{
    path.parameter = engineTrack()->indexOf(row->getTopParameter()->getTrackParameter());
    path.component = component_of(row);
    return path.parameter >= 0;
}

int FKeyClipboard::component_of(const FParameterSingle* row)
{
    return row->getParent() ? row->getComponentIndex() : -1;
}

// "keys" for a parameter of its own, the component's "keys" for a vector's axis, "file" and "time"
// for a nested track's two rows.
Package* FKeyClipboard::keys_at(const Package* parameter, int component)
{
    if (component < 0)
        return parameter->find("keys");
    if (const Package* components = parameter->find("components")) {
        const Package* axis = components->getChild(component);
        return axis ? axis->find("keys") : nullptr;
    }
    return parameter->find(component == 0 ? "file" : "time");
}

FParameterSingle* FKeyClipboard::row_at(const RowPath& path)
{
    jVector<UITrackRow*> rows;
    jVector<UITrackLine*> lines;
    jVector<UITrackCurve*> curves;
    if (FParameter* top = AppData::get()->getTrack()->parameterAt(path.parameter))
        top->collectUI(rows, lines, curves);
    for (UITrackRow* row : rows) {
        auto* single = static_cast<FParameterSingle*>(row->getData());
        if (component_of(single) == path.component)
            return single;
    }
    return nullptr;
}

void FKeyClipboard::copy_record(Package* array, const Package* record, double shift)
{
    Package* copy = array->add();
    copy->setArray();
    for (int i = 0; i < record->getNumChildren(); ++i) {
        const Package* value = record->getChild(i);
        if (i == 0)
            copy->addDouble(nullptr, TrackKeyCodec::widen(float(value->getDouble()) + float(shift))); // as the engine adds
        else if (value->isString())
            copy->addString(nullptr, value->getString());
        else if (value->getType() == Package::INT)
            copy->addInt(nullptr, value->getInt());
        else if (value->isBool())
            copy->addBool(nullptr, value->getBool());
        else
            copy->addDouble(nullptr, value->getDouble());
    }
}

bool FKeyClipboard::copy(std::string& text)
{
    FTrack* document = AppData::get()->getTrack();
    float first = 0.0f;
    bool any = false;
    for (FParameterSingle* row : document->getSingleParameters())
        for (FKey* key : row->getKeySet()) {
            first = any ? std::min(first, key->getTime()) : key->getTime();
            any = true;
        }
    if (!any)
        return false;
    Package clip;
    clip.addString("format", FORMAT);
    clip.addInt("version", FORMAT_VERSION);
    clip.addString("document", AppData::get()->getPath().c_str());
    Package* rows = clip.addArray("rows");
    for (FParameterSingle* row : document->getSingleParameters()) {
        RowPath path;
        Package saved;
        if (row->getKeySet().empty() || !path_of(row, path))
            continue;
        engineTrack()->getParameter(path.parameter)->write(&saved);
        const Package* keys = keys_at(&saved, path.component);
        if (!keys)
            continue;
        Package* out = rows->add();
        out->addInt("parameter", path.parameter);
        out->addInt("component", path.component);
        out->addInt("kind", row->getType());
        out->addString("type", row->getTypeName().c_str());
        Package* records = out->addArray("keys");
        for (int i = 0; i < row->getNumKeys() && i < keys->getNumChildren(); ++i)
            if (row->getKeySet().contains(row->getKey(i)))
                copy_record(records, keys->getChild(i), -double(first));
    }
    std::string error;
    if (mjl::write(&clip, text, &error))
        return true;
    jLog::error("%s:%s", "FKeyClipboard::copy", error.c_str());
    return false;
}

std::vector<FParameterSingle*> FKeyClipboard::targets(const Package* rows, bool sameDocument)
{
    std::vector<FParameterSingle*> selected;
    FTrack* document = AppData::get()->getTrack();
    for (FParameterSingle* row : document->getSingleParameters())
        if (document->getSelectedParameters().contains(row))
            selected.push_back(row);
    std::vector<FParameterSingle*> found;
    size_t next = 0;
    for (int i = 0; i < rows->getNumChildren(); ++i) {
        const Package* copied = rows->getChild(i);
        const int kind = copied->find("kind") ? int(copied->find("kind")->getInt(-1)) : -1;
        FParameterSingle* target = nullptr;
        if (sameDocument) {
            RowPath path;
            path.parameter = copied->find("parameter") ? int(copied->find("parameter")->getInt(-1)) : -1;
            path.component = copied->find("component") ? int(copied->find("component")->getInt(-1)) : -1;
            target = row_at(path);
        } else {
            while (next < selected.size() && selected[next]->getType() != kind)
                ++next;
            target = next < selected.size() ? selected[next++] : nullptr;
        }
        found.push_back(target && target->getType() == kind ? target : nullptr);
    }
    return found;
}

std::vector<int> FKeyClipboard::merge(Package* keys, const Package* records, double shift)
{
    struct Entry {
        double time;
        const Package* record;
        double shift;
        bool pasted;
    };
    std::vector<Entry> entries;
    for (int i = 0; i < keys->getNumChildren(); ++i)
        entries.push_back({keys->getChild(i)->getChild(0)->getDouble(), keys->getChild(i), 0.0, false});
    for (int i = 0; i < records->getNumChildren(); ++i) {
        const Package* record = records->getChild(i);
        if (record->isArray() && record->getNumChildren() > 1)
            entries.push_back({record->getChild(0)->getDouble() + shift, record, shift, true});
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Entry& a, const Entry& b) { return a.time < b.time; });
    keys->setArray(); // the old records stay in the tree's memory until it goes
    std::vector<int> pasted;
    for (const Entry& entry : entries) {
        if (entry.pasted)
            pasted.push_back(keys->getNumChildren());
        copy_record(keys, entry.record, entry.shift);
    }
    return pasted;
}

bool FKeyClipboard::paste(const std::string& text, float time)
{
    mjl reader;
    const Package* clip = reader.parse(text.data(), text.size(), "clipboard") ? reader.getRoot() : nullptr;
    const Package* format = clip ? clip->find("format") : nullptr;
    const Package* rows = clip ? clip->find("rows") : nullptr;
    if (!format || std::strcmp(format->getString(), FORMAT) != 0 || !rows) {
        jLog::warning("%s:%s", "FKeyClipboard::paste", "the clipboard holds no keys");
        return false;
    }
    const Package* document = clip->find("document");
    const bool same = document && AppData::get()->getPath() == jString(document->getString());
    const std::vector<FParameterSingle*> to = targets(rows, same);
    std::map<int, Package> changed; // the saved object of each parameter that takes keys, by index
    m_pasted.clear();
    for (size_t i = 0; i < to.size(); ++i) {
        RowPath path;
        if (!to[i] || !path_of(to[i], path))
            continue;
        auto [entry, first] = changed.try_emplace(path.parameter);
        if (first)
            engineTrack()->getParameter(path.parameter)->write(&entry->second);
        Package* keys = keys_at(&entry->second, path.component);
        const Package* records = rows->getChild(int(i))->find("keys");
        if (keys && records)
            m_pasted.emplace_back(path, merge(keys, records, time));
    }
    if (m_pasted.empty()) {
        jLog::warning("%s:%s", "FKeyClipboard::paste", "no row takes the copied keys: select rows of their kinds");
        return false;
    }
    std::vector<std::pair<int, std::string>> written;
    for (const auto& [index, object] : changed) {
        std::string error;
        written.emplace_back(index, std::string());
        if (!mjl::write(&object, written.back().second, &error)) {
            jLog::error("%s:%s", "FKeyClipboard::paste", error.c_str());
            return false;
        }
    }
    FTrack* track = AppData::get()->getTrack();
    for (const auto& [index, bytes] : written) {
        AppData::get()->getEdits().touch(engineTrack()->getParameter(index));
        track->replaceParameter(index, bytes); // written by the engine just now: it reads again
    }
    return true;
}

void FKeyClipboard::markPasted() const
{
    AppData::get()->getTrack()->clearMarks();
    for (const auto& [path, indices] : m_pasted)
        if (FParameterSingle* row = row_at(path))
            for (int index : indices)
                if (index < row->getNumKeys())
                    FTrack::mark(row->getKey(index));
}
