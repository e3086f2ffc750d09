#include "data/FTrack.h"

#include <type_traits>
#include <unordered_set>

#include "anim/Track.h"
#include "anim/TrackParameter.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterColor.h"
#include "data/FParameterDVec3.h"
#include "data/FParameterDouble.h"
#include "data/FParameterFloat.h"
#include "data/FParameterStringFile.h"
#include "data/FParameterStringMaterial.h"
#include "data/FParameterToggle.h"
#include "data/FParameterTrack.h"
#include "data/FParameterVec3.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRow.h"
#include "ui/UITrackRowPanel.h"

namespace {
constexpr const char* FILE_TAG = "src/data/FTrack";
}

FTrack::FTrack()
    : m_track(jNew<Track>(FILE_TAG, __LINE__, "FTrack::FTrack"))
{
}

void FTrack::release()
{
    clear();
    jDelete(m_track, FILE_TAG, __LINE__, "FTrack::release");
    m_track = nullptr;
}

void FTrack::setSelectedParameters(const jSet<FParameterSingle*>& parameters)
{
    if (&parameters == &m_selected)
        return;
    m_selected.clear();
    for (FParameterSingle* parameter : parameters)
        m_selected.insert(parameter);
}

void FTrack::clearMarks()
{
    for (FParameterSingle* parameter : m_singles)
        parameter->getKeySet().clear();
}

void FTrack::mark(FKey* key)
{
    if (key && key->getParameter())
        key->getParameter()->getKeySet().insert(key);
}

// A compound kind keeps its place in the list even when it failed (a null entry), so the views
// can tell how many compounds the file had; a key-owning kind is listed only when it was made.
template <class T>
T* FTrack::created(T* parameter, bool made, const char* tag)
{
    constexpr bool compound = std::is_base_of_v<FParameterCompound, T>;
    if (!made) {
        parameter->release();
        jDelete(parameter, FILE_TAG, __LINE__, tag);
        parameter = nullptr;
    }
    if constexpr (compound)
        m_parameters.append(parameter);
    else if (parameter)
        m_singles.append(parameter);
    return parameter;
}

template <class T>
T* FTrack::create_from(TrackParameter* param, const jString& name, const char* tag)
{
    T* parameter = jNew<T>(FILE_TAG, __LINE__, tag);
    return created(parameter, parameter->create(this, param, name), tag);
}

template <class T>
T* FTrack::create_new(const jString& name, const char* tag)
{
    T* parameter = jNew<T>(FILE_TAG, __LINE__, tag);
    return created(parameter, parameter->createNew(this, name, true), tag);
}

#define KUVO_FTRACK_CREATE(Kind)                                                                              \
    FParameter##Kind* FTrack::createParameter##Kind(TrackParameter* param, const jString& name)              \
    {                                                                                                        \
        return create_from<FParameter##Kind>(param, name, "FTrack::createParameter" #Kind);                  \
    }                                                                                                        \
    FParameter##Kind* FTrack::createParameter##Kind(const jString& name)                                     \
    {                                                                                                        \
        return create_new<FParameter##Kind>(name, "FTrack::createParameter" #Kind);                          \
    }

KUVO_FTRACK_CREATE(Toggle)
KUVO_FTRACK_CREATE(Float)
KUVO_FTRACK_CREATE(Double)
KUVO_FTRACK_CREATE(Color)
KUVO_FTRACK_CREATE(Vec3)
KUVO_FTRACK_CREATE(DVec3)
KUVO_FTRACK_CREATE(Track)
KUVO_FTRACK_CREATE(StringFile)
KUVO_FTRACK_CREATE(StringMaterial)

#undef KUVO_FTRACK_CREATE

template <class Visit>
FParameter* FTrack::for_kind(int kind, Visit visit)
{
    switch (kind) {
    case TRACK_PARAMETER_TOGGLE:
        return visit(static_cast<FParameterToggle*>(nullptr), "FTrack::createParameterToggle");
    case TRACK_PARAMETER_FLOAT:
        return visit(static_cast<FParameterFloat*>(nullptr), "FTrack::createParameterFloat");
    case TRACK_PARAMETER_DOUBLE:
        return visit(static_cast<FParameterDouble*>(nullptr), "FTrack::createParameterDouble");
    case TRACK_PARAMETER_COLOR:
        return visit(static_cast<FParameterColor*>(nullptr), "FTrack::createParameterColor");
    case TRACK_PARAMETER_VEC3:
        return visit(static_cast<FParameterVec3*>(nullptr), "FTrack::createParameterVec3");
    case TRACK_PARAMETER_DVEC3:
        return visit(static_cast<FParameterDVec3*>(nullptr), "FTrack::createParameterDVec3");
    case TRACK_PARAMETER_TRACK:
        return visit(static_cast<FParameterTrack*>(nullptr), "FTrack::createParameterTrack");
    case TRACK_PARAMETER_STRING_FILE:
        return visit(static_cast<FParameterStringFile*>(nullptr), "FTrack::createParameterStringFile");
    case TRACK_PARAMETER_STRING_MATERIAL:
        return visit(static_cast<FParameterStringMaterial*>(nullptr), "FTrack::createParameterStringMaterial");
    default:
        return nullptr; // kinds the editor cannot show (opaque data) stay in the engine track untouched
    }
}

FParameter* FTrack::create_for_kind(TrackParameter* param)
{
    return for_kind(param->getType(), [this, param]<class T>(T*, const char* tag) -> FParameter* {
        return create_from<T>(param, param->getName(), tag);
    });
}

FParameter* FTrack::createParameter(int kind, const jString& name)
{
    return for_kind(kind, [this, &name]<class T>(T*, const char* tag) -> FParameter* {
        return create_new<T>(name, tag);
    });
}

bool FTrack::load(Package* root, World* world)
{
    if (!loadEngine(root, world))
        return false;
    createFromEngine();
    return true;
}

bool FTrack::loadEngine(Package* root, World* world)
{
    clear();
    if (!m_track) {
        jLog::error("%s:%s", "FTrack::load", "m_track");
        return false;
    }
    return m_track->load(root, world);
}

void FTrack::createFromEngine()
{
    size_t keys = 0;
    for (int i = 0; i < m_track->getNumParameters(); ++i)
        keys += static_cast<size_t>(m_track->getParameter(i)->getNumKeys());
    AppData::get()->getLoadProgress().expect(keys);
    for (int i = 0; i < m_track->getNumParameters(); ++i)
        create_for_kind(m_track->getParameter(i));
}

void FTrack::clear()
{
    for (FParameterSingle* single : m_singles) {
        if (single->getParent())
            continue; // its compound frees it
        single->setOwner(nullptr);
        single->release();
        jDelete(single, FILE_TAG, __LINE__, "FTrack::clear");
    }
    m_singles.release();
    for (FParameter* compound : m_parameters) {
        if (!compound)
            continue;
        compound->setOwner(nullptr);
        compound->release();
        jDelete(compound, FILE_TAG, __LINE__, "FTrack::clear");
    }
    m_parameters.release();
    m_selected.clear();
    if (m_track)
        m_track->release();
}

bool FTrack::isEmpty() const
{
    return !m_track || m_track->getNumParameters() < 1;
}

bool FTrack::removeParameter(FParameter* parameter)
{
    return m_parameters.removeValue(parameter);
}

bool FTrack::removeSingleParameter(FParameterSingle* parameter)
{
    return m_singles.removeValue(parameter);
}

FParameter* FTrack::parameterAt(int index) const
{
    const TrackParameter* param = m_track ? m_track->getParameter(index) : nullptr;
    if (!param)
        return nullptr;
    for (FParameter* compound : m_parameters)
        if (compound && compound->getTrackParameter() == param)
            return compound;
    for (FParameterSingle* single : m_singles)
        if (!single->getParent() && single->getTrackParameter() == param)
            return single;
    return nullptr;
}

bool FTrack::writeParameter(int index, std::string& bytes) const
{
    const TrackParameter* param = m_track ? m_track->getParameter(index) : nullptr;
    Package object;
    std::string error = "no parameter " + std::to_string(index);
    if (param) {
        param->write(&object);
        if (mjl::write(&object, bytes, &error))
            return true;
    }
    jLog::error("%s:%s", "FTrack::writeParameter", error.c_str());
    return false;
}

TrackParameter* FTrack::read_parameter(const std::string& bytes) const
{
    mjl reader;
    if (!m_track || !reader.parse(bytes.data(), bytes.size(), "FTrack::insertParameter", mjl::NUMBER_ROWS))
        return nullptr;
    return m_track->readParameter(reader.getRoot(), "FTrack::insertParameter");
}

bool FTrack::insertParameter(int index, const std::string& bytes)
{
    TrackParameter* param = read_parameter(bytes);
    if (!param || !m_track->insertParameter(index, param)) {
        if (param)
            jDelete(param, FILE_TAG, __LINE__, "FTrack::insertParameter");
        return false;
    }
    create_at(index, param);
    // Every row takes the colour of its place, as a load of the track gives it: the rows after the
    // new ones moved down.
    for (int i = 0; i < m_singles.size(); ++i)
        m_singles[i]->setColor(AppData::RowColor(i));
    return true;
}

bool FTrack::replaceParameter(int index, const std::string& bytes)
{
    TrackParameter* param = m_track && m_track->getParameter(index) ? read_parameter(bytes) : nullptr;
    if (!param)
        return false;
    jVector<vec4> colors;
    const FParameter* old = parameterAt(index);
    for (FParameterSingle* single : m_singles)
        if (old && (single == old || single->getParent() == old) && single->getRow())
            colors.append(single->getRow()->getColor());
    AppData::get()->getEdits().replaced(m_track->getParameter(index), param);
    eraseParameter(index);
    m_track->insertParameter(index, param);
    const int at = create_at(index, param);
    for (int i = 0; i < colors.size() && at + i < m_singles.size(); ++i)
        m_singles[at + i]->setColor(colors[i]);
    return true;
}

bool FTrack::eraseParameter(int index)
{
    TrackParameter* param = m_track ? m_track->getParameter(index) : nullptr;
    if (!param)
        return false;
    if (FParameter* shown = parameterAt(index))
        return AppData::get()->destoryParameter(shown); // frees the engine parameter too
    m_track->removeParameter(param);
    param->release();
    jDelete(param, FILE_TAG, __LINE__, "FTrack::eraseParameter");
    return true;
}

int FTrack::create_at(int index, TrackParameter* param)
{
    const int singles = m_singles.size(), compounds = m_parameters.size();
    create_for_kind(param);
    return place(index, singles, compounds);
}

// The lists keep the engine track's order, as a load makes them: the new entries go before the
// first older one whose engine parameter comes after index. Rows and lines follow their singles.
int FTrack::place(int index, int singles, int compounds)
{
    std::unordered_set<const TrackParameter*> after;
    for (int i = index + 1; i < m_track->getNumParameters(); ++i)
        after.insert(m_track->getParameter(i));
    auto later = [&after](const FParameter* p) {
        return p && after.count(p->getTopParameter()->getTrackParameter()) > 0;
    };
    int at = 0;
    while (at < compounds && !later(m_parameters[at]))
        ++at;
    for (int i = compounds; i < m_parameters.size(); ++i, ++at) {
        FParameter* made = m_parameters[i];
        m_parameters.remove(i);
        m_parameters.insert(at, made);
    }
    at = 0;
    while (at < singles && !later(m_singles[at]))
        ++at;
    const int first = at;
    FParameterSingle* next = at < singles ? m_singles[at] : nullptr;
    for (int i = singles; i < m_singles.size(); ++i, ++at) {
        FParameterSingle* made = m_singles[i];
        m_singles.remove(i);
        m_singles.insert(at, made);
        if (UITrackRowPanel* rows = UITrackRowPanel::get(); rows && made->getRow())
            rows->moveRow(made->getRow(), next ? next->getRow() : nullptr);
        if (UITrackLinePanel* lines = UITrackLinePanel::get(); lines && made->getLine())
            lines->moveLine(made->getLine(), next ? next->getLine() : nullptr);
    }
    return first;
}
